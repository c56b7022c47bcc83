#include "FuzzEntries.h"
#include "model/CssFormat.h"
#include "model/Palette.h"
#include "model/PaletteFormats.h"

#include <QDir>
#include <QTest>

using FuzzEntry = void (*)(const uint8_t *, size_t);
Q_DECLARE_METATYPE(FuzzEntry)

namespace {

// Each color as "name #RRGGBB".
QStringList swatches(const FilePalette &palette)
{
    QStringList list;
    for (const FileColor &color : palette.colors)
        list.append(color.name + u' ' + color.hexText());
    return list;
}

FilePalette readOrFail(const QString &fileName, const QByteArray &data)
{
    const FileReadResult result = PaletteFormats::read(fileName, data);
    if (!result.palette)
        qWarning() << fileName << result.error;
    return result.palette.value_or(FilePalette{});
}

// Big-endian pieces of hand-built .ase files.
QByteArray u16(quint16 v)
{
    return QByteArray().append(char(v >> 8)).append(char(v & 0xFF));
}

QByteArray u32(quint32 v)
{
    return u16(quint16(v >> 16)) + u16(quint16(v));
}

QByteArray aseColor(const QString &name, const QByteArray &model, const QList<float> &values)
{
    QByteArray data = u16(quint16(name.size() + 1));
    for (const QChar c : name)
        data += u16(c.unicode());
    data += u16(0) + model;
    for (const float v : values)
        data += u32(std::bit_cast<quint32>(v));
    data += u16(2); // normal
    return u16(0x0001) + u32(quint32(data.size())) + data;
}

QByteArray aseFile(quint32 blocks, const QByteArray &body)
{
    return "ASEF" + u16(1) + u16(0) + u32(blocks) + body;
}

} // namespace

