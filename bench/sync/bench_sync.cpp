// Two computers on one synced folder; see bench/sync.sh.
#include "TwoComputers.h"

#include <QCoreApplication>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? QByteArray(argv[1]).toInt() : 20;
    const int operations = argc > 2 ? QByteArray(argv[2]).toInt() : 40;
    const quint32 seed = argc > 3 ? QByteArray(argv[3]).toUInt() : 1;

    // The lines the stores print (one per merged conflict copy) are counted,
    // not shown.
    QTemporaryFile printed;
    printed.open();
    std::fflush(stdout);
    const int console = ::dup(1);
    ::dup2(printed.handle(), 1);

    // Stepwise, the stores are given 250 ms to see each sync step through.
    const bool stepwise = qEnvironmentVariableIsSet("STEPWISE");
    TwoComputers computers(seed, stepwise ? 250 : 30, 400);
    computers.setStepwise(stepwise);
    computers.setOwnRecordsOnly(qEnvironmentVariableIsSet("OWN_ONLY"));
    for (int round = 0; round < rounds; ++round)
        computers.round(operations, 250);

    std::fflush(stdout);
    ::dup2(console, 1);
    printed.seek(0);
    const int merged = int(printed.readAll().count("\nMerged ") + (printed.peek(7) == "Merged " ? 1 : 0));
    const TwoComputers::Figures &f = computers.figures();
    std::printf("rounds %d, operations %d, conflicts %d, copies merged %d\n", f.rounds, f.operations,
                f.conflicts, merged);
    std::printf("lost %d, returned %d, unsettled %d (targets 0): %s\n", f.lost, f.returned, f.unsettled,
                f.lost + f.returned + f.unsettled == 0 ? "met" : "MISSED");
    for (const QString &fault : f.faults)
        std::printf("  %s\n", qPrintable(fault));
    return f.lost + f.returned + f.unsettled == 0 ? 0 : 1;
}
