#pragma once

#include "model/ContrastReport.h"

#include <QWidget>

class QGridLayout;

// The nearest colors that make a failing pair pass: a row for each level
// it does not reach (AA, then AAA), with a button for a new text color and
// one for a new background, each showing the color, a sample of the pair
// it makes and the ratio it gives. A click hands the color on, to be put
// into its field as if typed.
class ContrastFixes : public QWidget
{
    Q_OBJECT

public:
    explicit ContrastFixes(QWidget *parent = nullptr);

    void setReport(const ContrastReport &report);

signals:
    void foregroundChosen(const QString &hex);
    void backgroundChosen(const QString &hex);

private:
    QGridLayout *m_rows;
};
