#include "ColorDisplayView.h"

#include "FormatRow.h"
#include "Theme.h"
#include "model/ColorFormats.h"

#include <QPainter>
#include <QVBoxLayout>

ColorDisplayView::ColorDisplayView(const ColorItem &colorItem, QWidget *parent)
    : QWidget(parent), m_colorItem(colorItem)
{
    setObjectName(QStringLiteral("colorDisplay"));
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(12, 12, 12, 12);
    m_layout->setSpacing(2);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    rebuild();
}

void ColorDisplayView::setColorItem(const ColorItem &colorItem)
{
    m_colorItem = colorItem;
    rebuild();
}

void ColorDisplayView::rebuild()
{
    for (FormatRow *row : std::as_const(m_rows))
        delete row;
    m_rows.clear();
    const double r = m_colorItem.red, g = m_colorItem.green, b = m_colorItem.blue;
    const QList<std::pair<QString, QString>> notations{
        {QStringLiteral("HEX"), hexString(r, g, b)},
        {QStringLiteral("RGB"), rgbString(r, g, b)},
        {QStringLiteral("HSL"), hslString(r, g, b)},
        {QStringLiteral("OKLCH"), oklchString(r, g, b)},
    };
    for (const auto &[label, value] : notations) {
        auto *row = new FormatRow(label, value, this);
        m_layout->addWidget(row);
        m_rows.append(row);
    }
}

void ColorDisplayView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    Theme::paintRoundedCard(painter, rect(), 10, Theme::material(), QColor(255, 255, 255, 26), 0.5);
}
