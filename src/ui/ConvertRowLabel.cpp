#include "ConvertRowLabel.h"

#include "Theme.h"

#include <QLabel>

QLabel *makeConvertRowLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setFont(Theme::font(12, QFont::Medium));
    QPalette p = label->palette();
    p.setColor(QPalette::WindowText, Theme::secondaryText());
    label->setPalette(p);
    label->setFixedWidth(50);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return label;
}
