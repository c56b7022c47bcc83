#include "TextPromptDialog.h"

#include "Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

TextPromptDialog::TextPromptDialog(const QString &title, const QString &message, const QString &placeholder,
                                   const QString &acceptText, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    setFixedWidth(260);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 18, 20, 16);
    layout->setSpacing(10);

    QLabel *titleLabel = Theme::makeLabel(title, Theme::font(13, QFont::Bold), Theme::primaryText(), this);
    titleLabel->setAlignment(Qt::AlignHCenter);
    layout->addWidget(titleLabel);

    if (!message.isEmpty()) {
        QLabel *messageLabel = Theme::makeLabel(message, Theme::font(11), Theme::secondaryText(), this);
        messageLabel->setWordWrap(true);
        messageLabel->setAlignment(Qt::AlignHCenter);
        layout->addWidget(messageLabel);
    }

    m_field = Theme::makeField(6, this);
    m_field->setPlaceholderText(placeholder);
    m_field->setAccessibleName(placeholder);
    layout->addSpacing(2);
    layout->addWidget(m_field);
    layout->addSpacing(4);

    m_cancelButton = Theme::makeButton(Theme::ButtonKind::Bordered, tr("Cancel"), this);
    m_acceptButton = Theme::makeButton(Theme::ButtonKind::Prominent, acceptText, this);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_cancelButton, 1);
    buttons->addWidget(m_acceptButton, 1);
    layout->addLayout(buttons);

    connect(m_cancelButton, &QAbstractButton::clicked, this, &QDialog::reject);
    connect(m_acceptButton, &QAbstractButton::clicked, this, [this] {
        if (m_finished)
            return;
        m_finished = true;
        const QString typed = m_field->text();
        accept();
        emit textAccepted(typed);
    });
    m_field->setFocus();
}

TextPromptDialog *TextPromptDialog::newPalettePrompt(const QString &message, QWidget *parent)
{
    auto *prompt = new TextPromptDialog(tr("New Palette"), message, tr("Palette name"), tr("Create"), parent);
    prompt->setObjectName(QStringLiteral("newPalettePrompt"));
    return prompt;
}

QString TextPromptDialog::text() const
{
    return m_field->text();
}

void TextPromptDialog::keyPressEvent(QKeyEvent *event)
{
    // Return accepts from the field; a focused button has taken its own
    // Return already. Escape stays QDialog's reject.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        m_acceptButton->click();
        return;
    }
    QDialog::keyPressEvent(event);
}

void TextPromptDialog::showEvent(QShowEvent *event)
{
    adjustSize();
    Theme::placeOverParent(this);
    QDialog::showEvent(event);
}

void TextPromptDialog::paintEvent(QPaintEvent *)
{
    Theme::paintSheetBackground(this);
}
