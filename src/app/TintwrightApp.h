#pragma once

#include "app/SingleInstance.h"
#include "picking/TintwrightService.h"
#include "storage/ContrastStorage.h"
#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QString>

#include <functional>
#include <memory>

class GlobalPickShortcut;
class MainWindow;
class QDBusConnection;

// The composition root: installs the window's look, creates the four
// shared objects once, for the life of the process, with the palettes and
// history in the given data folder; makes the one rule that joins two of
// them (every finished pick goes first into the history); and creates the
// window that shows them all.
class TintwrightApp
{
public:
    explicit TintwrightApp(const QString &dataFolder);
    ~TintwrightApp();

    // Reverse-DNS id shared by the desktop entry, the icon and the metainfo;
    // on Wayland it is also the window's app id.
    static QString applicationId();

    TintwrightService &tintwrightService() { return m_tintwrightService; }
    PaletteStorage &paletteStorage() { return m_paletteStorage; }
    HistoryStorage &historyStorage() { return m_historyStorage; }
    ContrastStorage &contrastStorage() { return m_contrastStorage; }
    MainWindow &window() { return *m_window; }

    void show();
    // Restores the window if minimised, raises it and asks for keyboard
    // focus, as a later launch asks. On Wayland the compositor grants focus
    // only with the launcher's activation token, which is passed on.
    void bringToFront(const QString &activationToken);

    // A pick asked for by a command: runs through the service without
    // raising the window, copies the text here when asked (this process
    // outlives the command) and answers once. A pick already running is
    // not interrupted: the answer is "busy".
    void pickOnRequest(Notation notation, bool copy, const SingleInstance::PickAnswer &answer);

    // Registers the "pick a color" global shortcut where the desktop offers
    // the portal for it; its pick is copied as HEX and the window comes
    // forward.
    void listenForGlobalShortcut(const QDBusConnection &bus);

private:
    // One pick through the service; `done` reads its result.
    void pick(const std::function<void(const PickResult &)> &done);

    TintwrightService m_tintwrightService;
    PaletteStorage m_paletteStorage;
    HistoryStorage m_historyStorage;
    ContrastStorage m_contrastStorage;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<GlobalPickShortcut> m_globalShortcut;
};
