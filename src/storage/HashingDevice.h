#pragma once

#include "storage/ContentHash.h"

#include <QIODevice>

// Passes what is written on to another device, unbuffered, and hashes what
// that device took: a save learns the hash of the file it wrote without
// reading it back.
class HashingDevice : public QIODevice
{
public:
    explicit HashingDevice(QIODevice &target);

    quint64 hash() const { return m_hash.result(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    QIODevice &m_target;
    ContentHash m_hash;
};
