#include "ConvertView.h"

#include "ConvertGroupRow.h"
#include "ConvertInputRow.h"
#include "ConvertSmallInput.h"
#include "RoundedLineEdit.h"
#include "RoundedSwatch.h"

#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr Notation allNotations[] = {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch,
                                     Notation::Cmyk};

constexpr size_t indexOf(Notation notation)
{
    return size_t(notation);
}

QColor toQColor(const RgbColor &color)
{
    return QColor::fromRgbF(float(color.red), float(color.green), float(color.blue));
}

} // namespace

ConvertView::ConvertView(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(10);

    m_swatch = new RoundedSwatch(10, this);
    m_swatch->setFixedHeight(64);
    m_swatch->setColor(toQColor(m_color));
    m_swatch->setAccessibleName(tr("Color"));
    m_swatch->setAccessibleDescription(QStringLiteral("#FFFFFF"));
    layout->addWidget(m_swatch);

    auto *hexRow = new ConvertInputRow(QStringLiteral("HEX"), this);
    hexRow->setValue(QStringLiteral("#FFFFFF"));
    connect(hexRow, &ConvertInputRow::committed, this, [this] { commit(Notation::Hex); });
    m_fields[indexOf(Notation::Hex)] = {hexRow->field()};
    layout->addWidget(hexRow);

    // The initial texts are those of pure white as the tab has always shown
    // them (a computed OKLCH hue of white would be an arbitrary residue).
    addGroup(layout, Notation::Rgb, QStringLiteral("RGB"), {QStringLiteral("R"), QStringLiteral("G"), QStringLiteral("B")},
             {QStringLiteral("255"), QStringLiteral("255"), QStringLiteral("255")});
    addGroup(layout, Notation::Hsl, QStringLiteral("HSL"), {QStringLiteral("H"), QStringLiteral("S"), QStringLiteral("L")},
             {QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("100")});
    addGroup(layout, Notation::Oklch, QStringLiteral("OKLCH"),
             {QStringLiteral("L"), QStringLiteral("C"), QStringLiteral("H")},
             {QStringLiteral("100.0"), QStringLiteral("0.00"), QStringLiteral("0")});
    addGroup(layout, Notation::Cmyk, QStringLiteral("CMYK"),
             {QStringLiteral("C"), QStringLiteral("M"), QStringLiteral("Y"), QStringLiteral("K")},
             {QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0"), QStringLiteral("0")});
    layout->addStretch(1);
}

void ConvertView::addGroup(QVBoxLayout *layout, Notation notation, const QString &label,
                           const QStringList &placeholders, const QStringList &initialTexts)
{
    QList<QWidget *> inputs;
    QList<QLineEdit *> &fields = m_fields[indexOf(notation)];
    for (qsizetype i = 0; i < placeholders.size(); ++i) {
        auto *input = new ConvertSmallInput(placeholders.at(i));
        input->setText(initialTexts.at(i));
        input->setAccessibleName(label + QLatin1Char(' ') + placeholders.at(i));
        connect(input, &ConvertSmallInput::committed, this, [this, notation] { commit(notation); });
        inputs.append(input);
        fields.append(input);
    }
    layout->addWidget(new ConvertGroupRow(label, inputs, this));
}

QStringList ConvertView::texts(Notation notation) const
{
    QStringList result;
    for (const QLineEdit *field : m_fields[indexOf(notation)])
        result.append(field->text());
    return result;
}

void ConvertView::setTexts(Notation notation, const QStringList &texts)
{
    const QList<QLineEdit *> &fields = m_fields[indexOf(notation)];
    for (qsizetype i = 0; i < fields.size() && i < texts.size(); ++i)
        fields.at(i)->setText(texts.at(i));
}

void ConvertView::commit(Notation notation)
{
    if (m_isUpdating)
        return;
    const std::optional<RgbColor> parsed = parseNotation(notation, texts(notation));
    if (!parsed)
        return;

    m_isUpdating = true;
    m_color = *parsed;
    m_swatch->setColor(toQColor(m_color));
    m_swatch->setAccessibleDescription(notationTexts(Notation::Hex, m_color).value(0));
    for (Notation other : allNotations)
        if (other != notation)
            setTexts(other, notationTexts(other, m_color));
    // Released on the next turn of the event loop, so that anything the
    // rewrite above sets off cannot start a second commit.
    QTimer::singleShot(0, this, [this] { m_isUpdating = false; });
    emit colorChanged();
}
