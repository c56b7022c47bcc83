#include "PaletteFiles.h"

#include "ClipboardWriter.h"
#include "model/Plural.h"
#include "storage/PaletteStorage.h"

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QSaveFile>

using namespace Qt::Literals::StringLiterals;

namespace {

FileReadResult readFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return FileReadResult::refused(u"the file does not exist"_s);
    if (info.isDir())
        return FileReadResult::refused(u"it is a folder"_s);
    // A fifo or a device could block or never end.
    if (!info.isFile())
        return FileReadResult::refused(u"it is not a regular file"_s);
    if (info.size() > PaletteFormats::maxFileSize)
        return FileReadResult::refused(PaletteFormats::tooLarge());
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return FileReadResult::refused(file.errorString());
    // One byte more than allowed tells a file that grew since.
    const QByteArray data = file.read(PaletteFormats::maxFileSize + 1);
    if (file.error() != QFileDevice::NoError)
        return FileReadResult::refused(file.errorString());
    return PaletteFormats::read(info.fileName(), data);
}

QString exportFilter(PaletteFormat format)
{
    static const char *const names[] = {"GIMP Palette", "Adobe Swatch Exchange", "CSS Custom Properties",
                                        "JSON", "Plain Text, One HEX a Line"};
    return QLatin1String(names[int(format)]) + u" (*."_s + PaletteFormats::suffix(format) + u')';
}

// The palette's name as a file name: no folder separators, never empty.
QString fileNameFor(const QString &paletteName)
{
    QString name = paletteName.trimmed();
    name.replace(u'/', u'-').replace(u'\\', u'-');
    if (name.startsWith(u'.'))
        name.remove(0, 1);
    return name.isEmpty() ? u"Palette"_s : name;
}

QString importedLine(const QString &fileName, const FilePalette &palette)
{
    QString line =
        u"Imported \"%1\": %2"_s.arg(fileName, countOf(palette.colors.size(), "color"_L1, "colors"_L1));
    if (palette.skippedLab > 0)
        line += u", %1 skipped"_s.arg(countOf(palette.skippedLab, "LAB color"_L1, "LAB colors"_L1));
    if (palette.skippedUnreadable > 0)
        line += u", %1 skipped"_s.arg(
            countOf(palette.skippedUnreadable, "unreadable entry"_L1, "unreadable entries"_L1));
    return line;
}

} // namespace

PaletteFiles::PaletteFiles(PaletteStorage &paletteStorage, QWidget *window)
    : QObject(window)
    , m_paletteStorage(paletteStorage)
    , m_window(window)
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

void PaletteFiles::showImportDialog()
{
    const QStringList paths =
        QFileDialog::getOpenFileNames(m_window, tr("Import Palette"), m_folder,
                                      tr("Palettes (*.gpl *.ase *.css *.scss *.txt *.json);;All Files (*)"));
    if (!paths.isEmpty())
        importFiles(paths);
}

void PaletteFiles::importFiles(const QStringList &paths)
{
    QStringList failures;
    QString done;
    QUuid last;
    int imported = 0;
    for (const QString &path : paths) {
        m_folder = QFileInfo(path).absolutePath();
        const QString fileName = QFileInfo(path).fileName();
        const FileReadResult result = readFile(path);
        if (!result.palette) {
            failures.append(u"Could not import \"%1\": %2"_s.arg(fileName, result.error));
            continue;
        }
        last =
            m_paletteStorage.createPalette(result.palette->name, PaletteFormats::colorItems(*result.palette))
                .id;
        ++imported;
        done = importedLine(fileName, *result.palette);
    }
    if (imported > 0)
        emit this->imported(last);
    if (!failures.isEmpty())
        emit notice(failures.first()
                        + (failures.size() > 1 ? u" (and %1 more)"_s.arg(failures.size() - 1) : u""_s),
                    true);
    else if (imported > 0)
        emit notice(imported == 1 ? done : u"Imported %1 palettes"_s.arg(imported), false);
}

void PaletteFiles::showExportDialog(const QUuid &paletteId)
{
    const std::optional<Palette> palette = m_paletteStorage.palette(paletteId);
    if (!palette)
        return;
    QStringList filters;
    for (const PaletteFormat format : PaletteFormats::allFormats)
        filters.append(exportFilter(format));
    QString filter = filters.first();
    const QString folder = m_folder.isEmpty() ? QDir::homePath() : m_folder;
    const QString suggested = QDir(folder).filePath(fileNameFor(palette->name) + u".gpl"_s);
    const QString path = QFileDialog::getSaveFileName(m_window, tr("Export Palette"), suggested,
                                                      filters.join(u";;"_s), &filter);
    if (path.isEmpty())
        return;
    m_folder = QFileInfo(path).absolutePath();
    exportToFile(paletteId, path, PaletteFormats::allFormats[qMax<qsizetype>(0, filters.indexOf(filter))]);
}

void PaletteFiles::exportToFile(const QUuid &paletteId, const QString &path, PaletteFormat format)
{
    const std::optional<Palette> palette = m_paletteStorage.palette(paletteId);
    if (!palette)
        return;
    QString target = path;
    if (const std::optional<PaletteFormat> named = PaletteFormats::formatForFileName(path))
        format = *named;
    else
        target += u'.' + PaletteFormats::suffix(format);
    const QByteArray data = PaletteFormats::write(format, PaletteFormats::fromPalette(*palette));
    QSaveFile file(target);
    const QString fileName = QFileInfo(target).fileName();
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit())
        emit notice(u"Exported \"%1\""_s.arg(fileName), false);
    else
        emit notice(u"Could not export \"%1\": %2"_s.arg(fileName, file.errorString()), true);
}

void PaletteFiles::copyAsCss(const QUuid &paletteId)
{
    if (const std::optional<Palette> palette = m_paletteStorage.palette(paletteId))
        copyToClipboard(QString::fromUtf8(
            PaletteFormats::write(PaletteFormat::Css, PaletteFormats::fromPalette(*palette))));
}

bool PaletteFiles::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window || (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop))
        return QObject::eventFilter(watched, event);
    auto *drop = static_cast<QDropEvent *>(event);
    QStringList paths;
    for (const QUrl &url : drop->mimeData()->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    if (paths.isEmpty())
        return true;
    drop->acceptProposedAction();
    if (event->type() == QEvent::Drop) {
        emit dropReceived();
        importFiles(paths);
    }
    return true;
}
