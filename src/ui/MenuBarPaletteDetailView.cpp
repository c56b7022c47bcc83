#include "MenuBarPaletteDetailView.h"

#include "ElidedLabel.h"
#include "PaletteColorRow.h"
#include "PaletteViewParts.h"
#include "StyledButton.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

MenuBarPaletteDetailView::MenuBarPaletteDetailView(const Palette &palette, PaletteStorage &paletteStorage,
                                                   QWidget *parent)
    : QWidget(parent)
    , m_paletteId(palette.id)
    , m_backButton(new StyledButton(StyledButton::Kind::Plain, tr("Back"), this))
{
    m_backButton->setSymbol(QStringLiteral("chevron.left"));
    m_backButton->setFont(Theme::font(13, QFont::DemiBold));
    m_backButton->setCursor(Qt::PointingHandCursor);
    m_backButton->setShortcut(QKeySequence::Back);
    connect(m_backButton, &QAbstractButton::clicked, this, &MenuBarPaletteDetailView::backRequested);

    auto *name = new ElidedLabel(palette.name, this);
    name->setFont(Theme::font(13, QFont::DemiBold));
    name->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    name->setAccessibleName(palette.name);

    auto *header = new QHBoxLayout;
    header->setContentsMargins(0, 0, 0, 0);
    header->setSpacing(8);
    header->addWidget(m_backButton);
    header->addWidget(name, 1);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addLayout(header);

    if (palette.colors.isEmpty()) {
        layout->addWidget(PaletteViewParts::makeEmptyState(tr("No colors in this palette"), nullptr, this), 1);
    } else {
        QList<QWidget *> rows;
        for (const ColorItem &color : palette.colors) {
            auto *row = new PaletteColorRow(color, palette.id, paletteStorage);
            m_colorRows.append(row);
            rows.append(row);
        }
        layout->addWidget(PaletteViewParts::makeRowList(rows, 2, this), 1);
    }
}
