#pragma once

#include <QWidget>

class IconButton;
class QLabel;

// One notation of a color: its text, selectable, and a button that copies
// exactly that text. The button shows a checkmark for one second after a
// copy; a second copy within that second does not extend it.
class FormatRow : public QWidget
{
    Q_OBJECT

public:
    FormatRow(const QString &label, const QString &value, QWidget *parent = nullptr);

    QString label() const { return m_label; }
    QString value() const { return m_value; }
    bool copied() const { return m_copied; }
    IconButton *copyButton() const { return m_copyButton; }
    QLabel *valueLabel() const { return m_valueLabel; }

    // The copy button's action.
    void copy();

private:
    void setCopied(bool copied);

    QString m_label;
    QString m_value;
    bool m_copied = false;
    QLabel *m_valueLabel;
    IconButton *m_copyButton;
};
