#include "ContrastInputRow.h"

#include "RoundedLineEdit.h"
#include "RoundedSwatch.h"
#include "Theme.h"
#include "model/ColorFormats.h"

#include <QLabel>
#include <QVBoxLayout>

ContrastInputRow::ContrastInputRow(const QString &label, const QColor &fallback, QWidget *parent)
    : QWidget(parent)
    , m_fallback(fallback)
    , m_swatch(new RoundedSwatch(8, this))
    , m_label(new QLabel(label, this))
    , m_field(new RoundedLineEdit(8, this))
{
    m_swatch->setFixedHeight(60);
    // A faint dark underlay keeps a light or dark swatch visible on the window.
    m_swatch->setUnderlay(QColor(0, 0, 0, 26));
    m_swatch->setAccessibleName(label + tr(" color"));

    m_label->setFont(Theme::font(12));
    QPalette p = m_label->palette();
    p.setColor(QPalette::WindowText, Theme::secondaryText());
    m_label->setPalette(p);
    m_label->setBuddy(m_field);

    m_field->setFont(Theme::monospaceFont(13));
    m_field->setPlaceholderText(QStringLiteral("#RRGGBB"));
    m_field->setAccessibleName(label);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_swatch);
    layout->addWidget(m_label);
    layout->addWidget(m_field);

    connect(m_field, &QLineEdit::textEdited, this, [this](const QString &text) {
        updateSwatch();
        emit valueEdited(text);
    });
    updateSwatch();
}

QString ContrastInputRow::label() const
{
    return m_label->text();
}

QString ContrastInputRow::value() const
{
    return m_field->text();
}

void ContrastInputRow::setValue(const QString &text)
{
    if (m_field->text() != text)
        m_field->setText(text);
    updateSwatch();
}

QColor ContrastInputRow::color() const
{
    const std::optional<RgbColor> parsed = parseHex(m_field->text());
    if (!parsed)
        return m_fallback;
    return QColor::fromRgbF(float(parsed->red), float(parsed->green), float(parsed->blue));
}

void ContrastInputRow::updateSwatch()
{
    const QColor c = color();
    m_swatch->setColor(c);
    m_swatch->setAccessibleDescription(hexString(c.redF(), c.greenF(), c.blueF()));
}
