#include "model/CssFormat.h"
#include "model/Palette.h"
#include "model/PaletteExchange.h"

#include <QTest>

namespace {

// Each color as "name #RRGGBB".
QStringList swatches(const ExchangePalette &palette)
{
    QStringList list;
    for (const ExchangeColor &color : palette.colors)
        list.append(color.name + u' ' + color.hexText());
    return list;
}

ExchangePalette readOrFail(const QString &fileName, const QByteArray &data)
{
    const ExchangeResult result = PaletteExchange::read(fileName, data);
    if (!result.palette)
        qWarning() << fileName << result.error;
    return result.palette.value_or(ExchangePalette{});
}

// The palette the round trips export: odd components, names a format
// could trip over.
Palette samplePalette()
{
    Palette palette = Palette::create(QStringLiteral("Brand “2025”"));
    const struct
    {
        const char *name;
        double red, green, blue;
    } colors[] = {
        {"Orange", 1.0, 128 / 255.0, 0.0},
        {"Sky Blue", 0.2, 0.4, 0.8},    // on the 8-bit grid only after rounding
        {"Grün 日本 🎨", 0.0, 0.5, 1.0}, // 0.5 rounds up to 128
        {"tab\there \"quoted\" \\", 0.01, 0.99, 0.5},
        {"#hash; --x: #000", 1.2, -0.1, 0.25}, // unclamped components are clamped
        {"Orange", 0.0, 0.0, 0.0},             // a name twice
    };
    for (const auto &c : colors)
        palette.colors.append(ColorItem::create(QString::fromUtf8(c.name), c.red, c.green, c.blue, 0.5));
    return palette;
}

// Big-endian helpers for hand-built .ase files.
QByteArray u16(quint16 v)
{
    return QByteArray().append(char(v >> 8)).append(char(v & 0xFF));
}

QByteArray u32(quint32 v)
{
    return u16(quint16(v >> 16)) + u16(quint16(v));
}

QByteArray f32(float v)
{
    return u32(std::bit_cast<quint32>(v));
}

QByteArray aseName(const QString &name)
{
    QByteArray out = u16(quint16(name.size() + 1));
    for (const QChar c : name)
        out += u16(c.unicode());
    return out + u16(0);
}

QByteArray aseColor(const QString &name, const QByteArray &model, const QList<float> &values)
{
    QByteArray data = aseName(name) + model;
    for (const float v : values)
        data += f32(v);
    data += u16(2); // normal
    return u16(0x0001) + u32(quint32(data.size())) + data;
}

QByteArray aseFile(quint32 blocks, const QByteArray &body)
{
    return "ASEF" + u16(1) + u16(0) + u32(blocks) + body;
}

} // namespace

class TestPaletteExchange : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip_data();
    void roundTrip();
    void importedColorsAreNewEntries();
    void readsGimpPalettes_data();
    void readsGimpPalettes();
    void writesGimpLayout();
    void writesAseByteForByte();
    void readsAseModelsWithoutGroups();
    void scansCss_data();
    void scansCss();
    void cssIdentifiers_data();
    void cssIdentifiers();
    void refuses_data();
    void refuses();
};

void TestPaletteExchange::roundTrip_data()
{
    QTest::addColumn<ExchangeFormat>("format");
    QTest::addColumn<bool>("keepsNames");
    QTest::addColumn<bool>("keepsPaletteName");
    QTest::newRow("gpl") << ExchangeFormat::Gpl << true << true;
    QTest::newRow("ase") << ExchangeFormat::Ase << true << true;
    QTest::newRow("css") << ExchangeFormat::Css << false << false;
    QTest::newRow("json") << ExchangeFormat::Json << true << false;
    QTest::newRow("txt") << ExchangeFormat::Text << false << false;
}

