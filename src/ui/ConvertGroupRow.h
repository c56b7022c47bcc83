#pragma once

#include <QList>
#include <QWidget>

class QLabel;

// A caption in the Convert tab's label column and the inputs of one
// notation laid out in a row beside it.
class ConvertGroupRow : public QWidget
{
    Q_OBJECT

public:
    ConvertGroupRow(const QString &label, const QList<QWidget *> &content, QWidget *parent = nullptr);

    QString label() const;

private:
    QLabel *m_label;
};
