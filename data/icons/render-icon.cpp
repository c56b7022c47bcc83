// Renders the scalable application icon into a square PNG of a given size,
// so the hicolor PNGs are always made from the one SVG.
// Usage: tintwright-render-icon <in.svg> <out.png> <size>
#include <QCoreApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList args = application.arguments();
    bool sizeOk = false;
    const int size = args.size() == 4 ? args.at(3).toInt(&sizeOk) : 0;
    if (!sizeOk || size <= 0) {
        std::fprintf(stderr, "usage: %s <in.svg> <out.png> <size>\n", argv[0]);
        return 2;
    }
    QSvgRenderer renderer(args.at(1));
    if (!renderer.isValid()) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(args.at(1)));
        return 1;
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    renderer.render(&painter, QRectF(0, 0, size, size));
    painter.end();
    if (!image.save(args.at(2), "PNG")) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(args.at(2)));
        return 1;
    }
    return 0;
}