void TestPaletteExchange::roundTrip()
{
    QFETCH(ExchangeFormat, format);
    QFETCH(bool, keepsNames);
    QFETCH(bool, keepsPaletteName);
    const ExchangePalette exported = PaletteExchange::fromPalette(samplePalette());
    const QString fileName = QStringLiteral("Exported.") + PaletteExchange::suffix(format);
    const ExchangePalette back = readOrFail(fileName, PaletteExchange::write(format, exported));

    QCOMPARE(back.name, keepsPaletteName ? exported.name : QStringLiteral("Exported"));
    QCOMPARE(back.colors.size(), exported.colors.size());
    QStringList names;
    for (const ExchangeColor &color : exported.colors)
        names.append(color.name);
    const QStringList identifiers = CssFormat::identifiers(names);
    for (qsizetype i = 0; i < back.colors.size(); ++i) {
        const ExchangeColor &sent = exported.colors[i];
        const ExchangeColor &got = back.colors[i];
        QCOMPARE(got.hexText(), sent.hexText());
        if (keepsNames)
            QCOMPARE(got.name, sent.name);
        else
            QCOMPARE(got.name, format == ExchangeFormat::Css ? identifiers[i] : sent.hexText());
    }
    QCOMPARE(back.skippedLab + back.skippedUnreadable, 0);
}

void TestPaletteExchange::importedColorsAreNewEntries()
{
    ExchangePalette read;
    QVERIFY(read.addColor(QString(), 255, 128, 1).isEmpty());
    QVERIFY(read.addColor(QStringLiteral("Named"), 0, 0, 0).isEmpty());
    const QList<ColorItem> items = PaletteExchange::colorItems(read);
    QCOMPARE(items.size(), 2);
    QCOMPARE(items[0].name, QStringLiteral("#FF8001"));
    QCOMPARE(items[0].green, 128 / 255.0);
    QCOMPARE(items[0].blue, 1 / 255.0);
    QCOMPARE(items[0].alpha, 1.0);
    QVERIFY(!items[0].id.isNull() && items[0].id != items[1].id);
    QVERIFY(items[0].dateAdded.secsTo(QDateTime::currentDateTimeUtc()) < 5);
}

void TestPaletteExchange::readsGimpPalettes_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("colors");
    QTest::addColumn<int>("unreadable");
    QTest::newRow("GIMP: tabs, comment, Columns")
        << QByteArray("GIMP Palette\nName: Default\nColumns: 16\n#\n"
                      "255 255 255\tWhite\n  0   0   0\tBlack\n")
        << "Default" << QStringList{"White #FFFFFF", "Black #000000"} << 0;
    QTest::newRow("Inkscape: runs of spaces, names with spaces")
        << QByteArray("GIMP Palette\nName: Inkscape default\nColumns: 3\n# generated by PaletteGen.py\n"
                      "  0   0   0  Black\n 25  25  25  90% Gray\n128   0   0  Maroon (#800000)\n")
        << "Inkscape default" << QStringList{"Black #000000", "90% Gray #191919", "Maroon (#800000) #800000"}
        << 0;
    QTest::newRow("old GIMP: no Name, no names")
        << QByteArray("GIMP Palette\n#\n  8   8   8\n 68  44  44\t\n") << ""
        << QStringList{"#080808 #080808", "#442C2C #442C2C"} << 0;
    QTest::newRow("Windows line ends and a BOM") << QByteArray("\xEF\xBB\xBFGIMP Palette\r\nName: Web \r\n"
                                                               "\r\n 51 102 153\tUntitled\r\n")
                                                 << "Web" << QStringList{"Untitled #336699"} << 0;
    QTest::newRow("Aseprite: Channels RGBA") << QByteArray("GIMP Palette\nChannels: RGBA\n#\n"
                                                           " 10  20  30 128\tHalf\n")
                                             << "" << QStringList{"Half #0A141E"} << 0;
    QTest::newRow("bad lines skipped, out of range clamped")
        << QByteArray("GIMP Palette\n255 0\nabc\n12x 0 0 x\n300 -5 128 Loud\n") << ""
        << QStringList{"Loud #FF0080"} << 3;
}

void TestPaletteExchange::readsGimpPalettes()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, name);
    QFETCH(QStringList, colors);
    QFETCH(int, unreadable);
    const ExchangePalette palette = readOrFail(QStringLiteral("p.gpl"), file);
    // A file without a Name: line takes the file's name.
    QCOMPARE(palette.name, name.isEmpty() ? QStringLiteral("p") : name);
    QCOMPARE(swatches(palette), colors);
    QCOMPARE(palette.skippedUnreadable, unreadable);
}

void TestPaletteExchange::writesGimpLayout()
{
    ExchangePalette palette;
    palette.name = QStringLiteral("Two\nLines");
    QVERIFY(palette.addColor(QStringLiteral("Orange"), 255, 128, 0).isEmpty());
    QVERIFY(palette.addColor(QStringLiteral("Sky"), 51, 102, 204).isEmpty());
    QCOMPARE(
        PaletteExchange::write(ExchangeFormat::Gpl, palette),
        QByteArray("GIMP Palette\nName: Two Lines\nColumns: 2\n#\n255 128   0\tOrange\n 51 102 204\tSky\n"));
}

