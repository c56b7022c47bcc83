#pragma once

#include <QImage>
#include <QRectF>

class QPainter;
class QPalette;

// The parts of the loupe that never change during a run, rendered once:
// under the grid the shadow, the background and the border; over it the
// cell outlines and the centre cell's double frame. A redraw then costs two
// image copies around the 11 x 11 cell colors.
class LoupeLayers
{
public:
    // How far beyond the loupe square the layers reach, in points.
    static constexpr double margin = 16.0;

    LoupeLayers(double loupeSize, double devicePixelRatio, const QPalette &palette);

    void drawUnderGrid(QPainter &painter, const QRectF &loupe) const;
    void drawOverGrid(QPainter &painter, const QRectF &loupe) const;

private:
    QImage m_under;
    QImage m_over;
};
