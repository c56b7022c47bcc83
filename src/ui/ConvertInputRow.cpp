#include "ConvertInputRow.h"

#include "ConvertRowLabel.h"
#include "RoundedLineEdit.h"

#include <QHBoxLayout>
#include <QLabel>

ConvertInputRow::ConvertInputRow(const QString &label, QWidget *parent)
    : QWidget(parent)
    , m_label(makeConvertRowLabel(label, this))
    , m_field(new RoundedLineEdit(8, this))
{
    m_field->setAccessibleName(label);
    m_label->setBuddy(m_field);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);
    layout->addWidget(m_field, 1);
    connect(m_field, &QLineEdit::returnPressed, this, &ConvertInputRow::committed);
}

QString ConvertInputRow::label() const
{
    return m_label->text();
}

QString ConvertInputRow::value() const
{
    return m_field->text();
}

void ConvertInputRow::setValue(const QString &text)
{
    m_field->setText(text);
}
