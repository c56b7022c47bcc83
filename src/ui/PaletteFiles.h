#pragma once

#include "model/PaletteFormats.h"

#include <QObject>
#include <QUuid>

class PaletteStorage;
class QWidget;

// Palette files in and out, as the user reaches them: "Import Palette…"
// and files dropped on the window, a palette's "Export…" and "Copy as
// CSS". The one place for the file dialogs, the rule that a file's suffix
// names its format, the folder last used, and the one line that tells how
// each ended (notice).
class PaletteFiles : public QObject
{
    Q_OBJECT

public:
    // Takes the files dropped on the window.
    PaletteFiles(PaletteStorage &paletteStorage, QWidget *window);

    // The open dialog; imports the files chosen.
    void showImportDialog();
    // Each file becomes a new palette at the end of the list; a file that
    // cannot be read changes nothing. Only regular files are read, and one
    // larger than PaletteFormats::maxFileSize is refused unread.
    void importFiles(const QStringList &paths);

    // The save dialog (every format offered, .gpl first), then the export.
    void showExportDialog(const QUuid &paletteId);
    // Writes the palette whole or not at all, in the format the path's
    // suffix names; a path without a known suffix gets the suffix of
    // `format` and that format.
    void exportToFile(const QUuid &paletteId, const QString &path, PaletteFormat format);
    // The palette as CSS custom properties, on the clipboard.
    void copyAsCss(const QUuid &paletteId);

signals:
    // Files are about to be imported from a drop (the window shows its
    // palettes first).
    void dropReceived();
    // The last palette an import made.
    void imported(const QUuid &paletteId);
    // How an import or export ended, in one line.
    void notice(const QString &line, bool failed);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    PaletteStorage &m_paletteStorage;
    QWidget *m_window;
    QString m_folder; // where the last file went or came from
};
