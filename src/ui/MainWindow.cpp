#include "MainWindow.h"

#include "ContrastTab.h"
#include "ConvertTab.h"
#include "HistoryTab.h"
#include "PaletteFiles.h"
#include "PalettesTab.h"
#include "PickerTab.h"
#include "Theme.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
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

} // namespace

MainWindow::MainWindow(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
                       HistoryStorage &historyStorage, ContrastStorage &contrastStorage, QWidget *parent)
    : QWidget(parent)
    , m_tintwrightService(tintwrightService)
    , m_paletteStorage(paletteStorage)
    , m_historyStorage(historyStorage)
    , m_contrastStorage(contrastStorage)
    , m_paletteFiles(new PaletteFiles(paletteStorage, this))
{
    setWindowTitle(QStringLiteral("Tintwright"));
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setFixedSize(300, 400);
    setAttribute(Qt::WA_OpaquePaintEvent);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 2, 0, 0);
    layout->setSpacing(0);
    layout->addStretch(1);

    for (MenuTab tab : MenuTabs::all) {
        auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + int(tab))), this);
        connect(shortcut, &QShortcut::activated, this, [this, tab] { setSelectedTab(tab); });
    }
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), this), &QShortcut::activated, this,
            &QWidget::close);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this), &QShortcut::activated, qApp,
            &QCoreApplication::quit);
    // Files dropped on the window are imported in the Palettes tab.
    connect(m_paletteFiles, &PaletteFiles::dropReceived, this, [this] { setSelectedTab(MenuTab::Palettes); });
    QMetaObject::invokeMethod(
        this, [this] { tab(); }, Qt::QueuedConnection);
}

void MainWindow::build()
{
    if (m_tabBar)
        return;
    setAccessibleName(QStringLiteral("Tintwright"));
    auto *layout = static_cast<QVBoxLayout *>(this->layout());
    // Shown at once: a layout would show them only on the next turn, after
    // the first paint.
    for (QWidget *part : {buildTabBar(), Theme::makeDivider(0.5, this)}) {
        layout->insertWidget(layout->count() - 1, part);
        part->show();
    }
}

QWidget *MainWindow::buildTabBar()
{
    auto *bar = new TabBar(this);
    m_tabBar = new QTabBar(bar);
    m_tabBar->setDrawBase(false);
    m_tabBar->setExpanding(true);
    m_tabBar->setUsesScrollButtons(false);
    for (MenuTab tab : MenuTabs::all) {
        const int index = m_tabBar->addTab(QString());
        m_tabBar->setTabData(index, MenuTabs::icon(tab));
        m_tabBar->setAccessibleTabName(index, MenuTabs::title(tab));
        m_tabBar->setTabToolTip(index,
                                QStringLiteral("%1 (Ctrl+%2)").arg(MenuTabs::title(tab)).arg(index + 1));
    }
    m_tabBar->setCurrentIndex(int(m_selectedTab));
    connect(m_tabBar, &QTabBar::currentChanged, this, [this](int index) { setSelectedTab(MenuTab(index)); });

    // No title bar, so the window's own two buttons sit at the end of the
    // tab bar.
    QPushButton *minimise = Theme::makeIconButton(QStringLiteral("minus"), tr("Minimize"), 10, 18, bar);
    connect(minimise, &QAbstractButton::clicked, this, &QWidget::showMinimized);
    QPushButton *close = Theme::makeIconButton(QStringLiteral("xmark"), tr("Close"), 10, 18, bar);
    close->setProperty("hoverColor", QColor(255, 105, 97));
    connect(close, &QAbstractButton::clicked, this, &QWidget::close);
    // Tabs are drawn 2 in from their edges, so that they stand 4 apart.
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(6, 8, 8, 8);
    row->setSpacing(0);
    row->addWidget(m_tabBar, 1);
    row->addSpacing(8);
    row->addWidget(minimise);
    row->addSpacing(6);
    row->addWidget(close);
    return bar;
}

QTabBar *MainWindow::tabBar()
{
    build();
    return m_tabBar;
}

QWidget *MainWindow::tab()
{
    build();
    if (!m_tab)
        showTab(m_selectedTab);
    return m_tab;
}

void MainWindow::setSelectedTab(MenuTab tab)
{
    if (tab == m_selectedTab)
        return;
    m_selectedTab = tab;
    tabBar()->setCurrentIndex(int(tab));
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
        fresh = new HistoryTab(m_historyStorage, m_paletteStorage);
        break;
    case MenuTab::Palettes:
        fresh = new PalettesTab(m_paletteStorage, *m_paletteFiles);
        break;
    case MenuTab::Convert:
        fresh = new ConvertTab;
        break;
    case MenuTab::Contrast:
        fresh = new ContrastTab(m_contrastStorage);
        break;
    }
    auto *layout = static_cast<QVBoxLayout *>(this->layout());
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
        QWidget::mousePressEvent(event);
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
    QWidget::mouseMoveEvent(event);
}

void MainWindow::mouseReleaseEvent(QMouseEvent *event)
{
    m_manualDragOffset.reset();
    QWidget::mouseReleaseEvent(event);
}
