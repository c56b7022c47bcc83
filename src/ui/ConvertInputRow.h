#pragma once

#include <QWidget>

class QLabel;
class RoundedLineEdit;

// A caption in the Convert tab's label column and one full-width field
// (the HEX notation); Return in the field commits it.
class ConvertInputRow : public QWidget
{
    Q_OBJECT

public:
    explicit ConvertInputRow(const QString &label, QWidget *parent = nullptr);

    QString label() const;
    QString value() const;
    void setValue(const QString &text);
    RoundedLineEdit *field() const { return m_field; }

signals:
    void committed();

private:
    QLabel *m_label;
    RoundedLineEdit *m_field;
};
