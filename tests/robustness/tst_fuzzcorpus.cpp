// Replays the committed fuzz corpus through the same entry functions the
// libFuzzer targets call, so every input that once found a fault (and every
// seed) keeps passing in a plain build. An entry aborts on a broken invariant.
#include "FuzzEntries.h"

#include <QDir>
#include <QFile>
#include <QTest>

namespace {

using Entry = void (*)(const uint8_t *, size_t);

Entry entryFor(const QString &target)
{
    if (target == QLatin1String("hex"))
        return FuzzEntries::hex;
    if (target == QLatin1String("convert"))
        return FuzzEntries::convert;
    if (target == QLatin1String("contrast"))
        return FuzzEntries::contrast;
    if (target == QLatin1String("records"))
        return FuzzEntries::records;
    if (target == QLatin1String("gpl"))
        return FuzzEntries::gpl;
    if (target == QLatin1String("ase"))
        return FuzzEntries::ase;
    if (target == QLatin1String("css"))
        return FuzzEntries::css;
    return nullptr;
}

const QStringList targets = {QStringLiteral("hex"),     QStringLiteral("convert"), QStringLiteral("contrast"),
                             QStringLiteral("records"), QStringLiteral("gpl"),     QStringLiteral("ase"),
                             QStringLiteral("css")};

} // namespace

class TestFuzzCorpus : public QObject
{
    Q_OBJECT

private slots:
    void everyTargetHasACorpus_data();
    void everyTargetHasACorpus();
    void replay_data();
    void replay();
};

void TestFuzzCorpus::everyTargetHasACorpus_data()
{
    QTest::addColumn<QString>("target");
    for (const QString &target : targets)
        QTest::newRow(qPrintable(target)) << target;
}

void TestFuzzCorpus::everyTargetHasACorpus()
{
    QFETCH(QString, target);
    const QDir dir(QStringLiteral(TINTWRIGHT_FUZZ_CORPUS "/") + target);
    QVERIFY2(dir.exists(), qPrintable(dir.path()));
    QVERIFY(!dir.entryList(QDir::Files).isEmpty());
    QVERIFY(entryFor(target));
}

void TestFuzzCorpus::replay_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("path");
    for (const QString &target : targets) {
        const QDir dir(QStringLiteral(TINTWRIGHT_FUZZ_CORPUS "/") + target);
        for (const QString &name : dir.entryList(QDir::Files, QDir::Name))
            QTest::newRow(qPrintable(target + u'/' + name)) << target << dir.filePath(name);
    }
}

void TestFuzzCorpus::replay()
{
    QFETCH(QString, target);
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray data = file.readAll();
    entryFor(target)(reinterpret_cast<const uint8_t *>(data.constData()), size_t(data.size()));
}

QTEST_APPLESS_MAIN(TestFuzzCorpus)
#include "tst_fuzzcorpus.moc"
