#include "FuzzEntries.h"

#include "model/ColorFormats.h"
#include "model/Contrast.h"
#include "model/CssFormat.h"
#include "model/Notation.h"
#include "model/PaletteFormats.h"
#include "model/RecordCoding.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

// Fails loudly in every build type: the replay test runs without NDEBUG
// guarantees and the fuzzer needs a crash to notice.
#define FUZZ_CHECK(condition)                                                                                \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "invariant broken: %s (%s:%d)\n", #condition, __FILE__, __LINE__);          \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)

bool isUnitInterval(double value)
{
    return std::isfinite(value) && value >= 0.0 && value <= 1.0;
}

bool isUnitColor(const RgbColor &color)
{
    return isUnitInterval(color.red) && isUnitInterval(color.green) && isUnitInterval(color.blue);
}

QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
}

QString utf16(const uint8_t *data, size_t size)
{
    return QString(reinterpret_cast<const QChar *>(data), qsizetype(size / 2));
}

void checkHexText(const QString &text)
{
    const std::optional<RgbColor> color = parseHex(text);
    if (!color)
        return;
    FUZZ_CHECK(isUnitColor(*color));
    // Every accepted text stands for a color on the 8-bit grid, and the
    // program's own hex text for it reads back to the same color.
    const QString written = hexString(color->red, color->green, color->blue);
    FUZZ_CHECK(written.size() == 7 && written.startsWith(u'#'));
    const std::optional<RgbColor> again = parseHex(written);
    FUZZ_CHECK(again && *again == *color);
}

QStringList colorNames(const FilePalette &palette)
{
    QStringList names;
    for (const FileColor &color : palette.colors)
        names.append(color.name);
    return names;
}

// A read palette, or nothing when the file was refused.
std::optional<FilePalette> checkedImport(const QString &fileName, const QByteArray &data)
{
    const FileReadResult result = PaletteFormats::read(fileName, data);
    FUZZ_CHECK(result.palette.has_value() == result.error.isEmpty());
    if (!result.palette) {
        FUZZ_CHECK(!result.error.contains(u'\n'));
        return std::nullopt;
    }
    const FilePalette &palette = *result.palette;
    FUZZ_CHECK(!palette.colors.isEmpty() && palette.colors.size() <= FilePalette::maxColors);
    FUZZ_CHECK(!palette.name.isEmpty() && palette.name.size() <= FilePalette::maxNameLength);
    const QList<ColorItem> items = PaletteFormats::colorItems(palette);
    for (qsizetype i = 0; i < items.size(); ++i) {
        const ColorItem &item = items[i];
        FUZZ_CHECK(!item.name.isEmpty() && item.name.size() <= FilePalette::maxNameLength);
        FUZZ_CHECK(isUnitColor({item.red, item.green, item.blue}) && item.alpha == 1.0);
        // The HEX the palette shows is the one the file gave.
        FUZZ_CHECK(hexString(item.red, item.green, item.blue) == palette.colors[i].hexText());
    }
    return palette;
}

// Written in the format and read back: the same colors, and the same names
// where the format keeps them.
void checkRoundTrip(PaletteFormat format, const FilePalette &palette, bool keepsNames)
{
    const QByteArray written = PaletteFormats::write(format, palette);
    const std::optional<FilePalette> back =
        checkedImport(QStringLiteral("fuzz.") + PaletteFormats::suffix(format), written);
    FUZZ_CHECK(back && back->colors.size() == palette.colors.size());
    for (qsizetype i = 0; i < back->colors.size(); ++i)
        FUZZ_CHECK(back->colors[i].hexText() == palette.colors[i].hexText());
    if (keepsNames)
        FUZZ_CHECK(colorNames(*back) == colorNames(palette));
    if (format == PaletteFormat::Css) {
        FUZZ_CHECK(colorNames(*back) == CssFormat::identifiers(colorNames(palette)));
        // The identifiers are their own identifiers: writing is a fixed point.
        FUZZ_CHECK(PaletteFormats::write(format, *back) == written);
    }
    if (format == PaletteFormat::Gpl || format == PaletteFormat::Ase)
        FUZZ_CHECK(back->name == palette.name);
}

} // namespace

