#include "model/RecordCoding.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

ColorItem sampleItem()
{
    ColorItem item;
    item.id = QUuid(QStringLiteral("{3f2504e0-4f89-41d3-9a0c-0305e82c3301}"));
    item.name = QStringLiteral("Tangerine \"sky\"");
    item.red = 1.0;
    item.green = 128 / 255.0;
    item.blue = 0.1;
    item.alpha = 1.0;
    item.dateAdded = QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53, 700), Qt::UTC);
    return item;
}

QByteArray colorRecord(const QByteArray &overrides, const QByteArray &drop = {})
{
    QList<QByteArray> fields = {R"("id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301")",
                                R"("name": "A")",
                                R"("red": 1)",
                                R"("green": 0.5)",
                                R"("blue": 0)",
                                R"("alpha": 1)",
                                R"("dateAdded": "2025-03-14T09:26:53Z")"};
    QList<QByteArray> kept;
    for (const QByteArray &f : fields) {
        if (!drop.isEmpty() && f.startsWith("\"" + drop + "\""))
            continue;
        kept << f;
    }
    if (!overrides.isEmpty())
        kept << overrides;
    return "{" + kept.join(", ") + "}";
}

} // namespace

class TestRecordCoding : public QObject
{
    Q_OBJECT

private slots:
    void writesExactBytes();
    void writesPaletteWithColors();
    void roundTripTruncatesDates();
    void decodeRefuses_data();
    void decodeRefuses();
    void decodeTolerates_data();
    void decodeTolerates();
    void decodePalettesRefuses_data();
    void decodePalettesRefuses();
    void refusesNonFiniteOnWrite();
    void equality();
    void oddValuesSurviveARewrite_data();
    void oddValuesSurviveARewrite();
};

void TestRecordCoding::writesExactBytes()
{
    const Encoded encoded = RecordCoding::encodeColors({sampleItem()});
    QVERIFY(encoded.data);
    const QByteArray expected = "[\n"
                                "  {\n"
                                "    \"id\" : \"3F2504E0-4F89-41D3-9A0C-0305E82C3301\",\n"
                                "    \"name\" : \"Tangerine \\\"sky\\\"\",\n"
                                "    \"red\" : 1,\n"
                                "    \"green\" : 0.5019607843137255,\n"
                                "    \"blue\" : 0.1,\n"
                                "    \"alpha\" : 1,\n"
                                "    \"dateAdded\" : \"2025-03-14T09:26:53Z\"\n"
                                "  }\n"
                                "]";
    QCOMPARE(*encoded.data, expected);
    QCOMPARE(*RecordCoding::encodeColors({}).data, QByteArray("[]"));
}

void TestRecordCoding::writesPaletteWithColors()
{
    Palette palette;
    palette.id = QUuid(QStringLiteral("{00000000-0000-0000-0000-0000000000ab}"));
    palette.name = QStringLiteral("Brand");
    palette.dateCreated = QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5), Qt::UTC);
    const Encoded empty = RecordCoding::encodePalettes({palette});
    QCOMPARE(*empty.data,
             QByteArray("[\n"
                        "  {\n"
                        "    \"id\" : \"00000000-0000-0000-0000-0000000000AB\",\n"
                        "    \"name\" : \"Brand\",\n"
                        "    \"colors\" : [],\n"
                        "    \"dateCreated\" : \"2024-01-02T03:04:05Z\"\n"
                        "  }\n"
                        "]"));

    palette.colors = {sampleItem(), sampleItem()};
    const Encoded full = RecordCoding::encodePalettes({palette});
    const Decoded<QList<Palette>> decoded = RecordCoding::decodePalettes(*full.data);
    QVERIFY2(decoded.value, qPrintable(decoded.error));
    QCOMPARE(decoded.value->size(), 1);
    QCOMPARE(decoded.value->first().colors.size(), 2);
    QCOMPARE(decoded.value->first().colors.first().name, sampleItem().name);
}

void TestRecordCoding::roundTripTruncatesDates()
{
    const ColorItem item = sampleItem();
    const Decoded<QList<ColorItem>> decoded =
        RecordCoding::decodeColors(*RecordCoding::encodeColors({item}).data);
    QVERIFY2(decoded.value, qPrintable(decoded.error));
    const ColorItem back = decoded.value->first();
    QCOMPARE(back.id, item.id);
    QCOMPARE(back.name, item.name);
    QCOMPARE(back.red, item.red);
    QCOMPARE(back.green, item.green);
    QCOMPARE(back.blue, item.blue);
    QCOMPARE(back.alpha, item.alpha);
    QCOMPARE(back.dateAdded, QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53), Qt::UTC));
    QVERIFY(back != item); // the fraction of a second is gone
}

