// Loupe speed on the current X display: reading the whole screen (what a
// run costs up front where a compositing manager runs, since the overlay
// must then paint the whole frozen screen), and a redraw (pointer moved
// one point, grid repainted and flushed) repeated many times. Prints
// medians in milliseconds.

#include "picking/LoupeColorSampler.h"
#include "picking/LoupeGeometry.h"
#include "picking/LoupeOverlay.h"
#include "picking/X11Display.h"

#include <QApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QEvent>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

class PaintCounter : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::UpdateRequest)
            ++paints;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QScreen *screen = QGuiApplication::primaryScreen();
    const QSize size = screen->geometry().size() * screen->devicePixelRatio();

    const int captureRounds = 15;
    std::vector<double> captureTimes;
    for (int round = 0; round < captureRounds; ++round) {
        QElapsedTimer timer;
        timer.start();
        const QImage whole = X11Display::readPixels(QRect(screen->geometry().topLeft(), size));
        captureTimes.push_back(timer.nsecsElapsed() / 1e6);
        if (whole.isNull()) {
            std::fprintf(stderr, "screen capture failed\n");
            return 1;
        }
    }

    LoupeColorSampler sampler;
    const QPoint centre = screen->geometry().center();
    QCursor::setPos(centre);
    sampler.start();
    LoupeOverlay *view = sampler.activeOverlay();
    if (!view || !QTest::qWaitForWindowExposed(view)) {
        std::fprintf(stderr, "overlay not shown\n");
        return 1;
    }
    QTest::qWait(200);
    PaintCounter counter;
    view->installEventFilter(&counter);

    // At every zoom: the sampler remembers the zoom between runs, so each
    // size is reached from the smallest.
    emit view->zoomed(-3);
    std::vector<double> allRedraws;
    for (const int cells : LoupeGeometry::gridSizes) {
        const int moves = 400;
        std::vector<double> redrawTimes;
        for (int i = 0; i < moves; ++i) {
            // Back and forth over 100 points, one point per step.
            const int step = i % 200 < 100 ? i % 100 : 100 - i % 100;
            const QPointF position(centre.x() - 50 + step, centre.y() - 30 + (i / 200));
            const int paintsBefore = counter.paints;
            QElapsedTimer timer;
            timer.start();
            // What the overlay reports when the pointer moves.
            emit view->moved(position);
            while (counter.paints == paintsBefore)
                QCoreApplication::processEvents();
            redrawTimes.push_back(timer.nsecsElapsed() / 1e6);
        }
        std::sort(redrawTimes.begin(), redrawTimes.end());
        std::printf("screen %dx%d, %d cells: redraw median %.3f ms (p90 %.3f, %d moves)\n", size.width(),
                    size.height(), cells, median(redrawTimes), redrawTimes[redrawTimes.size() * 9 / 10],
                    moves);
        allRedraws.insert(allRedraws.end(), redrawTimes.begin(), redrawTimes.end());
        emit view->zoomed(1);
    }
    emit view->zoomed(-1); // back to the default for the next run
    std::printf("screen %dx%d: capture median %.2f ms (min %.2f, %d rounds), redraw median %.3f ms "
                "(slowest zoom's median below)\n",
                size.width(), size.height(), median(captureTimes),
                *std::min_element(captureTimes.begin(), captureTimes.end()), captureRounds,
                median(allRedraws));
    return 0;
}
