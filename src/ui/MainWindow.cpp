#include "MainWindow.h"

#include "ContrastTab.h"
#include "ConvertTab.h"
#include "HistoryTab.h"
#include "IconButton.h"
#include "ListActions.h"
#include "PalettesTab.h"
#include "PickerTab.h"
#include "TabButton.h"
#include "Theme.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLinearGradient>
#include <QMimeData>
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
        QPainter(this).fillRect(rect(), Theme::withAlpha(Theme::material(), 0.5));
    }
};

// The local files among dropped URLs.
QStringList localFiles(const QMimeData *data)
{
    QStringList paths;
    for (const QUrl &url : data->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

} // namespace

MainWindow::MainWindow(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
                       HistoryStorage &historyStorage, ContrastStorage &contrastStorage, QWidget *parent)
    : QMainWindow(parent)
    , m_tintwrightService(tintwrightService)
    , m_paletteStorage(paletteStorage)
    , m_historyStorage(historyStorage)
    , m_contrastStorage(contrastStorage)
    , m_listActions(new ListActions(paletteStorage, historyStorage, this))
{
    setWindowTitle(QStringLiteral("Tintwright"));
    setAccessibleName(QStringLiteral("Tintwright"));
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setFixedSize(300, 400);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAcceptDrops(true);
    Theme::applyDarkPalette(this);
    Theme::styleToolTips();

    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 2, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(buildTabBar());
    layout->addWidget(Theme::makeDivider(0.5, central));
    layout->addStretch(1);
    setCentralWidget(central);

    for (MenuTab tab : MenuTabs::all) {
        auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + int(tab))), this);
        connect(shortcut, &QShortcut::activated, this, [this, tab] { setSelectedTab(tab); });
    }
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this,
            &QWidget::close);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this), &QShortcut::activated, qApp,
            &QCoreApplication::quit);
    QMetaObject::invokeMethod(
        this, [this] { tab(); }, Qt::QueuedConnection);
}

QWidget *MainWindow::buildTabBar()
{
    auto *bar = new TabBar(this);
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 8, 8, 8);
    row->setSpacing(4);
    for (MenuTab tab : MenuTabs::all) {
        auto *button = new TabButton(tab, bar);
        button->setChecked(tab == m_selectedTab);
        connect(button, &QAbstractButton::clicked, this, [this, tab] { setSelectedTab(tab); });
        row->addWidget(button, 1);
        m_tabButtons[size_t(tab)] = button;
    }

    // No title bar, so the window's own two buttons sit at the end of the
    // tab bar.
    auto *minimise = new IconButton(QStringLiteral("minus"), tr("Minimize"), bar);
    minimise->setSizes(10, 18);
    connect(minimise, &QAbstractButton::clicked, this, &QWidget::showMinimized);
    auto *close = new IconButton(QStringLiteral("xmark"), tr("Close"), bar);
    close->setSizes(10, 18);
    close->setHoverColor(QColor(255, 105, 97));
    connect(close, &QAbstractButton::clicked, this, &QWidget::close);
    row->addSpacing(6);
    row->addWidget(minimise);
    row->addSpacing(2);
    row->addWidget(close);
    return bar;
}

QWidget *MainWindow::tab()
{
    if (!m_tab)
        showTab(m_selectedTab);
    return m_tab;
}

void MainWindow::setSelectedTab(MenuTab tab)
{
    if (tab == m_selectedTab)
        return;
    m_selectedTab = tab;
    for (TabButton *button : m_tabButtons)
        button->setChecked(button->tab() == tab);
    // A fresh tab: nothing of the previous tab's own state survives.
    showTab(tab);
    emit selectedTabChanged(tab);
}

// The one place that knows which view shows which tab.
void MainWindow::showTab(MenuTab tab)
{
    QWidget *fresh = nullptr;
    switch (tab) {
    case MenuTab::Picker:
        fresh = new PickerTab(m_tintwrightService, m_paletteStorage);
        break;
    case MenuTab::History:
        fresh = new HistoryTab(m_historyStorage, m_paletteStorage, *m_listActions);
        break;
    case MenuTab::Palettes:
        fresh = new PalettesTab(m_paletteStorage, *m_listActions);
        break;
    case MenuTab::Convert:
        fresh = new ConvertTab;
        break;
    case MenuTab::Contrast:
        fresh = new ContrastTab(m_contrastStorage);
        break;
    }
    auto *layout = static_cast<QVBoxLayout *>(centralWidget()->layout());
    if (m_tab) {
        delete layout->replaceWidget(m_tab, fresh);
        delete m_tab;
    } else {
        // The stretch that held the place.
        delete layout->takeAt(layout->count() - 1);
        layout->addWidget(fresh, 1);
    }
    m_tab = fresh;
    m_tab->show();
}

void MainWindow::paintEvent(QPaintEvent *)
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

void MainWindow::mousePressEvent(QMouseEvent *event)
{
    // Dragging by the background moves the window.
    if (event->button() != Qt::LeftButton) {
        QMainWindow::mousePressEvent(event);
        return;
    }
    QWindow *handle = windowHandle();
    if (!handle || !handle->startSystemMove())
        m_manualDragOffset = event->globalPosition().toPoint() - pos();
    event->accept();
}

void MainWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (m_manualDragOffset && (event->buttons() & Qt::LeftButton)) {
        move(event->globalPosition().toPoint() - *m_manualDragOffset);
        event->accept();
        return;
    }
    QMainWindow::mouseMoveEvent(event);
}

void MainWindow::mouseReleaseEvent(QMouseEvent *event)
{
    m_manualDragOffset.reset();
    QMainWindow::mouseReleaseEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!localFiles(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QStringList paths = localFiles(event->mimeData());
    if (paths.isEmpty())
        return;
    event->acceptProposedAction();
    setSelectedTab(MenuTab::Palettes);
    if (auto *palettes = qobject_cast<PalettesTab *>(tab()))
        palettes->importFiles(paths);
}
