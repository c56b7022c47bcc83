#pragma once

#include <QColor>
#include <QWidget>

// A rounded rectangle filled with one color and outlined by a hairline.
// An optional underlay is painted first, so that a translucent or very dark
// color still reads against the window.
class RoundedSwatch : public QWidget
{
    Q_OBJECT

public:
    explicit RoundedSwatch(qreal cornerRadius, QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    void setStroke(const QColor &color, qreal width);
    void setUnderlay(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal m_cornerRadius;
    QColor m_color = Qt::white;
    QColor m_strokeColor = QColor(255, 255, 255, 77); // white at 0.3
    qreal m_strokeWidth = 0.5;
    QColor m_underlay = Qt::transparent;
};
