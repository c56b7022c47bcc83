// The records are read without Qt's JSON parser, for speed. Files that
// loaded with it must still load, and files it refused must still be
// refused: every case here is judged against QJsonDocument.
#include "model/JsonCursor.h"
#include "model/JsonSyntax.h"
#include "model/RecordCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

class TestJsonReading : public QObject
{
    Q_OBJECT

private slots:
    void acceptsWhatQtAccepts_data();
    void acceptsWhatQtAccepts();
    void stringsReadAsQtReadsThem_data();
    void stringsReadAsQtReadsThem();
    void numbersReadAsQtReadsThem_data();
    void numbersReadAsQtReadsThem();
    void recordFields_data();
    void recordFields();
    void nestingLimit();
};

void TestJsonReading::acceptsWhatQtAccepts_data()
{
    QTest::addColumn<QByteArray>("json");
    const char *const cases[] = {
        "[]", "  [ ]  ", "\n\t[\r]", "{}", "\xEF\xBB\xBF[1]", "[1,2]", "[true,false,null]",
        "[{\"a\":1,\"a\":2}]", "[{\"a\" : {\"b\" : [[], {}]}}]",
        // Numbers, including the forms Qt lets through.
        "[-0]", "[1.]", "[.5]", "[-.5]", "[1.e5]", "[1E+2]", "[4e-320]", "[9223372036854775808]",
        "[+1]", "[1e]", "[00]", "[-01]", "[.]", "[-]", "[1.5.]", "[0x1]", "[1e400]", "[-1e400]",
        "[1e-400]", "[.e1]", "[1e5.5]", "[NaN]", "[Infinity]",
        // Strings.
        "[\"a\tb\"]", "[\"\\x\"]", "[\"\\u0000\"]", "[\"\\ud800\"]", "[\"\\uD83D\\uDE00\"]", "[\"\\u00\"]",
        "[\"\\u12G4\"]", "[\"\xC3\xA9\"]", "[\"\xC0\x80\"]", "[\"\xED\xA0\x80\"]", "[\"\xF4\x90\x80\x80\"]",
        "[\"\xE2\x82\"]", "[\"\\\x8D" "df\"]", "[\"\\\xC3\xA9\"]", "[\"\xEF\xBB\xBFx\"]", "[\"abc", "[\"\\",
        // Structure.
        "", " ", "1", "\"a\"", "null", "[1 2]", "[1,]", "[,1]", "[{\"a\":1,}]", "[{\"a\" 1}]", "[{1:2}]",
        "[\"a\" : 1]", "[]x", "[] ]", "[", "[[]", "{\"a\":", "[nul]", "[tru]", "[true1]",
    };
    for (const char *json : cases) {
        const QByteArray bytes(json);
        QTest::newRow(bytes.toPercentEncoding().left(60).constData()) << bytes;
    }
    QTest::newRow("trailing NUL") << QByteArray("[1]\0", 4);
    QTest::newRow("NUL in a string") << QByteArray("[\"a\0b\"]", 7);
    for (int depth : {JsonSyntax::maxDepth - 1, JsonSyntax::maxDepth, JsonSyntax::maxDepth + 1})
        QTest::addRow("nested %d deep", depth) << QByteArray(depth, '[') + QByteArray(depth, ']');
}

void TestJsonReading::acceptsWhatQtAccepts()
{
    QFETCH(QByteArray, json);
    QJsonParseError error;
    QJsonDocument::fromJson(json, &error);
    const bool qtAccepts = error.error == QJsonParseError::NoError;
    const std::optional<JsonSyntax::Error> ours = JsonSyntax::check(json);
    QVERIFY2(qtAccepts == !ours.has_value(),
             qPrintable(QStringLiteral("Qt: %1, here: %2").arg(error.errorString(), ours ? ours->message : "accepted")));
}

void TestJsonReading::stringsReadAsQtReadsThem_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("plain") << QByteArray("[\"Sky Blue\"]");
    QTest::newRow("escapes") << QByteArray(R"(["a\"b\\c\/d\b\f\n\r\t"])");
    QTest::newRow("unknown escape") << QByteArray(R"(["\x\q"])");
    QTest::newRow("escaped high byte") << QByteArray("[\"\\\xFFz\"]");
    QTest::newRow("surrogate pair") << QByteArray(R"(["\uD83D\uDE00"])");
    QTest::newRow("lone surrogate") << QByteArray(R"(["\udc00x"])");
    QTest::newRow("NUL escape") << QByteArray(R"(["\u0000"])");
    QTest::newRow("UTF-8") << QByteArray("[\"\xC3\xA9t\xC3\xA9 \xF0\x9F\x8E\xA8 \xD7\xA9\"]");
    QTest::newRow("leading U+FEFF") << QByteArray("[\"\xEF\xBB\xBFname\"]");
    QTest::newRow("two leading U+FEFF") << QByteArray("[\"\xEF\xBB\xBF\xEF\xBB\xBFname\"]");
    QTest::newRow("leading U+FEFF and an escape") << QByteArray("[\"\xEF\xBB\xBF\\u0041\"]");
    QTest::newRow("escaped U+FEFF") << QByteArray("[\"\\ufeffname\"]");
    QTest::newRow("U+FEFF after an escape") << QByteArray("[\"\\n\xEF\xBB\xBFx\"]");
    QTest::newRow("escaped quote at the end") << QByteArray(R"(["a\\", "b\"", "\\\""])");
    QTest::newRow("raw tab") << QByteArray("[\"a\tb\"]");
}

