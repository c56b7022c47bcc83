#include "Icons.h"

#include <QApplication>
#include <QHash>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

// The resources live in this static library; nothing would pull them in
// otherwise. Kept outside the namespace, as the macro requires.
static void initIconResources()
{
    static const bool done = [] {
        Q_INIT_RESOURCE(icons);
        return true;
    }();
    Q_UNUSED(done);
}

namespace Icons {

namespace {

// Parsed SVGs, one per symbol, shared by every icon of that symbol.
QSvgRenderer *renderer(const QString &symbolName)
{
    static QHash<QString, QSvgRenderer *> renderers;
    auto it = renderers.find(symbolName);
    if (it == renderers.end()) {
        initIconResources();
        it = renderers.insert(symbolName,
                              new QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(symbolName), qApp));
    }
    return it.value();
}

} // namespace

QPixmap pixmap(const QString &symbolName, const QColor &color, int logicalSize, qreal devicePixelRatio)
{
    const int side = qMax(1, qRound(logicalSize * devicePixelRatio));
    const QString key =
        QStringLiteral("tw-icon:%1:%2:%3").arg(symbolName, color.name(QColor::HexArgb)).arg(side);
    QPixmap result;
    if (!QPixmapCache::find(key, &result)) {
        result = QPixmap(side, side);
        result.fill(Qt::transparent);
        QSvgRenderer *r = renderer(symbolName);
        if (r->isValid()) {
            QPainter painter(&result);
            painter.setRenderHint(QPainter::Antialiasing);
            r->render(&painter);
            // Tint: keep the shape, take the color.
            painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
            painter.fillRect(result.rect(), color);
        }
        QPixmapCache::insert(key, result);
    }
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

} // namespace Icons
