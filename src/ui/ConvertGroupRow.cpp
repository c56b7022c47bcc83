#include "ConvertGroupRow.h"

#include "ConvertRowLabel.h"

#include <QHBoxLayout>
#include <QLabel>

ConvertGroupRow::ConvertGroupRow(const QString &label, const QList<QWidget *> &content, QWidget *parent)
    : QWidget(parent)
    , m_label(makeConvertRowLabel(label, this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);
    for (QWidget *input : content) {
        input->setParent(this);
        layout->addWidget(input, 1);
    }
    if (!content.isEmpty())
        m_label->setBuddy(content.first());
}

QString ConvertGroupRow::label() const
{
    return m_label->text();
}