void TestPaletteExchange::writesAseByteForByte()
{
    ExchangePalette palette;
    palette.name = QStringLiteral("Web");
    QVERIFY(palette.addColor(QStringLiteral("Red"), 255, 0, 0).isEmpty());
    QVERIFY(palette.addColor(QStringLiteral("Teal"), 0, 128, 128).isEmpty());
    const QByteArray expected = QByteArray::fromHex(
        // "ASEF", version 1.0, 4 blocks
        "41534546 0001 0000 00000004"
        // group start, 10 bytes: name of 4 units "Web\0"
        "C001 0000000A 0004 0057 0065 0062 0000"
        // color, 28 bytes: "Red\0", "RGB ", 1.0 0.0 0.0, global
        "0001 0000001C 0004 0052 0065 0064 0000 52474220 3F800000 00000000 00000000 0000"
        // color, 30 bytes: "Teal\0", "RGB ", 0.0 and 128/255 (0x3F008081) twice, global
        "0001 0000001E 0005 0054 0065 0061 006C 0000 52474220 00000000 3F008081 3F008081 0000"
        // group end, empty
        "C002 00000000");
    const QByteArray written = PaletteExchange::write(ExchangeFormat::Ase, palette);
    QCOMPARE(written.toHex(' '), expected.toHex(' '));
    QCOMPARE(swatches(readOrFail(QStringLiteral("x.ase"), expected)), swatches(palette));
}

void TestPaletteExchange::readsAseModelsWithoutGroups()
{
    // No group, so the file's name names the palette; a name without its
    // terminating zero; LAB skipped and counted.
    const QByteArray body = aseColor(QStringLiteral("Ink"), "CMYK", {0.0f, 1.0f, 1.0f, 0.0f})
        + aseColor(QStringLiteral("Mid"), "Gray", {0.5f})
        + aseColor(QStringLiteral("Lab"), "LAB ", {50.0f, 0.0f, 0.0f})
        + aseColor(QString(), "RGB ", {0.2f, 0.4f, 0.6f}) + u16(0x0001) + u32(2 + 4 + 4 + 12) + u16(2)
        + u16('N') + u16('o') + "RGB " + f32(1) + f32(1) + f32(1);
    const ExchangePalette palette = readOrFail(QStringLiteral("Swatches.ase"), aseFile(5, body));
    QCOMPARE(palette.name, QStringLiteral("Swatches"));
    QCOMPARE(swatches(palette), (QStringList{"Ink #FF0000", "Mid #808080", "#336699 #336699", "No #FFFFFF"}));
    QCOMPARE(palette.skippedLab, 1);
}

void TestPaletteExchange::scansCss_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("colors");
    QTest::addColumn<int>("unreadable");
    QTest::newRow("custom properties, selectors and comments")
        << "theme.css"
        << QByteArray("/* #123456 */\n#fab, .x { color: #0F0 }\n:root {\n  --brand-1: #ff8000;\n"
                      "  --accent:rgb(51 102 204 / 50%);\n  --grad: linear-gradient(#000, #FFFFFF80);\n}\n")
        << QStringList{"#00FF00 #00FF00", "brand-1 #FF8000", "accent #3366CC", "grad #000000", "grad #FFFFFF"}
        << 0;
    QTest::newRow("SCSS variables and line comments")
        << "vars.scss"
        << QByteArray(
               "// $old: #111;\n$primary: hsl(120deg, 100%, 25%);\n$second: HSLA(0.5turn 100% 50% / .3);\n"
               "$pct: rgba(10%, 20%, 30%, 0.5);\n$bad: rgb(var(--x));\n")
        << QStringList{"primary #008000", "second #00FFFF", "pct #1A334D"} << 1;
    QTest::newRow("plain text, one value a line")
        << "list.txt" << QByteArray("#abc\nFF0000 is not one\nrgb(0,0,255)\n#12345 #1234567\n")
        << QStringList{"#AABBCC #AABBCC", "#0000FF #0000FF"} << 0;
}

