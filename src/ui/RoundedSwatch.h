#pragma once

#include <QColor>
#include <QWidget>

// A rounded rectangle filled with one color and outlined by a hairline in
// white at 0.3. An optional underlay is painted first, so that a light or
// very dark color still reads against the window.
class RoundedSwatch : public QWidget
{
    Q_OBJECT

public:
    explicit RoundedSwatch(qreal cornerRadius, QWidget *parent = nullptr);

    void setColor(const QColor &color);
    void setUnderlay(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal m_cornerRadius;
    QColor m_color = Qt::white;
    QColor m_underlay = Qt::transparent;
};
