#pragma once

#include "MenuTab.h"

#include <QPoint>
#include <QWidget>

#include <optional>

class ContrastStorage;
class HistoryStorage;
class PaletteFiles;
class PaletteStorage;
class QTabBar;
class TintwrightService;

// The one window: frameless, fixed at 300 x 400, dark whatever the desktop
// theme and dragged by its background. On its background layers, the tab
// bar of five icon-only tabs with the window's minimise and close
// buttons, a divider, and the selected tab. Switching tabs builds the new
// tab from scratch, so a tab's own state (an open sheet, a typed name) does
// not outlive the switch; the stores keep their data. Palette files
// dropped on the window are imported in the Palettes tab.
class MainWindow : public QWidget
{
    Q_OBJECT

public:
    MainWindow(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
               HistoryStorage &historyStorage, ContrastStorage &contrastStorage, QWidget *parent = nullptr);

    MenuTab selectedTab() const { return m_selectedTab; }
    // Selecting the selected tab again changes nothing.
    void setSelectedTab(MenuTab tab);

    // The selected tab. The tabs of the bar and the first tab are built on
    // the first turn of the event loop, right after the window is shown
    // (before it is first painted), so that the window maps without waiting
    // for text layout, which a tab bar needs even for icons; asking for
    // either builds them at once.
    QWidget *tab();
    QTabBar *tabBar();
    PaletteFiles &paletteFiles() const { return *m_paletteFiles; }

signals:
    void selectedTabChanged(MenuTab tab);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    // The tab bar and its divider, once.
    void build();
    QWidget *buildTabBar();
    void showTab(MenuTab tab);

    TintwrightService &m_tintwrightService;
    PaletteStorage &m_paletteStorage;
    HistoryStorage &m_historyStorage;
    ContrastStorage &m_contrastStorage;
    PaletteFiles *m_paletteFiles;
    MenuTab m_selectedTab = MenuTab::Picker;
    QTabBar *m_tabBar = nullptr;
    QWidget *m_tab = nullptr;
    // Where the pointer grabbed the window, while the window manager cannot
    // move it for us.
    std::optional<QPoint> m_manualDragOffset;
};
