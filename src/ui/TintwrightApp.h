#pragma once

#include "picking/TintwrightService.h"
#include "storage/ContrastStorage.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QWidget>

#include <memory>

class MenuBarView;

// Creates the four shared objects once, for the life of the process, and
// the one window that shows them.
class TintwrightApp
{
public:
    TintwrightApp();
    ~TintwrightApp();

    void show();

    TintwrightService &tintwrightService() { return m_tintwrightService; }
    PaletteStorage &paletteStorage() { return m_paletteStorage; }
    HistoryStorage &historyStorage() { return m_historyStorage; }
    ContrastStorage &contrastStorage() { return m_contrastStorage; }
    QWidget *window() const;
    MenuBarView *menuBarView() const { return m_window.get(); }

    // The window's own settings: frameless, fixed 300 x 400, dark whatever
    // the desktop theme. Applied before the window is first shown.
    static void styleWindow(QWidget *window);

private:
    TintwrightService m_tintwrightService;
    PaletteStorage m_paletteStorage;
    HistoryStorage m_historyStorage;
    ContrastStorage m_contrastStorage;
    std::unique_ptr<MenuBarView> m_window;
};
