#pragma once

#include <QWidget>

class QVBoxLayout;

// What a list shows while it has nothing: a dimmed symbol with captions
// (and perhaps a button) below it, centred in the space the list had.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    EmptyState(const QString &symbolName, int symbolSize, int spacing, QWidget *parent = nullptr);

    void addCaption(const QString &text, int fontSize, const QColor &color);
    void addWidget(QWidget *widget);

private:
    QVBoxLayout *m_layout;
};
