#include "ClipboardHandOff.h"

#include "ui/ClipboardWriter.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

namespace {

constexpr int keeperStartMs = 5000;
constexpr int keeperLifeMs = 24 * 60 * 60 * 1000;

// Runs until the clipboard belongs to someone else, or the time is up.
void waitUntilTaken(int timeoutMs)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (!clipboard->ownsClipboard())
        return;
    QEventLoop loop;
    QObject::connect(clipboard, &QClipboard::changed, &loop, [&loop, clipboard](QClipboard::Mode mode) {
        if (mode == QClipboard::Clipboard && !clipboard->ownsClipboard())
            loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

bool ClipboardHandOff::handOff(const QString &text, QString *whyNot)
{
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        const QString wlCopy = QStandardPaths::findExecutable(QStringLiteral("wl-copy"));
        QProcess copier;
        copier.setProgram(wlCopy);
        copier.setArguments({QStringLiteral("--"), text});
        // It stays to serve the clipboard: no copy of our output with it.
        copier.setStandardInputFile(QProcess::nullDevice());
        copier.setStandardOutputFile(QProcess::nullDevice());
        copier.setStandardErrorFile(QProcess::nullDevice());
        if (!wlCopy.isEmpty() && copier.startDetached())
            return true;
        if (whyNot)
            *whyNot = wlCopy.isEmpty() ? QStringLiteral("wl-copy (from wl-clipboard) is not installed")
                                       : QStringLiteral("wl-copy did not start");
        return false;
    }
    // Ours until the keeper takes it over, so it is never empty between.
    copyToClipboard(text);
    QProcess keeper;
    keeper.setProgram(QCoreApplication::applicationFilePath());
    keeper.setArguments({QStringLiteral("--serve-clipboard"), text});
    // Whoever reads this command's output waits for every copy of its
    // standard output to close: the keeper keeps none.
    keeper.setStandardInputFile(QProcess::nullDevice());
    keeper.setStandardOutputFile(QProcess::nullDevice());
    keeper.setStandardErrorFile(QProcess::nullDevice());
    if (!keeper.startDetached())
        return true; // ours until this command exits, which is all there is
    waitUntilTaken(keeperStartMs);
    return true;
}

int ClipboardHandOff::keep(const QString &text)
{
    // Taken straight from the command that owns it: a clear first would
    // leave the clipboard empty for a moment.
    QGuiApplication::clipboard()->setText(text, QClipboard::Clipboard);
    waitUntilTaken(keeperLifeMs);
    return 0;
}
