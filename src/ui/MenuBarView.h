#pragma once

#include "MenuTab.h"

#include <QPoint>
#include <QWidget>

#include <optional>

class ContrastStorage;
class HistoryStorage;
class IconButton;
class PaletteStorage;
class TabButton;
class TintwrightService;

// The window's root: the dark background layers, the tab bar of five
// icon-only buttons with the window's minimise and close buttons, a
// divider, and the selected tab's view. Switching tabs builds the new tab's
// view from scratch, so a tab's own state (an open sheet, a typed name)
// does not outlive the switch; the stores keep their data.
class MenuBarView : public QWidget
{
    Q_OBJECT

public:
    MenuBarView(TintwrightService &tintwrightService, PaletteStorage &paletteStorage,
                HistoryStorage &historyStorage, ContrastStorage &contrastStorage,
                QWidget *parent = nullptr);

    MenuTab selectedTab() const { return m_selectedTab; }
    // Selecting the selected tab again changes nothing.
    void setSelectedTab(MenuTab tab);

    // The selected tab's view. The first one is built on the first turn of
    // the event loop, right after the window is shown (before it is first
    // painted), so that the window maps without waiting for text layout;
    // asking for it builds it at once.
    QWidget *tabView();
    TabButton *tabButton(MenuTab tab) const;

    // The one place that knows which view shows which tab.
    QWidget *makeTabView(MenuTab tab);

signals:
    void selectedTabChanged(MenuTab tab);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QWidget *buildTabBar();
    void showTabView(MenuTab tab);
    void installShortcuts();

    TintwrightService &m_tintwrightService;
    PaletteStorage &m_paletteStorage;
    HistoryStorage &m_historyStorage;
    ContrastStorage &m_contrastStorage;
    MenuTab m_selectedTab = MenuTab::Picker;
    QList<TabButton *> m_tabButtons;
    QWidget *m_tabView = nullptr;
    class QVBoxLayout *m_layout = nullptr;
    // Where the pointer grabbed the window, while the window manager cannot
    // move it for us.
    std::optional<QPoint> m_manualDragOffset;
};
