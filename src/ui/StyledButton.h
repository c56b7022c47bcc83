#pragma once

#include <QAbstractButton>

// A push button drawn in the window's own dark look, without style sheets:
// prominent (accent fill), bordered (translucent fill), link (accent text)
// or plain (text only). An optional symbol goes before the text.
class StyledButton : public QAbstractButton
{
    Q_OBJECT

public:
    enum class Kind { Prominent, Bordered, Link, Plain };

    StyledButton(Kind kind, const QString &text, QWidget *parent = nullptr);

    Kind kind() const { return m_kind; }
    // Symbol name for Icons; empty for none.
    void setSymbol(const QString &symbolName);
    QString symbol() const { return m_symbol; }
    void setVerticalPadding(int padding);
    void setTextColor(const QColor &color);

    // Whether keyboard focus is shown (it came by keyboard, not a click).
    bool showsFocusRing() const { return m_focusRing; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    QColor foreground() const;

    Kind m_kind;
    QString m_symbol;
    int m_verticalPadding = 5;
    QColor m_textColor;
    bool m_hovered = false;
    bool m_focusRing = false;
};
