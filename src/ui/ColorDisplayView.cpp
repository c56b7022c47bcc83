#include "ColorDisplayView.h"

#include "ClipboardWriter.h"
#include "Theme.h"
#include "model/ColorFormats.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

ColorDisplayView::ColorDisplayView(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("colorDisplay"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(2);
    const char *labels[rowCount] = {"HEX", "RGB", "HSL", "OKLCH"};
    for (int i = 0; i < rowCount; ++i) {
        Row &row = m_rows[i];
        row.label = QString::fromLatin1(labels[i]);
        row.value = Theme::makeLabel(QString(), Theme::monospaceFont(12), Theme::primaryText(), this);
        row.value->setTextFormat(Qt::PlainText);
        row.value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        row.value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        row.copyButton =
            Theme::makeIconButton(QStringLiteral("clipboard"), tr("Copy %1").arg(row.label), 11, 12, this);
        connect(row.copyButton, &QAbstractButton::clicked, this, [this, i] { copy(i); });
        auto *line = new QHBoxLayout;
        line->setContentsMargins(6, 3, 6, 3);
        line->setSpacing(8);
        line->addWidget(row.value, 1);
        line->addWidget(row.copyButton, 0, Qt::AlignVCenter);
        layout->addLayout(line);
    }
}

void ColorDisplayView::setColorItem(const ColorItem &colorItem)
{
    const double r = colorItem.red, g = colorItem.green, b = colorItem.blue;
    const QString values[rowCount] = {hexString(r, g, b), rgbString(r, g, b), hslString(r, g, b),
                                      oklchString(r, g, b)};
    for (int i = 0; i < rowCount; ++i) {
        Row &row = m_rows[i];
        row.value->setText(values[i]);
        row.value->setAccessibleName(row.label + QLatin1Char(' ') + values[i]);
        ++row.shown;
        setCopied(row, false);
    }
}

QString ColorDisplayView::value(int row) const
{
    return m_rows[row].value->text();
}

bool ColorDisplayView::isCopied(int row) const
{
    return m_rows[row].copied;
}

void ColorDisplayView::copy(int index)
{
    Row &row = m_rows[index];
    copyToClipboard(row.value->text());
    setCopied(row, true);
    // Not cancelled by a later copy: the checkmark goes one second after
    // the first click.
    QTimer::singleShot(1000, this, [this, index, shown = row.shown] {
        if (m_rows[index].shown == shown)
            setCopied(m_rows[index], false);
    });
}

void ColorDisplayView::setCopied(Row &row, bool copied)
{
    row.copied = copied;
    Theme::setSymbol(row.copyButton, copied ? QStringLiteral("checkmark") : QStringLiteral("clipboard"));
}

void ColorDisplayView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    Theme::paintRoundedCard(painter, rect(), 10, Theme::material(), QColor(255, 255, 255, 26), 0.5);
}
