#pragma once

#include <QByteArray>
#include <QtGlobal>

// A 64-bit hash of a file's bytes, fed in pieces of any size: the same bytes
// give the same hash however they were cut. It tells this program's own
// saves from another program's changes, so it need not resist an attacker,
// only be fast: a library of several megabytes is hashed before every save.
class ContentHash
{
public:
    void add(const char *data, qsizetype size);
    // The hash of everything added so far.
    quint64 result() const;

    static quint64 of(const QByteArray &bytes);

private:
    // Hashed a block at a time, each block seeding the next, so that the
    // result does not depend on where the pieces were cut.
    static constexpr qsizetype blockSize = 64 * 1024;

    size_t m_state = 0x9e3779b97f4a7c15u;
    qint64 m_length = 0;
    QByteArray m_partial; // the start of the block not yet hashed
};
