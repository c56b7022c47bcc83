#pragma once

#include <QWidget>

class ContrastInputRow;
class ContrastStorage;
class QLabel;

// The Contrast tab: a text sample in the foreground color on the
// background color, the two hex fields, the WCAG contrast ratio and grade.
// The texts live in the shared store, so they outlast the view.
class ContrastView : public QWidget
{
    Q_OBJECT

public:
    explicit ContrastView(ContrastStorage &contrastStorage, QWidget *parent = nullptr);

    ContrastInputRow *backgroundRow() const { return m_backgroundRow; }
    ContrastInputRow *foregroundRow() const { return m_foregroundRow; }
    QString ratioText() const;
    QString levelText() const;

private:
    void refresh();

    ContrastStorage &m_contrastStorage;
    class ContrastPreview *m_preview;
    ContrastInputRow *m_backgroundRow;
    ContrastInputRow *m_foregroundRow;
    QLabel *m_ratioLabel;
    QLabel *m_levelBadge;
};
