#include "model/RecordCoding.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

ColorItem sampleItem()
{
    const QUuid id("{3f2504e0-4f89-41d3-9a0c-0305e82c3301}");
    return {id, "Tangerine \"sky\"", 1, 128 / 255.0, 0.1, 1, {{2025, 3, 14}, {9, 26, 53, 700}, Qt::UTC}};
}

// One color record; `replaced` names the field `with` stands for ("" drops it).
QByteArray colorRecord(const QByteArray &replaced = {}, const QByteArray &with = {})
{
    QList<QByteArray> fields =
        QByteArray(R"("id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301"|"name": "A"|"red": 1|)"
                   R"("green": 0.5|"blue": 0|"alpha": 1|"dateAdded": "2025-03-14T09:26:53Z")")
            .split('|');
    for (QByteArray &f : fields)
        if (!replaced.isEmpty() && f.startsWith('"' + replaced + '"'))
            f = with;
    fields.removeAll(QByteArray());
    return "{" + fields.join(", ") + "}";
}

} // namespace

class TestRecordCoding : public QObject
{
    Q_OBJECT

private slots:
    void writesExactBytes()
    {
        const ColorItem item = sampleItem();
        const Encoded encoded = RecordCoding::encodeColors({item});
        QCOMPARE(*encoded.data,
                 QByteArray("[\n  {\n"
                            "    \"id\" : \"3F2504E0-4F89-41D3-9A0C-0305E82C3301\",\n"
                            "    \"name\" : \"Tangerine \\\"sky\\\"\",\n"
                            "    \"red\" : 1,\n"
                            "    \"green\" : 0.5019607843137255,\n"
                            "    \"blue\" : 0.1,\n"
                            "    \"alpha\" : 1,\n"
                            "    \"dateAdded\" : \"2025-03-14T09:26:53Z\"\n"
                            "  }\n]"));
        QCOMPARE(*RecordCoding::encodeColors({}).data, QByteArray("[]"));
        // Read back, the fraction of a second is gone.
        const ColorItem back = RecordCoding::decodeColors(*encoded.data).value->first();
        QCOMPARE(back.dateAdded, QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53), Qt::UTC));
        QCOMPARE(back.green, item.green);

        const Palette palette{
            QUuid("{00000000-0000-0000-0000-0000000000ab}"), "Brand", {}, {{2024, 1, 2}, {3, 4, 5}, Qt::UTC}};
        QCOMPARE(*RecordCoding::encodePalettes({palette}).data,
                 QByteArray("[\n  {\n"
                            "    \"id\" : \"00000000-0000-0000-0000-0000000000AB\",\n"
                            "    \"name\" : \"Brand\",\n"
                            "    \"colors\" : [],\n"
                            "    \"dateCreated\" : \"2024-01-02T03:04:05Z\"\n"
                            "  }\n]"));
    }

    void decode_data()
    {
        QTest::addColumn<QByteArray>("json"); // "P[...": a palette file
        QTest::addColumn<QString>("error");   // a part of it; empty: read
        const auto row = [](const char *name, const QByteArray &json, const char *error) {
            QTest::newRow(name) << json << QString::fromUtf8(error);
        };
        const auto one = [](const QByteArray &field, const QByteArray &with) {
            return "[" + colorRecord(field, with) + "]";
        };
        row("missing alpha", one("alpha", {}), R"(No value for key "alpha" at [0])");
        row("id is a number", one("id", R"("id": 7)"), R"(Expected a string for "id" but found a number)");
        row("red is a string", one("red", R"("red": "1")"),
            R"(Expected a number for "red" but found a string at [0])");
        row("green is a boolean", one("green", R"("green": true)"), R"(for "green" but found a boolean)");
        row("blue is an array", one("blue", R"("blue": [0])"), R"(for "blue" but found an array)");
        row("offset instead of Z", one("dateAdded", R"("dateAdded": "2025-03-14T09:26:53+01:00")"),
            "dateAdded");
        row("impossible time", one("dateAdded", R"("dateAdded": "2025-03-14T24:00:00Z")"), "dateAdded");
        row("bad uuid", one("id", R"("id": "not-a-uuid")"),
            R"(Invalid UUID string for "id": not-a-uuid at [0])");
        row("object at top", colorRecord(), "Expected an array at the top level but found an object");
        row("truncated", ("[" + colorRecord()).left(40), "The data is not valid JSON (");
        row("one bad among good", "[" + colorRecord() + ", " + colorRecord("blue", {}) + "]", "at [1]");
        const QByteArray palette = R"(P[{"id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301", "name": "P", )";
        const QByteArray date = R"(, "dateCreated": "2025-03-14T09:26:53Z"}])";
        row("palette: bad color",
            palette + R"("colors": [)" + colorRecord() + ", " + colorRecord("alpha", {}) + "]" + date,
            R"("alpha" at [0].colors[1])");
        row("palette: date is a number", palette + R"("colors": [], "dateCreated": 0}])", "dateCreated");
        // Whatever order the keys stand in, the first fault in field order is told.
        row("several faults",
            R"([{"dateAdded": "now", "green": "x", "name": 5, "id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301"}])",
            R"(for "name")");
        // Read all the same: blanks, keys nobody asks for, ids in lower case
        // or nil, and keys in any order.
        row("blank around", " \n[ ]\n", "");
        row("unknown key", one("name", R"("name": "A", "favourite": true)"), "");
        row("lower-case uuid", one("id", R"("id": "3f2504e0-4f89-41d3-9a0c-0305e82c3301")"), "");
        row("nil uuid", one("id", R"("id": "00000000-0000-0000-0000-000000000000")"), "");
        row("any key order",
            R"([{"dateAdded": "2025-03-14T09:26:53Z", "alpha": 0.5, "blue": 0, "green": 0, "red": 0, "name": "",
                 "id": "3F2504E0-4F89-41D3-9A0C-0305E82C3301"}])",
            "");
    }

    void decode()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        const QString why = json.startsWith('P') ? RecordCoding::decodePalettes(json.mid(1)).error
                                                 : RecordCoding::decodeColors(json).error;
        QVERIFY2(error.isEmpty() ? why.isEmpty() : why.contains(error), qPrintable(why));
    }

    void equalityAndNonFinite()
    {
        const ColorItem item = sampleItem();
        ColorItem copy = item;
        QVERIFY(copy == item);
        copy.red = std::nextafter(item.red, 0.0);
        QVERIFY(copy != item);
        Palette palette = Palette::create(QStringLiteral("P"));
        palette.colors = {copy, item};
        Palette reordered = palette;
        reordered.colors = {item, copy};
        QVERIFY(reordered != palette);

        copy.red = std::numeric_limits<double>::quiet_NaN();
        const Encoded encoded = RecordCoding::encodeColors({copy});
        QVERIFY(!encoded.data && !encoded.error.isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestRecordCoding)
#include "tst_recordcoding.moc"