namespace FuzzEntries {

void hex(const uint8_t *data, size_t size)
{
    checkHexText(QString::fromUtf8(bytes(data, size)));
    checkHexText(utf16(data, size));
}

void convert(const uint8_t *data, size_t size)
{
    if (size == 0)
        return;
    const Notation notations[] = {Notation::Hex, Notation::Rgb, Notation::Hsl, Notation::Oklch,
                                  Notation::Cmyk};
    const Notation notation = notations[data[0] % 5];
    const QStringList texts = QString::fromUtf8(bytes(data + 1, size - 1)).split(u'\n');
    const std::optional<RgbColor> color = Notations::parseFields(notation, texts);
    if (!color)
        return;
    // HSL and CMYK stay inside the gamut by construction, OKLCH is clipped;
    // nothing accepted may leave 0..1 or be NaN.
    FUZZ_CHECK(isUnitColor(*color));
    // The tab rewrites every other group from the color; each rewritten
    // group is one the tab itself accepts again.
    for (const Notation other : notations) {
        const QStringList rewritten = Notations::fieldTexts(other, *color);
        FUZZ_CHECK(!rewritten.isEmpty());
        const std::optional<RgbColor> back = Notations::parseFields(other, rewritten);
        FUZZ_CHECK(back && isUnitColor(*back));
    }
    // Hex and RGB texts are exact on the 8-bit grid.
    const std::optional<RgbColor> viaHex =
        Notations::parseFields(Notation::Hex, Notations::fieldTexts(Notation::Hex, *color));
    const std::optional<RgbColor> viaRgb =
        Notations::parseFields(Notation::Rgb, Notations::fieldTexts(Notation::Rgb, *color));
    FUZZ_CHECK(viaHex && viaRgb && *viaHex == *viaRgb);
}

void contrast(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(bytes(data, size));
    const qsizetype split = text.indexOf(u'\n');
    const QString hex1 = split < 0 ? text : text.left(split);
    const QString hex2 = split < 0 ? QString() : text.mid(split + 1);

    const double ratio = contrastRatio(hex1, hex2);
    FUZZ_CHECK(std::isfinite(ratio) && ratio >= 1.0 && ratio <= 21.0 + 1e-9);
    const WcagLevel level = wcagLevel(ratio);
    FUZZ_CHECK(!wcagLabel(level).isEmpty());
    FUZZ_CHECK(wcagColor(level).isValid());
    const QString shown = contrastRatioText(ratio);
    FUZZ_CHECK(shown.size() >= 4 && shown.size() <= 5);
    // The lighter color always goes on top: with both texts valid the
    // order does not matter.
    if (parseHex(hex1) && parseHex(hex2))
        FUZZ_CHECK(contrastRatio(hex2, hex1) == ratio);
}

void records(const uint8_t *data, size_t size)
{
    if (size == 0)
        return;
    const QByteArray json = bytes(data + 1, size - 1);
    if (data[0] % 2 == 0) {
        const Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(json);
        FUZZ_CHECK(decoded.value.has_value() != !decoded.error.isEmpty());
        if (!decoded.value)
            return;
        const Encoded encoded = RecordCoding::encodeColors(*decoded.value);
        FUZZ_CHECK(encoded.data.has_value());
        const Decoded<QList<ColorItem>> again = RecordCoding::decodeColors(*encoded.data);
        FUZZ_CHECK(again.value && *again.value == *decoded.value);
        // Writing is a fixed point: the same records give the same bytes.
        FUZZ_CHECK(RecordCoding::encodeColors(*again.value).data == encoded.data);
    } else {
        const Decoded<QList<Palette>> decoded = RecordCoding::decodePalettes(json);
        FUZZ_CHECK(decoded.value.has_value() != !decoded.error.isEmpty());
        if (!decoded.value)
            return;
        const Encoded encoded = RecordCoding::encodePalettes(*decoded.value);
        FUZZ_CHECK(encoded.data.has_value());
        const Decoded<QList<Palette>> again = RecordCoding::decodePalettes(*encoded.data);
        FUZZ_CHECK(again.value && *again.value == *decoded.value);
        FUZZ_CHECK(RecordCoding::encodePalettes(*again.value).data == encoded.data);
    }
}

void gpl(const uint8_t *data, size_t size)
{
    if (const std::optional<FilePalette> palette =
            checkedImport(QStringLiteral("fuzz.gpl"), bytes(data, size)))
        checkRoundTrip(PaletteFormat::Gpl, *palette, true);
}

void ase(const uint8_t *data, size_t size)
{
    if (const std::optional<FilePalette> palette =
            checkedImport(QStringLiteral("fuzz.ase"), bytes(data, size)))
        checkRoundTrip(PaletteFormat::Ase, *palette, true);
}

void css(const uint8_t *data, size_t size)
{
    const QByteArray text = bytes(data, size);
    if (const std::optional<FilePalette> palette = checkedImport(QStringLiteral("fuzz.css"), text)) {
        checkRoundTrip(PaletteFormat::Css, *palette, false);
        checkRoundTrip(PaletteFormat::Text, *palette, false);
    }
    if (const std::optional<FilePalette> palette = checkedImport(QStringLiteral("fuzz.json"), text))
        checkRoundTrip(PaletteFormat::Json, *palette, true);
}

} // namespace FuzzEntries
