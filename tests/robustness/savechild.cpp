// Child process of tst_killduringsave: loads the stores from a folder and
// then changes and saves them step after step until it is killed. After
// each completed step it reports "done <step>" on standard output.
#include "SaveSteps.h"

#include "storage/HistoryStorage.h"
#include "storage/PaletteStorage.h"

#include <QCoreApplication>

#include <cstdio>
#include <unistd.h>

namespace {

void report(const QByteArray &line)
{
    const QByteArray bytes = line + '\n';
    // Unbuffered, so nothing reported is lost to the kill.
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, bytes.constData(), size_t(bytes.size()));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s <folder> <last completed step>\n", argv[0]);
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const int completed = QByteArray(argv[2]).toInt();

    PaletteStorage palettes(folder);
    HistoryStorage history(folder);
    report("ready");
    for (int step = completed + 1; step < completed + 1000000; ++step) {
        SaveSteps::apply(step, palettes, history);
        report("done " + QByteArray::number(step));
    }
    return 0;
}
