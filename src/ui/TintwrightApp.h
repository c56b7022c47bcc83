#pragma once

#include "picking/TintwrightService.h"
#include "storage/ContrastStorage.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QWidget>

#include <memory>

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
    QWidget *window() const { return m_window.get(); }

private:
    TintwrightService m_tintwrightService;
    PaletteStorage m_paletteStorage;
    HistoryStorage m_historyStorage;
    ContrastStorage m_contrastStorage;
    std::unique_ptr<QWidget> m_window;
};
