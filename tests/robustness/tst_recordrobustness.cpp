// Records that a user's file can hold, however odd, survive a rewrite
// unchanged: every name and every finite number reads back exactly.
#include "model/RecordCoding.h"

#include <QTest>

#include <limits>

namespace {

ColorItem item(const QString &name, double red)
{
    ColorItem color;
    color.id = QUuid::fromString(QStringLiteral("6F1C1E2A-3B4C-4D5E-8F60-718293A4B5C6"));
    color.name = name;
    color.red = red;
    color.green = 0.5;
    color.blue = 0.25;
    color.alpha = 1.0;
    color.dateAdded = QDateTime(QDate(2025, 3, 14), QTime(9, 26, 53), Qt::UTC);
    return color;
}

} // namespace

class TestRecordRobustness : public QObject
{
    Q_OBJECT

private slots:
    void namesSurviveARewrite_data();
    void namesSurviveARewrite();
    void numbersSurviveARewrite_data();
    void numbersSurviveARewrite();
};

void TestRecordRobustness::namesSurviveARewrite_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("control characters") << QString::fromUtf16(u"a\u0001\u0007\u001f\u007f\tb\r\n");
    QTest::newRow("nul") << QString(QChar(0)) + QStringLiteral("x");
    QTest::newRow("right-to-left") << QString::fromUtf16(
        u"\u202e\u05e9\u05dc\u05d5\u05dd \u0627\u0644\u0644\u0648\u0646");
    QTest::newRow("emoji") << QString::fromUtf16(u"\U0001F3A8\U0001F469\u200D\U0001F4BB\U0001F1EB\U0001F1F7");
    QTest::newRow("lone high surrogate") << QString::fromUtf16(u"Sky ") + QChar(0xD83C);
    QTest::newRow("lone low surrogate") << QChar(0xDF0A) + QStringLiteral(" sea");
    QTest::newRow("reversed pair") << QString(QChar(0xDF0A)) + QChar(0xD83C);
    QTest::newRow("quotes and backslashes") << QStringLiteral("\"\\\\u0041\"");
    QTest::newRow("noncharacters") << QString::fromUtf16(u"\uFFFE\uFFFF\uFDD0");
    QTest::newRow("leading zero-width no-break space") << QString::fromUtf16(u"\uFEFF");
    QTest::newRow("zero-width no-break spaces") << QString::fromUtf16(u"\uFEFF\uFEFFname\uFEFF");
    QTest::newRow("long") << QString(100000, QChar(0x00E9));
}

void TestRecordRobustness::namesSurviveARewrite()
{
    QFETCH(QString, name);
    const QList<ColorItem> colors{item(name, 0.1)};
    const Encoded encoded = RecordCoding::encodeColors(colors);
    QVERIFY(encoded.data);
    const Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(*encoded.data);
    QVERIFY2(decoded.value, qPrintable(decoded.error));
    QCOMPARE(decoded.value->first().name, name);

    Palette palette;
    palette.id = colors.first().id;
    palette.name = name;
    palette.colors = colors;
    palette.dateCreated = colors.first().dateAdded;
    const Encoded palettes = RecordCoding::encodePalettes({palette});
    QVERIFY(palettes.data);
    const Decoded<QList<Palette>> back = RecordCoding::decodePalettes(*palettes.data);
    QVERIFY2(back.value, qPrintable(back.error));
    QCOMPARE(back.value->first(), palette);
}

void TestRecordRobustness::numbersSurviveARewrite_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("zero") << 0.0;
    // Reads back as 0, which compares equal: the sign of a zero is not kept.
    QTest::newRow("negative zero") << -0.0;
    QTest::newRow("smallest subnormal") << std::numeric_limits<double>::denorm_min();
    QTest::newRow("smallest normal") << std::numeric_limits<double>::min();
    QTest::newRow("largest") << std::numeric_limits<double>::max();
    QTest::newRow("most negative") << -std::numeric_limits<double>::max();
    QTest::newRow("one third") << 1.0 / 3.0;
    QTest::newRow("just below one") << std::nextafter(1.0, 0.0);
    QTest::newRow("2^53 + 2") << 9007199254740994.0;
}

void TestRecordRobustness::numbersSurviveARewrite()
{
    QFETCH(double, value);
    const QList<ColorItem> colors{item(QStringLiteral("n"), value)};
    const Encoded encoded = RecordCoding::encodeColors(colors);
    QVERIFY(encoded.data);
    const Decoded<QList<ColorItem>> decoded = RecordCoding::decodeColors(*encoded.data);
    QVERIFY2(decoded.value, qPrintable(decoded.error));
    const double back = decoded.value->first().red;
    QVERIFY2(back == value, qPrintable(QString::number(back, 'g', 17)));
}

QTEST_APPLESS_MAIN(TestRecordRobustness)
#include "tst_recordrobustness.moc"
