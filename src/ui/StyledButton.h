#pragma once

#include "DrawnControl.h"

// A push button drawn in the window's own dark look, without style sheets:
// prominent (accent fill), bordered (translucent fill), link (accent text)
// or plain (text only). An optional symbol goes before the text.
class StyledButton : public DrawnControl<QAbstractButton>
{
    Q_OBJECT

public:
    enum class Kind { Prominent, Bordered, Link, Plain };

    StyledButton(Kind kind, const QString &text, QWidget *parent = nullptr);

    // Symbol name for Icons; empty for none.
    void setSymbol(const QString &symbolName);
    QString symbol() const { return m_symbol; }
    void setVerticalPadding(int padding);
    void setTextColor(const QColor &color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool isTextOnly() const { return m_kind == Kind::Link || m_kind == Kind::Plain; }
    QColor foreground() const;

    Kind m_kind;
    QString m_symbol;
    int m_verticalPadding;
    QColor m_textColor;
};
