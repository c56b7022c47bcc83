#include "storage/ContrastStorage.h"

#include <QSignalSpy>
#include <QTest>

class TestContrastStorage : public QObject
{
    Q_OBJECT

private slots:
    void startsAtBlackOnWhite();
    void keepsTextAsTyped();
};

void TestContrastStorage::startsAtBlackOnWhite()
{
    ContrastStorage storage;
    QCOMPARE(storage.hex1(), QStringLiteral("#000000"));
    QCOMPARE(storage.hex2(), QStringLiteral("#FFFFFF"));
    QCOMPARE(storage.contrastRatio(), 21.0);
}

void TestContrastStorage::keepsTextAsTyped()
{
    ContrastStorage storage;
    QSignalSpy spy1(&storage, &ContrastStorage::hex1Changed);
    QSignalSpy spy2(&storage, &ContrastStorage::hex2Changed);
    storage.setHex1(QStringLiteral(" not hex "));
    storage.setHex2(QStringLiteral("#fff"));
    QCOMPARE(storage.hex1(), QStringLiteral(" not hex "));
    QCOMPARE(storage.hex2(), QStringLiteral("#fff"));
    QCOMPARE(spy1.count(), 1);
    QCOMPARE(spy2.count(), 1);
    QCOMPARE(spy1.first().first().toString(), QStringLiteral(" not hex "));
    // Both invalid: black on white.
    QCOMPARE(storage.contrastRatio(), 21.0);
    storage.setHex1(QStringLiteral("#FFFFFF"));
    QCOMPARE(storage.contrastRatio(), 1.0);
}

QTEST_GUILESS_MAIN(TestContrastStorage)
#include "tst_contraststorage.moc"
