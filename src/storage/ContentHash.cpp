#include "ContentHash.h"

#include <QHashFunctions>

void ContentHash::add(const char *data, qsizetype size)
{
    m_length += size;
    if (!m_partial.isEmpty()) {
        const qsizetype taken = qMin(size, blockSize - m_partial.size());
        m_partial.append(data, taken);
        data += taken;
        size -= taken;
        if (m_partial.size() < blockSize)
            return;
        m_state = qHashBits(m_partial.constData(), size_t(blockSize), m_state);
        m_partial.resize(0); // keeps its capacity for the next block
    }
    // Whole blocks straight from the caller's memory, without a copy.
    for (; size >= blockSize; data += blockSize, size -= blockSize)
        m_state = qHashBits(data, size_t(blockSize), m_state);
    if (size > 0) {
        m_partial.reserve(blockSize);
        m_partial.append(data, size);
    }
}

quint64 ContentHash::result() const
{
    return qHashBits(m_partial.constData(), size_t(m_partial.size()), m_state ^ size_t(m_length));
}

quint64 ContentHash::of(const QByteArray &bytes)
{
    ContentHash hash;
    hash.add(bytes.constData(), bytes.size());
    return hash.result();
}