class TestPaletteFormats : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data()
    {
        QTest::addColumn<PaletteFormat>("format");
        QTest::addColumn<bool>("keepsNames");
        QTest::addColumn<bool>("keepsPaletteName");
        QTest::newRow("gpl") << PaletteFormat::Gpl << true << true;
        QTest::newRow("ase") << PaletteFormat::Ase << true << true;
        QTest::newRow("css") << PaletteFormat::Css << false << false;
        QTest::newRow("json") << PaletteFormat::Json << true << false;
        QTest::newRow("txt") << PaletteFormat::Text << false << false;
    }

    void roundTrip()
    {
        QFETCH(PaletteFormat, format);
        QFETCH(bool, keepsNames);
        QFETCH(bool, keepsPaletteName);
        // Odd components and names a format could trip over.
        Palette palette = Palette::create(QStringLiteral("Brand “2025”"));
        const QList<std::tuple<const char *, double, double, double>> colors = {
            {"Sky Blue", 0.2, 0.4, 0.8},    // on the 8-bit grid only after rounding
            {"Grün 日本 🎨", 0.0, 0.5, 1.0}, // 0.5 rounds up to 128
            {"tab\there \"quoted\" \\", 0.01, 0.99, 0.5},
            {"#hash; --x: #000", 1.2, -0.1, 0.25}, // clamped
            {"Sky Blue", 0.0, 0.0, 0.0},           // a name twice
        };
        for (const auto &[name, r, g, b] : colors)
            palette.colors.append(ColorItem::create(QString::fromUtf8(name), r, g, b, 0.5));
        const FilePalette sent = PaletteFormats::fromPalette(palette);
        const FilePalette back = readOrFail(QStringLiteral("Exported.") + PaletteFormats::suffix(format),
                                            PaletteFormats::write(format, sent));

        QCOMPARE(back.name, keepsPaletteName ? sent.name : QStringLiteral("Exported"));
        QStringList names;
        for (const FileColor &color : sent.colors)
            names.append(color.name);
        const QStringList identifiers = CssFormat::identifiers(names);
        QCOMPARE(back.colors.size(), sent.colors.size());
        for (qsizetype i = 0; i < back.colors.size(); ++i) {
            QCOMPARE(back.colors[i].hexText(), sent.colors[i].hexText());
            QCOMPARE(back.colors[i].name,
                     keepsNames                         ? sent.colors[i].name
                         : format == PaletteFormat::Css ? identifiers[i]
                                                        : sent.colors[i].hexText());
        }
        QCOMPARE(back.skippedLab + back.skippedUnreadable, 0);
    }

    void importedColorsAreNewEntries()
    {
        FilePalette read;
        QVERIFY(read.addColor(QString(), 255, 128, 1).isEmpty());
        QVERIFY(read.addColor(QStringLiteral("Named"), 0, 0, 0).isEmpty());
        const QList<ColorItem> items = PaletteFormats::colorItems(read);
        QCOMPARE(items.size(), 2);
        QCOMPARE(items[0].name, QStringLiteral("#FF8001"));
        QCOMPARE(items[0].green, 128 / 255.0);
        QCOMPARE(items[0].alpha, 1.0);
        QVERIFY(!items[0].id.isNull() && items[0].id != items[1].id);
        QVERIFY(items[0].dateAdded.secsTo(QDateTime::currentDateTimeUtc()) < 5);
    }

    void reads_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("colors");
        QTest::addColumn<int>("skipped"); // unreadable + LAB
        const auto row = [](const char *what, const char *fileName, const QByteArray &file, const char *name,
                            const QStringList &colors, int skipped) {
            QTest::newRow(what) << fileName << file << name << colors << skipped;
        };
        row("GIMP: tabs, comment, Columns", "p.gpl",
            "GIMP Palette\nName: Default\nColumns: 16\n#\n255 255 255\tWhite\n  0   0   0\tBlack\n",
            "Default", {"White #FFFFFF", "Black #000000"}, 0);
        row("old GIMP: no Name, no names", "p.gpl", "GIMP Palette\n#\n  8   8   8\n 68  44  44\t\n", "p",
            {"#080808 #080808", "#442C2C #442C2C"}, 0);
        row("Windows line ends and a BOM", "p.gpl",
            "\xEF\xBB\xBFGIMP Palette\r\nName: Web \r\n\r\n 51 102 153\tU\r\n", "Web", {"U #336699"}, 0);
        row("GIMP: bad lines skipped, out of range clamped", "p.gpl",
            "GIMP Palette\n255 0\nabc\n12x 0 0 x\n1 2 3x\n300 -5 128 Loud\n", "p", {"Loud #FF0080"}, 4);
        // No group: the file names the palette; a name without its zero; LAB skipped.
        row("ase: models without groups", "Swatches.ase",
            aseFile(5,
                    aseColor("Ink", "CMYK", {0, 1, 1, 0}) + aseColor("Mid", "Gray", {0.5f})
                        + aseColor("Lab", "LAB ", {50, 0, 0}) + aseColor({}, "RGB ", {0.2f, 0.4f, 0.6f})
                        + u16(1) + u32(22) + u16(2) + u16('N') + u16('o') + "RGB "
                        + u32(0x3F800000).repeated(3)),
            "Swatches", {"Ink #FF0000", "Mid #808080", "#336699 #336699", "No #FFFFFF"}, 1);
        row("css: custom properties, selectors and comments", "theme.css",
            "/* #123456 */\n#fab, .x { color: #0F0 }\n:root {\n  --brand-1: #ff8000;\n"
            "  --accent:rgb(51 102 204 / 50%);\n  --grad: linear-gradient(#000, #FFFFFF80);\n}\n",
            "theme", {"#00FF00 #00FF00", "brand-1 #FF8000", "accent #3366CC", "grad #000000", "grad #FFFFFF"},
            0);
        row("scss: variables and line comments", "vars.scss",
            "// $old: #111;\n$primary: hsl(120deg, 100%, 25%);\n$second: HSLA(0.5turn 100% 50% / .3);\n"
            "$pct: rgba(10%, 20%, 30%, 0.5);\n$bad: rgb(var(--x));\n$calc: rgb(10 20 30 calc(1));\n",
            "vars", {"primary #008000", "second #00FFFF", "pct #1A334D"}, 2);
        row("txt: one value a line", "list.txt", "#abc\nFF0000 is not one\nrgb(0,0,255)\n#12345 #1234567\n",
            "list", {"#AABBCC #AABBCC", "#0000FF #0000FF"}, 0);
    }

    void reads()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, file);
        const FilePalette palette = readOrFail(fileName, file);
        QTEST(palette.name, "name");
        QTEST(swatches(palette), "colors");
        QTEST(palette.skippedUnreadable + palette.skippedLab, "skipped");
    }

    void writesExactBytes()
    {
        FilePalette palette;
        palette.name = QStringLiteral("Two\nLines");
        QVERIFY(palette.addColor(QStringLiteral("Red"), 255, 0, 0).isEmpty());
        QVERIFY(palette.addColor(QStringLiteral("Teal"), 0, 128, 128).isEmpty());
        QCOMPARE(PaletteFormats::write(PaletteFormat::Gpl, palette),
                 QByteArray(
                     "GIMP Palette\nName: Two Lines\nColumns: 2\n#\n255   0   0\tRed\n  0 128 128\tTeal\n"));
        palette.name = QStringLiteral("Web");
        const QByteArray ase = QByteArray::fromHex(
            // "ASEF", version 1.0, 4 blocks; group start, 10 bytes: "Web\0"
            "41534546 0001 0000 00000004 C001 0000000A 0004 0057 0065 0062 0000"
            // color, 28 bytes: "Red\0", "RGB ", 1.0 0.0 0.0, global
            "0001 0000001C 0004 0052 0065 0064 0000 52474220 3F800000 00000000 00000000 0000"
            // color, 30 bytes: "Teal\0", "RGB ", 0.0 and 128/255 twice, global; group end
            "0001 0000001E 0005 0054 0065 0061 006C 0000 52474220 00000000 3F008081 3F008081 0000 C002 "
            "00000000");
        QCOMPARE(PaletteFormats::write(PaletteFormat::Ase, palette).toHex(' '), ase.toHex(' '));
        QCOMPARE(swatches(readOrFail(QStringLiteral("x.ase"), ase)), swatches(palette));
    }

    void cssIdentifiers_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("identifiers");
        QTest::newRow("case, blanks, accents") << QStringList{"Sky  Blue ", "Grün", "Café au lait", "a_b-c"}
                                               << QStringList{"sky-blue", "grun", "cafe-au-lait", "a_b-c"};
        QTest::newRow("dropped characters") << QStringList{"50% / gray", "日本", "#FF8000"}
                                            << QStringList{"color-50-gray", "color", "ff8000"};
        QTest::newRow("empty and leading digit")
            << QStringList{"", "100", " "} << QStringList{"color", "color-100", "color-2"};
        QTest::newRow("duplicates numbered, never clashing")
            << QStringList{"Red", "red", "red-2", "RED"} << QStringList{"red", "red-2", "red-2-2", "red-3"};
    }

    void cssIdentifiers()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, identifiers);
        QCOMPARE(CssFormat::identifiers(names), identifiers);
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("why"); // a word the reason must name
        const QByteArray red = aseColor(QStringLiteral("R"), "RGB ", {1, 0, 0});
        const auto row = [](const char *what, const char *fileName, const QByteArray &data, const char *why) {
            QTest::newRow(what) << fileName << data << why;
        };
        row("ase: truncated header", "a.ase", QByteArray("ASEF\0\1", 6), "truncated");
        row("ase: absurd block count", "a.ase", aseFile(0xFFFFFFFF, red), "blocks");
        row("ase: block past the end", "a.ase", aseFile(1, red.chopped(3)), "truncated");
        row("ase: name past its block", "a.ase", aseFile(1, u16(1) + u32(4) + u16(40) + u16(0)), "damaged");
        row("ase: only LAB", "a.ase", aseFile(1, aseColor(QString(), "LAB ", {1, 2, 3})), "LAB");
        row("gpl: no colors", "a.gpl", "GIMP Palette\nName: Empty\n#\n", "no colors");
        row("gpl: too many colors", "a.gpl", "GIMP Palette\n" + QByteArray("1 2 3\n").repeated(10001),
            "10000");
        row("gpl: name too long", "a.gpl", "GIMP Palette\nName: " + QByteArray(5000, 'x') + '\n', "longer");
        row("txt: too many colors", "a.txt", QByteArray("#123 ").repeated(10001), "10000");
        row("json: not JSON", "a.json", "[{\"hex\": ", "JSON");
        row("json: nothing readable", "a.json", "[1, {\"hex\": \"#GG0000\"}]", "unreadable");
        row("too large", "a.gpl", QByteArray(PaletteFormats::maxFileSize + 1, '\n'), "MB");
        row("unknown type", "a.png", "\x89PNG\r\n", ".gpl");
    }

    void refuses()
    {
        QFETCH(QString, fileName);
        QFETCH(QByteArray, data);
        QFETCH(QString, why);
        const FileReadResult result = PaletteFormats::read(fileName, data);
        QVERIFY(!result.palette);
        QVERIFY2(result.error.contains(why) && !result.error.contains(u'\n'), qPrintable(result.error));
    }

    // Every input the fuzz targets once found a fault with, through the
    // entries the targets call: each aborts on a broken invariant.
    void fuzzCorpusReplays_data()
    {
        QTest::addColumn<FuzzEntry>("entry");
        QTest::addColumn<QString>("path");
        const std::pair<const char *, FuzzEntry> targets[] = {{"hex", FuzzEntries::hex},
                                                              {"convert", FuzzEntries::convert},
                                                              {"contrast", FuzzEntries::contrast},
                                                              {"records", FuzzEntries::records},
                                                              {"gpl", FuzzEntries::gpl},
                                                              {"ase", FuzzEntries::ase},
                                                              {"css", FuzzEntries::css}};
        for (const auto &[target, entry] : targets) {
            const QDir dir(QStringLiteral(TINTWRIGHT_FUZZ_CORPUS "/") + QLatin1String(target));
            for (const QString &name : dir.entryList(QDir::Files, QDir::Name))
                QTest::addRow("%s/%s", target, qPrintable(name)) << entry << dir.filePath(name);
        }
    }
    void fuzzCorpusReplays()
    {
        QFETCH(FuzzEntry, entry);
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray data = file.readAll();
        entry(reinterpret_cast<const uint8_t *>(data.constData()), size_t(data.size()));
    }
};

QTEST_APPLESS_MAIN(TestPaletteFormats)
#include "tst_paletteformats.moc"
