#include "ConvertTab.h"

#include "RoundedSwatch.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList result;
    for (const char *text : texts)
        result.append(QString::fromLatin1(text));
    return result;
}

} // namespace

ConvertTab::ConvertTab(QWidget *parent)
    : QWidget(parent)
    , m_swatch(new RoundedSwatch(10, this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);

    m_swatch->setFixedHeight(64);
    m_swatch->setColor(toQColor(m_color));
    m_swatch->setAccessibleName(tr("Color"));
    m_swatch->setAccessibleDescription(QStringLiteral("#FFFFFF"));
    layout->addWidget(m_swatch);

    // The initial texts are those of pure white as the tab has always shown
    // them (a computed OKLCH hue of white would be an arbitrary residue).
    addRow(layout, Notation::Hex, QStringLiteral("HEX"), {QString()}, {QStringLiteral("#FFFFFF")});
    addRow(layout, Notation::Rgb, QStringLiteral("RGB"), list({"R", "G", "B"}), list({"255", "255", "255"}));
    addRow(layout, Notation::Hsl, QStringLiteral("HSL"), list({"H", "S", "L"}), list({"0", "0", "100"}));
    addRow(layout, Notation::Oklch, QStringLiteral("OKLCH"), list({"L", "C", "H"}),
           list({"100.0", "0.00", "0"}));
    addRow(layout, Notation::Cmyk, QStringLiteral("CMYK"), list({"C", "M", "Y", "K"}),
           list({"0", "0", "0", "0"}));
    layout->addStretch(1);
}

// A caption in a column 50 wide, then the notation's fields sharing the
// rest equally: the HEX field alone and wider-padded, the numbers compact
// and monospaced, each showing its placeholder while empty.
void ConvertTab::addRow(QVBoxLayout *layout, Notation notation, const QString &label,
                        const QStringList &placeholders, const QStringList &initialTexts)
{
    const bool hex = notation == Notation::Hex;
    auto *row = new QHBoxLayout;
    row->setSpacing(6);
    QLabel *caption = Theme::makeLabel(label, Theme::font(12, QFont::Medium), Theme::secondaryText(), this);
    caption->setFixedWidth(50);
    row->addWidget(caption);
    for (qsizetype i = 0; i < placeholders.size(); ++i) {
        QLineEdit *field = Theme::makeField(hex ? 8 : 4, this);
        field->setText(initialTexts.at(i));
        if (hex) {
            field->setAccessibleName(label);
        } else {
            field->setFont(Theme::monospaceFont(13));
            field->setPlaceholderText(placeholders.at(i));
            field->setAccessibleName(label + QLatin1Char(' ') + placeholders.at(i));
            // Shares the row; its own preferred width (about 17 characters)
            // would push a four-field row off the window.
            field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
            field->setMinimumWidth(field->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 3 + 12);
        }
        connect(field, &QLineEdit::returnPressed, this, [this, notation] { commit(notation); });
        row->addWidget(field, 1);
        m_fields[size_t(notation)].append(field);
        if (i == 0)
            caption->setBuddy(field);
    }
    layout->addLayout(row);
}

QStringList ConvertTab::texts(Notation notation) const
{
    QStringList result;
    for (const QLineEdit *field : fields(notation))
        result.append(field->text());
    return result;
}

void ConvertTab::commit(Notation notation)
{
    if (m_isUpdating)
        return;
    const std::optional<RgbColor> parsed = Notations::parseFields(notation, texts(notation));
    if (!parsed)
        return;

    m_isUpdating = true;
    m_color = *parsed;
    m_swatch->setColor(toQColor(m_color));
    m_swatch->setAccessibleDescription(Notations::text(Notation::Hex, m_color));
    for (Notation other : Notations::all) {
        if (other == notation)
            continue;
        const QStringList texts = Notations::fieldTexts(other, m_color);
        for (qsizetype i = 0; i < texts.size() && i < fields(other).size(); ++i)
            fields(other).at(i)->setText(texts.at(i));
    }
    // Released on the next turn of the event loop, so that anything the
    // rewrite above sets off cannot start a second commit.
    QTimer::singleShot(0, this, [this] { m_isUpdating = false; });
}
