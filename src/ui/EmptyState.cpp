#include "EmptyState.h"

#include "Icons.h"
#include "Theme.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

// Rendered when painted, for the screen it is on, so it stays crisp.
class SymbolView : public QWidget
{
public:
    SymbolView(const QString &symbolName, int size, QWidget *parent)
        : QWidget(parent)
        , m_symbol(symbolName)
    {
        setFixedSize(size, size);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).drawPixmap(0, 0,
                                  Icons::pixmap(m_symbol, Theme::withAlpha(Theme::secondaryText(), 0.5),
                                                width(), devicePixelRatioF()));
    }

private:
    QString m_symbol;
};

} // namespace

EmptyState::EmptyState(const QString &symbolName, int symbolSize, int spacing, QWidget *parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(spacing);
    m_layout->addStretch(1);
    m_layout->addWidget(new SymbolView(symbolName, symbolSize, this), 0, Qt::AlignHCenter);
    m_layout->addStretch(1);
}

void EmptyState::addCaption(const QString &text, int fontSize, const QColor &color)
{
    QLabel *caption = Theme::makeLabel(text, Theme::font(fontSize), color, this);
    caption->setAlignment(Qt::AlignCenter);
    m_layout->insertWidget(m_layout->count() - 1, caption);
}

void EmptyState::addWidget(QWidget *widget)
{
    m_layout->insertWidget(m_layout->count() - 1, widget, 0, Qt::AlignHCenter);
}
