#include "PaletteFormats.h"

#include "AseFormat.h"
#include "ColorFormats.h"
#include "ColorItem.h"
#include "CssFormat.h"
#include "GplFormat.h"
#include "JsonSwatchFormat.h"
#include "Palette.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString cutName(const QString &name)
{
    if (name.size() <= FilePalette::maxNameLength)
        return name;
    // Not between the two halves of a surrogate pair.
    qsizetype length = FilePalette::maxNameLength;
    if (name[length - 1].isHighSurrogate())
        --length;
    return name.first(length);
}

QByteArray hexLines(const FilePalette &palette)
{
    QByteArray out;
    for (const FileColor &color : palette.colors)
        out += color.hexText().toLatin1() + '\n';
    return out;
}

QString noColors(const FilePalette &palette)
{
    QStringList skipped;
    if (palette.skippedLab > 0)
        skipped.append(u"%1 LAB"_s.arg(palette.skippedLab));
    if (palette.skippedUnreadable > 0)
        skipped.append(u"%1 unreadable"_s.arg(palette.skippedUnreadable));
    if (skipped.isEmpty())
        return u"it holds no colors"_s;
    return u"it holds no colors Tintwright can read (skipped: %1)"_s.arg(skipped.join(", "_L1));
}

using Reader = FileReadResult (*)(const QByteArray &);

// By the suffix; for another name, by the start of a file only one format
// has.
Reader readerFor(const QString &fileSuffix, const QByteArray &data)
{
    if (fileSuffix == "gpl"_L1)
        return GplFormat::read;
    if (fileSuffix == "ase"_L1)
        return AseFormat::read;
    if (fileSuffix == "json"_L1)
        return JsonSwatchFormat::read;
    if (fileSuffix == "css"_L1 || fileSuffix == "scss"_L1 || fileSuffix == "txt"_L1)
        return CssFormat::read;
    if (data.startsWith("GIMP Palette"))
        return GplFormat::read;
    if (data.startsWith("ASEF"))
        return AseFormat::read;
    return nullptr;
}

} // namespace

namespace PaletteFormats {

QString suffix(PaletteFormat format)
{
    switch (format) {
    case PaletteFormat::Gpl:
        return u"gpl"_s;
    case PaletteFormat::Ase:
        return u"ase"_s;
    case PaletteFormat::Css:
        return u"css"_s;
    case PaletteFormat::Json:
        return u"json"_s;
    case PaletteFormat::Text:
        return u"txt"_s;
    }
    return {};
}

QString tooLarge()
{
    return u"the file is larger than %1 MB"_s.arg(maxFileSize / (1024 * 1024));
}

std::optional<PaletteFormat> formatForFileName(const QString &fileName)
{
    const QString fileSuffix = QFileInfo(fileName).suffix().toLower();
    for (const PaletteFormat format : allFormats) {
        if (suffix(format) == fileSuffix)
            return format;
    }
    return std::nullopt;
}

FileReadResult read(const QString &fileName, const QByteArray &data)
{
    if (data.size() > maxFileSize)
        return FileReadResult::refused(tooLarge());
    const auto reader = readerFor(QFileInfo(fileName).suffix().toLower(), data);
    if (!reader)
        return FileReadResult::refused(u"Tintwright imports .gpl, .ase, .css, .scss, .txt and .json files"_s);
    FileReadResult result = reader(data);
    if (!result.palette)
        return result;
    if (result.palette->colors.isEmpty())
        return FileReadResult::refused(noColors(*result.palette));
    if (result.palette->name.isEmpty())
        result.palette->name = cutName(QFileInfo(fileName).completeBaseName());
    return result;
}

QByteArray write(PaletteFormat format, const FilePalette &palette)
{
    switch (format) {
    case PaletteFormat::Gpl:
        return GplFormat::write(palette);
    case PaletteFormat::Ase:
        return AseFormat::write(palette);
    case PaletteFormat::Css:
        return CssFormat::write(palette);
    case PaletteFormat::Json:
        return JsonSwatchFormat::write(palette);
    case PaletteFormat::Text:
        return hexLines(palette);
    }
    return {};
}

FilePalette fromPalette(const Palette &palette)
{
    FilePalette exchange;
    exchange.name = cutName(palette.name);
    for (const ColorItem &item : palette.colors) {
        const RgbComponents rgb = rgbComponents(item.red, item.green, item.blue);
        FileColor color;
        color.name = cutName(item.name);
        color.red = quint8(std::clamp<qint64>(rgb.red, 0, 255));
        color.green = quint8(std::clamp<qint64>(rgb.green, 0, 255));
        color.blue = quint8(std::clamp<qint64>(rgb.blue, 0, 255));
        exchange.colors.append(color);
    }
    return exchange;
}

QList<ColorItem> colorItems(const FilePalette &palette)
{
    QList<ColorItem> items;
    items.reserve(palette.colors.size());
    for (const FileColor &color : palette.colors)
        items.append(
            ColorItem::create(color.name, color.red / 255.0, color.green / 255.0, color.blue / 255.0));
    return items;
}

} // namespace PaletteFormats
