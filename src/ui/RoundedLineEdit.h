#pragma once

#include <QLineEdit>

// A borderless text field on the translucent card fill, outlined by a
// hairline; the outline turns to the accent color while it has focus.
class RoundedLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit RoundedLineEdit(int horizontalPadding, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