void TestJsonReading::stringsReadAsQtReadsThem()
{
    QFETCH(QByteArray, json);
    QVERIFY(!JsonSyntax::check(json));
    const QJsonArray expected = QJsonDocument::fromJson(json).array();
    JsonCursor cursor(json);
    cursor.enter();
    for (const QJsonValue &value : expected) {
        QVERIFY(cursor.nextElement());
        QCOMPARE(cursor.kind(), JsonCursor::Kind::String);
        QCOMPARE(cursor.string(), value.toString());
    }
    QVERIFY(!cursor.nextElement());
}

void TestJsonReading::numbersReadAsQtReadsThem_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"0", "-0", "-0.0", "1", "0.5", "1.", ".25", "-.5", "1e3", "1E-3", "2.5e-324",
                             "4e-320", "1.7976931348623157e308", "0.1", "0.30000000000000004",
                             "9007199254740993", "9223372036854775807", "12345678901234567890123",
                             "0.26666666666666666"})
        QTest::newRow(text) << QByteArray(text);
}

void TestJsonReading::numbersReadAsQtReadsThem()
{
    QFETCH(QByteArray, text);
    const QByteArray json = '[' + text + ']';
    QVERIFY(!JsonSyntax::check(json));
    const double expected = QJsonDocument::fromJson(json).array().at(0).toDouble();
    JsonCursor cursor(json);
    cursor.enter();
    QVERIFY(cursor.nextElement());
    const double read = cursor.number();
    QCOMPARE(read, expected);
    QCOMPARE(std::signbit(read), std::signbit(expected));
}

// Record fields as a record decoder meets them: duplicate keys (the last
// wins), escaped keys, unknown members of any shape skipped whole.
void TestJsonReading::recordFields_data()
{
    QTest::addColumn<QByteArray>("json");
    const QByteArray color = R"({"id" : "6F1C1E2A-3B4C-4D5E-8F60-718293A4B5C6", "name" : "A", "red" : 0.5,
        "green" : 0.25, "blue" : 1, "alpha" : 1, "dateAdded" : "2025-03-14T09:26:53Z"})";
    QTest::newRow("as written") << '[' + color + ']';
    QTest::newRow("duplicate key") << QByteArray(R"([{"name" : "first", )") + color.mid(1) + ']';
    QTest::newRow("duplicate after") << '[' + color.chopped(1) + R"(, "name" : "last"}])";
    QTest::newRow("escaped key") << '[' + color.chopped(1) + R"(, "n\u0061me" : "escaped"}])";
    QTest::newRow("unknown nested")
        << '[' + color.chopped(1) + R"(, "extra" : [{"name" : "inner", "x" : ["]", "}"]}], "more" : "\"}"}])";
    QTest::newRow("lower-case id") << QByteArray(R"([{"id" : "6f1c1e2a-3b4c-4d5e-8f60-718293a4b5c6", )")
                                          + color.mid(color.indexOf("\"name\"")) + ']';
    QTest::newRow("escaped id") << QByteArray(R"([{"id" : "6F1C1E2A-3B4C-4D5E-8F60-718293A4B5C\u0036", )")
                                       + color.mid(color.indexOf("\"name\"")) + ']';
}

void TestJsonReading::recordFields()
{
    QFETCH(QByteArray, json);
    const Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(json);
    QVERIFY2(decoded.value, qPrintable(decoded.error));
    QCOMPARE(decoded.value->size(), 1);
    const QJsonObject expected = QJsonDocument::fromJson(json).array().at(0).toObject();
    const ColorItem &item = decoded.value->first();
    QCOMPARE(item.name, expected.value("name").toString());
    QCOMPARE(item.id, QUuid::fromString(expected.value("id").toString()));
    QCOMPARE(item.red, 0.5);
    QCOMPARE(item.blue, 1.0);
}

void TestJsonReading::nestingLimit()
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    QVERIFY(!JsonSyntax::check(nested(JsonSyntax::maxDepth)));
    QVERIFY(JsonSyntax::check(nested(JsonSyntax::maxDepth + 1)));
    // Far deeper than any stack would take: refused, not crashed.
    QVERIFY(JsonSyntax::check(nested(1000000)));
}

QTEST_GUILESS_MAIN(TestJsonReading)
#include "tst_jsonreading.moc"
