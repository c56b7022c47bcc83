#include "HashingDevice.h"

HashingDevice::HashingDevice(QIODevice &target)
    : m_target(target)
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 HashingDevice::readData(char *, qint64)
{
    return -1;
}

qint64 HashingDevice::writeData(const char *data, qint64 size)
{
    const qint64 written = m_target.write(data, size);
    if (written > 0)
        m_hash.add(data, written);
    return written;
}
