#include "ConvertSmallInput.h"

#include "Theme.h"

ConvertSmallInput::ConvertSmallInput(const QString &placeholder, QWidget *parent)
    : RoundedLineEdit(4, parent)
{
    setFont(Theme::monospaceFont(13));
    setPlaceholderText(placeholder);
    connect(this, &QLineEdit::returnPressed, this, &ConvertSmallInput::committed);
}

// The group shares its row equally; the field's own preferred width (room
// for about 17 characters) would push a four-field row off the window.
QSize ConvertSmallInput::sizeHint() const
{
    QSize hint = RoundedLineEdit::sizeHint();
    hint.setWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 5 + 8 + 4);
    return hint;
}

QSize ConvertSmallInput::minimumSizeHint() const
{
    QSize hint = RoundedLineEdit::minimumSizeHint();
    hint.setWidth(fontMetrics().horizontalAdvance(QLatin1Char('0')) * 3 + 8 + 4);
    return hint;
}
