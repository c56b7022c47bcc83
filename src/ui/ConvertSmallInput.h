#pragma once

#include "RoundedLineEdit.h"

// One number of a notation group (R, G, B, H, …): a compact monospaced
// field that shows its placeholder while empty and commits on Return.
class ConvertSmallInput : public RoundedLineEdit
{
    Q_OBJECT

public:
    explicit ConvertSmallInput(const QString &placeholder, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void committed();
};
