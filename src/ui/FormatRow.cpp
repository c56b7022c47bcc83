#include "FormatRow.h"

#include "ClipboardWriter.h"
#include "IconButton.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>

FormatRow::FormatRow(const QString &label, const QString &value, QWidget *parent)
    : QWidget(parent), m_label(label), m_value(value)
{
    setObjectName(QStringLiteral("formatRow%1").arg(label));

    m_valueLabel = new QLabel(value, this);
    m_valueLabel->setObjectName(QStringLiteral("value%1").arg(label));
    m_valueLabel->setFont(Theme::monospaceFont(12));
    m_valueLabel->setTextFormat(Qt::PlainText);
    m_valueLabel->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_valueLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_valueLabel->setAccessibleName(QStringLiteral("%1 %2").arg(label, value));
    Theme::setTextColor(m_valueLabel, Theme::primaryText());

    const QString name = tr("Copy %1").arg(label);
    m_copyButton = new IconButton(QStringLiteral("clipboard"), name, this);
    m_copyButton->setObjectName(QStringLiteral("copy%1").arg(label));
    m_copyButton->setSizes(11, 12);
    connect(m_copyButton, &QAbstractButton::clicked, this, &FormatRow::copy);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 6, 3);
    layout->setSpacing(8);
    layout->addWidget(m_valueLabel, 1);
    layout->addWidget(m_copyButton, 0, Qt::AlignVCenter);
}

void FormatRow::copy()
{
    copyToClipboard(m_value);
    setCopied(true);
    // Not cancelled by a later copy: the checkmark goes one second after
    // the first click. Tied to this row, so it dies with it.
    QTimer::singleShot(1000, this, [this] { setCopied(false); });
}

void FormatRow::setCopied(bool copied)
{
    m_copied = copied;
    m_copyButton->setSymbol(copied ? QStringLiteral("checkmark") : QStringLiteral("clipboard"));
}
