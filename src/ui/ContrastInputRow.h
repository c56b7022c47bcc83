#pragma once

#include <QColor>
#include <QWidget>

class QLabel;
class RoundedLineEdit;
class RoundedSwatch;

// One color of the Contrast tab: a swatch of the color, its caption and
// the hex text field. Text that does not parse shows the row's fallback
// color; it is never rejected or marked.
class ContrastInputRow : public QWidget
{
    Q_OBJECT

public:
    ContrastInputRow(const QString &label, const QColor &fallback, QWidget *parent = nullptr);

    QString label() const;
    QString value() const;
    // Shows a text stored elsewhere; the caret stays put when the text is
    // the one already shown.
    void setValue(const QString &text);
    // The color the text stands for, or the fallback.
    QColor color() const;
    RoundedLineEdit *field() const { return m_field; }

signals:
    // Every keystroke, as typed.
    void valueEdited(const QString &text);

private:
    void updateSwatch();

    QColor m_fallback;
    RoundedSwatch *m_swatch;
    QLabel *m_label;
    RoundedLineEdit *m_field;
};
