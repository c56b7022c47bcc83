#pragma once

#include <QColor>
#include <QWidget>

// A symbol drawn at a fixed logical size, rendered for the screen it is on
// when painted (so it stays crisp at any device pixel ratio).
class SymbolView : public QWidget
{
    Q_OBJECT

public:
    SymbolView(const QString &symbolName, const QColor &color, int size, QWidget *parent = nullptr);

    QString symbol() const { return m_symbol; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_symbol;
    QColor m_color;
    int m_size;
};