void TestRecordCoding::decodeRefuses_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error"); // a part of it
    const auto row = [](const char *name, const QByteArray &json, const char *error) {
        QTest::newRow(name) << json << QString::fromUtf8(error);
    };
    const auto one = [](const QByteArray &field, const QByteArray &dropped) {
        return "[" + colorRecord(field, dropped) + "]";
    };
    row("missing alpha", one({}, "alpha"), R"(No value for key "alpha" at [0])");
    row("missing id", one({}, "id"), R"(No value for key "id")");
    row("id is a number", one(R"("id": 7)", "id"), R"(Expected a string for "id" but found a number)");
    row("name is a number", one(R"("name": 5)", "name"), R"(for "name")");
    row("red is a string", one(R"("red": "1")", "red"),
        R"(Expected a number for "red" but found a string at [0])");
    row("red is null", one(R"("red": null)", "red"), "found null");
    row("green is a boolean", one(R"("green": true)", "green"), R"(for "green" but found a boolean)");
    row("blue is an array", one(R"("blue": [0])", "blue"), R"(for "blue" but found an array)");
    row("alpha is an object", one(R"("alpha": {})", "alpha"), R"(for "alpha" but found an object)");
    row("fractional seconds", one(R"("dateAdded": "2025-03-14T09:26:53.5Z")", "dateAdded"), "dateAdded");
    row("offset instead of Z", one(R"("dateAdded": "2025-03-14T09:26:53+01:00")", "dateAdded"), "dateAdded");
    row("date only", one(R"("dateAdded": "2025-03-14")", "dateAdded"), "dateAdded");
    row("impossible date", one(R"("dateAdded": "2025-02-30T09:26:53Z")", "dateAdded"),
        R"(Expected date string to be ISO8601-formatted for "dateAdded": 2025-02-30T09:26:53Z at [0])");
    row("impossible time", one(R"("dateAdded": "2025-03-14T24:00:00Z")", "dateAdded"), "dateAdded");
    row("date as number", one(R"("dateAdded": 1)", "dateAdded"), "dateAdded");
    row("bad uuid", one(R"("id": "not-a-uuid")", "id"), R"(Invalid UUID string for "id": not-a-uuid at [0])");
    row("braced uuid", one(R"("id": "{3F2504E0-4F89-41D3-9A0C-0305E82C3301}")", "id"), "id");
    row("huge number", one(R"("red": 1e999)", "red"), "");
    row("object at top", colorRecord({}), "Expected an array at the top level but found an object");
    row("array of numbers", "[1, 2]", "Expected an object but found a number at [0]");
    row("truncated", ("[" + colorRecord({})).left(40), "The data is not valid JSON (");
    row("empty file", {}, "JSON");
    row("invalid utf-8", "[{\"name\": \"\xff\xfe\"}]", "");
    row("one bad among good", "[" + colorRecord({}) + ", " + colorRecord({}, "blue") + "]", "at [1]");
    // Whatever order the keys stand in, the first fault in field order is told.
    row("several faults",
        R"([{"dateAdded": "now", "green": "x", "name": 5, "id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301"}])",
        R"(for "name")");
}

void TestRecordCoding::decodeRefuses()
{
    QFETCH(QByteArray, json);
    const Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(json);
    QVERIFY(!decoded.value);
    QVERIFY(!decoded.error.isEmpty());
    QFETCH(QString, error);
    QVERIFY2(decoded.error.contains(error), qPrintable(decoded.error));
}

void TestRecordCoding::decodeTolerates_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<int>("count");
    const QByteArray lowerCaseId = R"("id": "3f2504e0-4f89-41d3-9a0c-0305e82c3301")";
    QTest::newRow("empty array") << QByteArray("[]") << 0;
    QTest::newRow("blank around") << QByteArray(" \n[ ]\n") << 0;
    QTest::newRow("unknown key") << "[" + colorRecord(R"("favourite": true)") + "]" << 1;
    QTest::newRow("lower-case uuid") << "[" + colorRecord(lowerCaseId, "id") + "]" << 1;
    QTest::newRow("nil uuid") << "[" + colorRecord(R"("id": "00000000-0000-0000-0000-000000000000")", "id")
            + "]" << 1;
    QTest::newRow("any key order") << QByteArray(
        R"([{"dateAdded": "2025-03-14T09:26:53Z", "alpha": 0.5, "blue": 0, "green": 0,
                          "red": 0, "name": "", "id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301"}])")
                                   << 1;
    QTest::newRow("integer components") << "[" + colorRecord({}) + "," + colorRecord({}) + "]" << 2;
}

void TestRecordCoding::decodeTolerates()
{
    QFETCH(QByteArray, json);
    const Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(json);
    QVERIFY2(decoded.value, qPrintable(decoded.error));
    QFETCH(int, count);
    QCOMPARE(decoded.value->size(), count);
}

