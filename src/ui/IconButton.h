#pragma once

#include "DrawnControl.h"

// A small icon-only button: a symbol in the dimmed color, brighter while
// hovered, with a faint rounded fill and a focus ring. Its name (tooltip
// and accessible name) is required, so screen readers can speak it.
class IconButton : public DrawnControl<QAbstractButton>
{
    Q_OBJECT

public:
    IconButton(const QString &symbolName, const QString &name, QWidget *parent = nullptr);

    QString symbol() const { return m_symbol; }
    void setSymbol(const QString &symbolName);
    // Side of the drawn symbol and of the whole button, in logical pixels.
    void setSizes(int symbolSize, int buttonSize);
    void setColor(const QColor &color);
    void setHoverColor(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    int m_symbolSize = 10;
    QColor m_color;
    QColor m_hoverColor;
};
