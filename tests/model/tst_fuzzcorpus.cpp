// Replays the committed fuzz corpus through the entry functions the libFuzzer
// targets call, so every input that once found a fault keeps passing in a
// plain build. An entry aborts on a broken invariant.
#include "FuzzEntries.h"

#include <QDir>
#include <QTest>

using Entry = void (*)(const uint8_t *, size_t);
Q_DECLARE_METATYPE(Entry)

class TestFuzzCorpus : public QObject
{
    Q_OBJECT

private slots:
    void replay_data()
    {
        QTest::addColumn<Entry>("entry");
        QTest::addColumn<QString>("path"); // empty: a target without a corpus
        const std::pair<const char *, Entry> targets[] = {{"hex", FuzzEntries::hex},
                                                          {"convert", FuzzEntries::convert},
                                                          {"contrast", FuzzEntries::contrast},
                                                          {"records", FuzzEntries::records},
                                                          {"gpl", FuzzEntries::gpl},
                                                          {"ase", FuzzEntries::ase},
                                                          {"css", FuzzEntries::css}};
        for (const auto &[target, entry] : targets) {
            const QDir dir(QStringLiteral(TINTWRIGHT_FUZZ_CORPUS "/") + QLatin1String(target));
            const QStringList files = dir.entryList(QDir::Files, QDir::Name);
            if (files.isEmpty())
                QTest::addRow("%s", target) << entry << QString();
            for (const QString &name : files)
                QTest::addRow("%s/%s", target, qPrintable(name)) << entry << dir.filePath(name);
        }
    }
    void replay()
    {
        QFETCH(Entry, entry);
        QFETCH(QString, path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray data = file.readAll();
        entry(reinterpret_cast<const uint8_t *>(data.constData()), size_t(data.size()));
    }
};

QTEST_APPLESS_MAIN(TestFuzzCorpus)
#include "tst_fuzzcorpus.moc"