void TestRecordCoding::decodePalettesRefuses_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QString>("errorMentions");
    const QByteArray id = R"("id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301", )";
    const QByteArray name = R"("name": "P", )";
    const QByteArray date = R"(, "dateCreated": "2025-03-14T09:26:53Z")";
    const QByteArray colors = R"("colors": [)" + colorRecord({}) + "]";
    QTest::newRow("bad color") << id + name + R"("colors": [)" + colorRecord({}) + ", "
            + colorRecord({}, "alpha") + "]"
            + date << R"("alpha" at [0].colors[1])";
    QTest::newRow("no colors") << id + name.chopped(2) + date << "colors";
    QTest::newRow("colors is an object") << id + name + R"("colors": {})" + date << "colors";
    QTest::newRow("id is a number") << R"("id": 1, )" + name + colors + date << "id";
    QTest::newRow("name is null") << id + R"("name": null, )" + colors + date << "name";
    QTest::newRow("date is a number") << id + name + colors + R"(, "dateCreated": 0)"
                                      << "dateCreated";
}

void TestRecordCoding::decodePalettesRefuses()
{
    QFETCH(QByteArray, fields);
    const Decoded<QList<Palette>> decoded = RecordCoding::decodePalettes("[{" + fields + "}]");
    QVERIFY(!decoded.value);
    QFETCH(QString, errorMentions);
    QVERIFY2(decoded.error.contains(errorMentions), qPrintable(decoded.error));
}

void TestRecordCoding::refusesNonFiniteOnWrite()
{
    ColorItem item = sampleItem();
    item.red = std::numeric_limits<double>::quiet_NaN();
    const Encoded encoded = RecordCoding::encodeColors({item});
    QVERIFY(!encoded.data);
    QVERIFY(!encoded.error.isEmpty());
}

void TestRecordCoding::equality()
{
    const ColorItem item = sampleItem();
    ColorItem copy = item;
    QVERIFY(copy == item);
    copy.red = std::nextafter(item.red, 0.0);
    QVERIFY(copy != item);

    const ColorItem first = ColorItem::create(QStringLiteral("x"), 0.1, 0.2, 0.3);
    ColorItem later = first;
    later.dateAdded = first.dateAdded.addSecs(1);
    QVERIFY(later != first);

    Palette palette = Palette::create(QStringLiteral("P"));
    palette.colors = {first, item};
    Palette reordered = palette;
    reordered.colors = {item, first};
    QVERIFY(palette == Palette(palette));
    QVERIFY(reordered != palette);
}

// Every name and every finite number a user's file can hold reads back
// exactly, in a history record and in a palette.
void TestRecordCoding::oddValuesSurviveARewrite_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<double>("red");
    const auto name = [](const char *what, const QString &text) { QTest::newRow(what) << text << 0.5; };
    const auto number = [](const char *what, double value) {
        QTest::newRow(what) << QStringLiteral("n") << value;
    };
    name("empty", QString());
    name("control characters", QString::fromUtf16(u"a\u0001\u001f\u007f\tb\r\n"));
    name("nul", QString(QChar(0)) + QStringLiteral("x"));
    name("emoji", QString::fromUtf16(u"\U0001F3A8\U0001F469\u200D\U0001F4BB"));
    name("lone surrogates, reversed pair", QString(QChar(0xDF0A)) + QChar(0xD83C) + QChar(0xD83C));
    name("quotes and backslashes", QStringLiteral("\"\\\\u0041\""));
    name("noncharacters", QString::fromUtf16(u"\uFFFE\uFFFF\uFDD0"));
    name("zero-width no-break spaces", QString::fromUtf16(u"\uFEFF\uFEFFname\uFEFF"));
    name("long", QString(100000, QChar(0x00E9)));
    number("smallest subnormal", std::numeric_limits<double>::denorm_min());
    number("largest", std::numeric_limits<double>::max());
    number("most negative", -std::numeric_limits<double>::max());
    number("one third", 1.0 / 3.0);
    number("just below one", std::nextafter(1.0, 0.0));
    number("2^53 + 2", 9007199254740994.0);
}

void TestRecordCoding::oddValuesSurviveARewrite()
{
    QFETCH(QString, name);
    QFETCH(double, red);
    ColorItem item = sampleItem();
    item.name = name;
    item.red = red;
    item.dateAdded = item.dateAdded.addMSecs(-item.dateAdded.time().msec());
    const Palette palette{item.id, name, {item}, item.dateAdded};
    const Decoded<QList<Palette>> back =
        RecordCoding::decodePalettes(*RecordCoding::encodePalettes({palette}).data);
    QVERIFY2(back.value, qPrintable(back.error));
    QVERIFY(back.value->first() == palette);
    QVERIFY(RecordCoding::decodeColors(*RecordCoding::encodeColors({item}).data).value->first() == item);
}

QTEST_APPLESS_MAIN(TestRecordCoding)
#include "tst_recordcoding.moc"
