// Soak of the program's own changes interleaved with another writer's; see
// bench/sync.sh.
#include "storage/PaletteStorage.h"

#include "model/RecordCoding.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace {

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
}

QSet<QUuid> colorIds(const QString &path)
{
    QSet<QUuid> ids;
    for (const Palette &palette :
         RecordCoding::decodePalettes(readFile(path)).value.value_or(QList<Palette>())) {
        for (const ColorItem &item : palette.colors)
            ids.insert(item.id);
    }
    return ids;
}

void spin(int ms)
{
    QElapsedTimer timer;
    timer.start();
    while (!timer.hasExpired(ms))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? QByteArray(argv[1]).toInt() : 2000;
    QRandomGenerator random(argc > 2 ? QByteArray(argv[2]).toUInt() : 1);

    QTemporaryDir dir, elsewhere;
    PaletteStorage storage(dir.path());
    const QString path = storage.filePath();
    const QUuid shared = storage.createPalette(QStringLiteral("shared")).id;
    QSet<QUuid> expected;
    int lost = 0;
    QList<double> mergeMs;
    for (int round = 0; round < rounds; ++round) {
        // The other side: the file as it is now, one color added there.
        const QString theirPath = elsewhere.filePath(QStringLiteral("palettes.json"));
        QFile::remove(theirPath);
        QFile::copy(path, theirPath);
        {
            PaletteStorage other(elsewhere.path());
            const ColorItem item =
                ColorItem::create(QStringLiteral("theirs"), random.generateDouble(), 0.5, 0.5);
            other.addColor(item, shared);
            expected.insert(item.id);
        }
        const QByteArray theirs = readFile(theirPath);
        const quint32 how = random.bounded(4);
        if (how == 0) {
            writeFile(path + QStringLiteral(".tmp"), theirs);
            std::rename(QFile::encodeName(path + QStringLiteral(".tmp")).constData(),
                        QFile::encodeName(path).constData());
        } else if (how == 1) {
            writeFile(path, theirs);
        } else if (how == 2) {
            // Truncated for a moment, then complete.
            writeFile(path, theirs.left(random.bounded(int(theirs.size()))));
            spin(random.bounded(300));
            writeFile(path, theirs);
        } else {
            writeFile(path, theirs);
            spin(random.bounded(300)); // the reload may or may not have happened
        }

        const ColorItem mine = ColorItem::create(QStringLiteral("mine"), random.generateDouble(), 0.25, 0.75);
        QElapsedTimer timer;
        timer.start();
        storage.addColor(mine, shared);
        mergeMs.append(timer.nsecsElapsed() / 1e6);
        expected.insert(mine.id);
        // A save deferred while the file is half-written lands once it settles.
        for (int wait = 0; wait < 40 && colorIds(path) != expected; ++wait)
            spin(50);
        if (colorIds(path) != expected) {
            ++lost;
            expected = colorIds(path);
        }
    }
    std::sort(mergeMs.begin(), mergeMs.end());
    std::printf(
        "rounds %d, lost changes %d (target 0): %s; add-color after an outside change, median %.2f ms\n",
        rounds, lost, lost == 0 ? "met" : "MISSED", mergeMs.isEmpty() ? 0.0 : mergeMs.at(mergeMs.size() / 2));
    return lost == 0 ? 0 : 1;
}
