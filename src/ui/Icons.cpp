#include "Icons.h"

#include <QApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
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
        auto *r = new QSvgRenderer(QStringLiteral(":/icons/%1.svg").arg(symbolName), qApp);
        it = renderers.insert(symbolName, r);
    }
    return it.value();
}

QPixmap render(const QString &symbolName, const QColor &color, QSize deviceSize)
{
    const QString key = QStringLiteral("tw-icon:%1:%2:%3x%4")
                            .arg(symbolName, color.name(QColor::HexArgb))
                            .arg(deviceSize.width())
                            .arg(deviceSize.height());
    QPixmap result;
    if (QPixmapCache::find(key, &result))
        return result;
    result = QPixmap(deviceSize);
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
    return result;
}

// Draws the symbol only when a size is asked for, so that building a view
// costs nothing until it is painted.
class TintedSvgIconEngine : public QIconEngine
{
public:
    TintedSvgIconEngine(const QString &symbolName, const QColor &color)
        : m_symbolName(symbolName), m_color(color)
    {
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        QColor color = m_color;
        if (mode == QIcon::Disabled)
            color.setAlphaF(color.alphaF() * 0.4f);
        return render(m_symbolName, color, size.expandedTo(QSize(1, 1)));
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        QPixmap pm = pixmap(rect.size() * dpr, mode, state);
        pm.setDevicePixelRatio(dpr);
        painter->drawPixmap(rect, pm);
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }
    QString key() const override { return QStringLiteral("TintedSvgIconEngine"); }
    QIconEngine *clone() const override { return new TintedSvgIconEngine(m_symbolName, m_color); }
    QString iconName() override { return m_symbolName; }

private:
    QString m_symbolName;
    QColor m_color;
};

} // namespace

QPixmap pixmap(const QString &symbolName, const QColor &color, int logicalSize, qreal devicePixelRatio)
{
    const int side = qMax(1, qRound(logicalSize * devicePixelRatio));
    QPixmap result = render(symbolName, color, QSize(side, side));
    result.setDevicePixelRatio(devicePixelRatio);
    return result;
}

QIcon icon(const QString &symbolName, const QColor &color)
{
    return QIcon(new TintedSvgIconEngine(symbolName, color));
}

bool exists(const QString &symbolName)
{
    return renderer(symbolName)->isValid();
}

} // namespace Icons