void TestPaletteExchange::scansCss()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, text);
    QFETCH(QStringList, colors);
    QFETCH(int, unreadable);
    const ExchangePalette palette = readOrFail(fileName, text);
    QCOMPARE(swatches(palette), colors);
    QCOMPARE(palette.skippedUnreadable, unreadable);
}

void TestPaletteExchange::cssIdentifiers_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("identifiers");
    QTest::newRow("case, blanks, accents") << QStringList{"Sky  Blue ", "Grün", "Café au lait", "a_b-c"}
                                           << QStringList{"sky-blue", "grun", "cafe-au-lait", "a_b-c"};
    QTest::newRow("dropped characters")
        << QStringList{"50% / gray", "日本", "#FF8000"} << QStringList{"color-50-gray", "color", "ff8000"};
    QTest::newRow("empty and leading digit")
        << QStringList{"", "100", " "} << QStringList{"color", "color-100", "color-2"};
    QTest::newRow("duplicates numbered, never clashing")
        << QStringList{"Red", "red", "red-2", "RED"} << QStringList{"red", "red-2", "red-2-2", "red-3"};
}

void TestPaletteExchange::cssIdentifiers()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, identifiers);
    QCOMPARE(CssFormat::identifiers(names), identifiers);
}

void TestPaletteExchange::refuses_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("why"); // a word the reason must name
    const QByteArray red = aseColor(QStringLiteral("R"), "RGB ", {1, 0, 0});
    QByteArray manyLines = "GIMP Palette\n";
    for (int i = 0; i <= ExchangePalette::maxColors; ++i)
        manyLines += "1 2 3\n";
    QTest::newRow("ase: truncated header") << "a.ase" << QByteArray("ASEF\0\1", 6) << "truncated";
    QTest::newRow("ase: absurd block count") << "a.ase" << aseFile(0xFFFFFFFF, red) << "blocks";
    QTest::newRow("ase: block past the end") << "a.ase" << aseFile(1, red.chopped(3)) << "truncated";
    QTest::newRow("ase: name past its block")
        << "a.ase" << aseFile(1, u16(1) + u32(4) + u16(40) + u16(0)) << "damaged";
    QTest::newRow("ase: version 2") << "a.ase" << ("ASEF" + u16(2) + u16(0) + u32(0)) << "version";
    QTest::newRow("ase: only LAB") << "a.ase" << aseFile(1, aseColor(QString(), "LAB ", {1, 2, 3})) << "LAB";
    QTest::newRow("ase: not one") << "a.ase" << QByteArray("GIMP Palette\n1 2 3\n") << "ASEF";
    QTest::newRow("gpl: not one") << "a.gpl" << QByteArray("JASC-PAL\n0100\n") << "GIMP Palette";
    QTest::newRow("gpl: no colors") << "a.gpl" << QByteArray("GIMP Palette\nName: Empty\n#\n") << "no colors";
    QTest::newRow("gpl: too many colors") << "a.gpl" << manyLines << "10000";
    QTest::newRow("gpl: name too long") << "a.gpl"
                                        << "GIMP Palette\nName: " + QByteArray(5000, 'x') + '\n'
                                        << "longer";
    QTest::newRow("css: no colors") << "a.css" << QByteArray("body { color: red }") << "no colors";
    QTest::newRow("txt: too many colors") << "a.txt" << QByteArray("#123 ").repeated(10001) << "10000";
    QTest::newRow("json: not JSON") << "a.json" << QByteArray("[{\"hex\": ") << "JSON";
    QTest::newRow("json: not an array") << "a.json" << QByteArray("{\"hex\": \"#FFF\"}") << "array";
    QTest::newRow("json: nothing readable")
        << "a.json" << QByteArray("[1, {\"hex\": \"#GG0000\"}]") << "unreadable";
    QTest::newRow("too large") << "a.gpl" << QByteArray(PaletteExchange::maxFileSize + 1, '\n') << "MB";
    QTest::newRow("unknown type") << "a.png" << QByteArray("\x89PNG\r\n") << ".gpl";
}

void TestPaletteExchange::refuses()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, data);
    QFETCH(QString, why);
    const ExchangeResult result = PaletteExchange::read(fileName, data);
    QVERIFY(!result.palette);
    QVERIFY2(result.error.contains(why), qPrintable(result.error));
    QVERIFY(!result.error.contains(u'\n'));
}

QTEST_APPLESS_MAIN(TestPaletteExchange)
#include "tst_paletteexchange.moc"
