#include "MenuBarView.h"

#include "ContrastView.h"
#include "ConvertView.h"
#include "HistoryView.h"
#include "IconButton.h"
#include "MenuBarPalettesView.h"
#include "MenuBarPickerView.h"
#include "TabButton.h"
#include "Theme.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWindow>

namespace {

// The tab bar's translucent strip.
class TabBar : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Theme::withAlpha(Theme::material(), 0.5));
    }
};

} // namespace

MenuBarView::MenuBarView(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
                         HistoryStorage &historyStorage, ContrastStorage &contrastStorage,
                         QWidget *parent)
    : QWidget(parent),
      m_tintwrightService(tintwrightService),
      m_paletteStorage(paletteStorage),
      m_historyStorage(historyStorage),
      m_contrastStorage(contrastStorage)
{
    setObjectName(QStringLiteral("menuBarView"));
    setAccessibleName(QStringLiteral("Tintwright"));
    Theme::applyDarkPalette(this);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFixedSize(300, 400);

    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 2, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(buildTabBar());
    m_layout->addWidget(Theme::makeDivider(0.5, this));
    m_layout->addStretch(1);
    installShortcuts();
    QMetaObject::invokeMethod(this, [this] { tabView(); }, Qt::QueuedConnection);
}

QWidget *MenuBarView::tabView()
{
    if (!m_tabView)
        showTabView(m_selectedTab);
    return m_tabView;
}

void MenuBarView::showTabView(MenuTab tab)
{
    QWidget *fresh = makeTabView(tab);
    if (m_tabView) {
        delete m_layout->replaceWidget(m_tabView, fresh);
        delete m_tabView;
    } else {
        // The stretch that held the place.
        delete m_layout->takeAt(m_layout->count() - 1);
        m_layout->addWidget(fresh, 1);
    }
    m_tabView = fresh;
    m_tabView->show();
}

QWidget *MenuBarView::buildTabBar()
{
    auto *bar = new TabBar(this);
    bar->setObjectName(QStringLiteral("tabBar"));
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 8, 8, 8);
    row->setSpacing(4);
    for (MenuTab tab : MenuTabs::all()) {
        auto *button = new TabButton(tab, bar);
        button->setSelected(tab == m_selectedTab);
        button->setToolTip(QStringLiteral("%1 (Ctrl+%2)")
                               .arg(MenuTabs::title(tab))
                               .arg(MenuTabs::all().indexOf(tab) + 1));
        connect(button, &QAbstractButton::clicked, this, [this, tab] { setSelectedTab(tab); });
        row->addWidget(button, 1);
        m_tabButtons.append(button);
    }

    // No title bar, so the window's own two buttons sit at the end of the
    // tab bar.
    row->addSpacing(6);
    auto *minimise = new IconButton(QStringLiteral("minus"), tr("Minimize"), bar);
    minimise->setObjectName(QStringLiteral("minimizeButton"));
    minimise->setSizes(10, 18);
    connect(minimise, &QAbstractButton::clicked, this, [this] { window()->showMinimized(); });
    auto *close = new IconButton(QStringLiteral("xmark"), tr("Close"), bar);
    close->setObjectName(QStringLiteral("closeButton"));
    close->setSizes(10, 18);
    close->setHoverColor(QColor(255, 105, 97));
    connect(close, &QAbstractButton::clicked, this, [this] { window()->close(); });
    row->addWidget(minimise);
    row->addSpacing(2);
    row->addWidget(close);
    return bar;
}

void MenuBarView::installShortcuts()
{
    for (int i = 0; i < MenuTabs::all().size(); ++i) {
        const MenuTab tab = MenuTabs::all().at(i);
        auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)), this);
        connect(shortcut, &QShortcut::activated, this, [this, tab] { setSelectedTab(tab); });
    }
    auto *closeWindow = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this);
    connect(closeWindow, &QShortcut::activated, this, [this] { window()->close(); });
    auto *quit = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this);
    connect(quit, &QShortcut::activated, qApp, &QCoreApplication::quit);
}

TabButton *MenuBarView::tabButton(MenuTab tab) const
{
    return m_tabButtons.value(MenuTabs::all().indexOf(tab));
}

void MenuBarView::setSelectedTab(MenuTab tab)
{
    if (tab == m_selectedTab)
        return;
    m_selectedTab = tab;
    for (TabButton *button : m_tabButtons)
        button->setSelected(button->tab() == tab);

    // A fresh view: nothing of the previous tab's own state survives.
    showTabView(tab);
    emit selectedTabChanged(tab);
}

QWidget *MenuBarView::makeTabView(MenuTab tab)
{
    QWidget *view = nullptr;
    switch (tab) {
    case MenuTab::Picker:
        view = new MenuBarPickerView(m_tintwrightService, m_paletteStorage, m_historyStorage, this);
        break;
    case MenuTab::History:
        view = new HistoryView(m_historyStorage, m_tintwrightService, m_paletteStorage, this);
        break;
    case MenuTab::Palettes:
        view = new MenuBarPalettesView(m_paletteStorage, m_tintwrightService, this);
        break;
    case MenuTab::Convert:
        view = new ConvertView(this);
        break;
    case MenuTab::Contrast:
        view = new ContrastView(m_contrastStorage, this);
        break;
    }
    view->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    return view;
}

void MenuBarView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    // An opaque base first: without a compositor a translucent window
    // would show black.
    painter.fillRect(rect(), Theme::windowBase());
    painter.fillRect(rect(), QColor(0, 0, 0, 77)); // black at 0.3
    QLinearGradient gradient(rect().topLeft(), rect().bottomRight());
    gradient.setColorAt(0.0, QColor::fromRgbF(0.4f, 0.5f, 0.9f, 0.08f));
    gradient.setColorAt(0.5, QColor::fromRgbF(0.6f, 0.4f, 0.8f, 0.05f));
    gradient.setColorAt(1.0, QColor::fromRgbF(0.6f, 0.4f, 0.8f, 0.0f));
    painter.fillRect(rect(), gradient);
}

void MenuBarView::mousePressEvent(QMouseEvent *event)
{
    // Dragging by the background moves the window.
    if (event->button() != Qt::LeftButton || !isWindow()) {
        QWidget::mousePressEvent(event);
        return;
    }
    QWindow *handle = windowHandle();
    if (handle && handle->startSystemMove()) {
        event->accept();
        return;
    }
    m_manualDragOffset = event->globalPosition().toPoint() - pos();
    event->accept();
}

void MenuBarView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_manualDragOffset && (event->buttons() & Qt::LeftButton)) {
        move(event->globalPosition().toPoint() - *m_manualDragOffset);
        event->accept();
        return;
    }
    QWidget::mouseMoveEvent(event);
}

void MenuBarView::mouseReleaseEvent(QMouseEvent *event)
{
    m_manualDragOffset.reset();
    QWidget::mouseReleaseEvent(event);
}
