#pragma once

#include <QRandomGenerator>
#include <QStringList>

// A user with a laptop and a desktop, both running the stores on a data
// folder of their own, kept in step by a sync tool in miniature (a thread of
// its own) that behaves as Syncthing does: a change on one side reaches the
// other after a random delay, through a temporary file renamed into place,
// with the sender's time; when both sides changed since they last agreed,
// the newer version wins on both and the other is written beside it, on
// both, as "<name>.sync-conflict-<date>-<time>-<device>.json". The tool
// itself never loses a version: one that lands while it replaces a file is
// kept as a conflict copy too.
//
// Each round runs random user operations on either computer, on fresh
// folders, waits until the folders settle, and holds the result against a
// ledger of what each side did.
class TwoComputers
{
public:
    struct Figures
    {
        int rounds = 0;
        int operations = 0;
        int conflicts = 0;
        int lost = 0;      // created or added, never deleted or removed, and gone
        int returned = 0;  // deleted, removed or cleared, and back without an edit that brings it back
        int unsettled = 0; // rounds whose folders did not come to agree
        QStringList faults;
    };

    TwoComputers(quint32 seed, int minSyncMs, int maxSyncMs);

    // Each side changes only the palettes it made, and clears a history
    // only of its own picks: the rounds where what one side deleted never
    // comes back. (Where one side deletes what the other changed or made
    // just before, it cannot always tell "deleted there" from "not seen
    // there yet", and then keeps it.)
    void setOwnRecordsOnly(bool only) { m_ownRecordsOnly = only; }

    // The sync tool pushes only between operations, at random, and each
    // step is seen through before the next: the same seed, the same run.
    // (Else it runs beside the operations with its own delays, and may
    // land in the middle of a save.)
    void setStepwise(bool stepwise) { m_stepwise = stepwise; }

    // Stepwise, `maxPauseMs` is not used, and `minSyncMs` is how long the
    // stores are given to see a step through.
    void round(int operations, int maxPauseMs);
    const Figures &figures() const { return m_figures; }

private:
    QRandomGenerator m_random;
    int m_minSyncMs;
    int m_maxSyncMs;
    bool m_ownRecordsOnly = false;
    bool m_stepwise = false;
    Figures m_figures;
};
