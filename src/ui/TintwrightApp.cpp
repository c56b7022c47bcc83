#include "TintwrightApp.h"

#include <QPalette>

TintwrightApp::TintwrightApp()
    : m_window(std::make_unique<QWidget>())
{
    m_window->setWindowTitle(QStringLiteral("Tintwright"));
    m_window->setFixedSize(300, 400);
    QPalette palette = m_window->palette();
    palette.setColor(QPalette::Window, QColor(30, 30, 32));
    m_window->setPalette(palette);
    m_window->setAutoFillBackground(true);
}

TintwrightApp::~TintwrightApp() = default;

void TintwrightApp::show()
{
    m_window->show();
}
