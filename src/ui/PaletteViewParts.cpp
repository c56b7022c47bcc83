#include "PaletteViewParts.h"

#include "SymbolView.h"
#include "Theme.h"

#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace PaletteViewParts {

QWidget *makeEmptyState(const QString &text, QWidget *extra, QWidget *parent)
{
    auto *state = new QWidget(parent);
    auto *layout = new QVBoxLayout(state);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    layout->addStretch(1);

    auto *symbol = new SymbolView(QStringLiteral("swatchpalette"), Theme::withAlpha(Theme::secondaryText(), 0.5),
                                  36, state);
    layout->addWidget(symbol, 0, Qt::AlignHCenter);

    auto *caption = new QLabel(text, state);
    caption->setFont(Theme::font(13));
    QPalette p = caption->palette();
    p.setColor(QPalette::WindowText, Theme::secondaryText());
    caption->setPalette(p);
    caption->setAlignment(Qt::AlignCenter);
    layout->addWidget(caption);

    if (extra) {
        extra->setParent(state);
        layout->addWidget(extra, 0, Qt::AlignHCenter);
    }
    layout->addStretch(1);
    return state;
}

QScrollArea *makeRowList(const QList<QWidget *> &rows, int spacing, QWidget *parent)
{
    auto *area = new QScrollArea(parent);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->viewport()->setAutoFillBackground(false);

    auto *column = new QWidget(area);
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    for (QWidget *row : rows)
        layout->addWidget(row);
    layout->addStretch(1);
    area->setWidget(column);
    // setWidget() turns the fill on; the rows sit on the window's own layers.
    column->setAutoFillBackground(false);
    return area;
}

} // namespace PaletteViewParts
