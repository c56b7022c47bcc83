#include "TintwrightApp.h"

#include "MenuBarView.h"
#include "Theme.h"

TintwrightApp::TintwrightApp()
    : m_window(std::make_unique<MenuBarView>(m_tintwrightService, m_paletteStorage, m_historyStorage,
                                             m_contrastStorage))
{
    styleWindow(m_window.get());
}

TintwrightApp::~TintwrightApp() = default;

QWidget *TintwrightApp::window() const
{
    return m_window.get();
}

void TintwrightApp::styleWindow(QWidget *window)
{
    window->setWindowTitle(QStringLiteral("Tintwright"));
    window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    window->setFixedSize(300, 400);
    Theme::applyDarkPalette(window);
    Theme::styleToolTips();
}

void TintwrightApp::show()
{
    m_window->show();
}
