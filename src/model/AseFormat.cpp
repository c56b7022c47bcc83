#include "AseFormat.h"

#include "ColorFormats.h"

#include <QtEndian>

#include <bit>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint16 groupStart = 0xC001;
constexpr quint16 groupEnd = 0xC002;
constexpr quint16 colorEntry = 0x0001;
constexpr quint16 globalColor = 0;
constexpr qsizetype headerSize = 12;
constexpr qsizetype blockHeaderSize = 6;

// Big-endian fields from a range of bytes; every read is checked against
// the end of the range.
class BlockReader
{
public:
    BlockReader(const char *begin, qsizetype size)
        : m_data(reinterpret_cast<const uchar *>(begin))
        , m_size(size)
    {
    }

    qsizetype remaining() const { return m_size - m_at; }
    bool u16(quint16 &value) { return take(2) && (value = qFromBigEndian<quint16>(m_data + m_at - 2), true); }
    bool u32(quint32 &value) { return take(4) && (value = qFromBigEndian<quint32>(m_data + m_at - 4), true); }
    bool f32(float &value)
    {
        quint32 bits = 0;
        if (!u32(bits))
            return false;
        value = std::bit_cast<float>(bits);
        return true;
    }
    bool bytes(qsizetype count, const uchar *&start)
    {
        start = m_data + m_at;
        return take(count);
    }
    // A name: its length in UTF-16 units (terminating zero included),
    // then the units. The zero, and any further zeros before it, go.
    bool name(QString &text)
    {
        quint16 units = 0;
        const uchar *start = nullptr;
        if (!u16(units) || !bytes(qsizetype(units) * 2, start))
            return false;
        text.resize(units);
        for (quint16 i = 0; i < units; ++i)
            text[i] = QChar(qFromBigEndian<quint16>(start + 2 * i));
        while (!text.isEmpty() && text.back() == QChar(0))
            text.chop(1);
        return true;
    }

private:
    bool take(qsizetype count)
    {
        if (count > remaining())
            return false;
        m_at += count;
        return true;
    }

    const uchar *m_data;
    qsizetype m_size;
    qsizetype m_at = 0;
};

// Reads one color block into the palette; false when the block is too
// short for what it says it holds.
bool readColor(BlockReader block, ExchangePalette &palette, QString &error)
{
    QString name;
    const uchar *model = nullptr;
    if (!block.name(name) || !block.bytes(4, model))
        return false;
    const QByteArray modelName(reinterpret_cast<const char *>(model), 4);
    int valueCount = 0;
    if (modelName == "RGB ")
        valueCount = 3;
    else if (modelName == "CMYK")
        valueCount = 4;
    else if (modelName == "Gray")
        valueCount = 1;
    else if (modelName == "LAB ")
        valueCount = 3;
    float v[4] = {};
    for (int i = 0; i < valueCount; ++i) {
        if (!block.f32(v[i]))
            return false;
    }
    // The color type (global, spot, normal) that follows changes nothing
    // here, and some writers leave it out.
    if (modelName == "RGB ") {
        error = palette.addUnitColor(name, v[0], v[1], v[2]);
    } else if (modelName == "Gray") {
        error = palette.addUnitColor(name, v[0], v[0], v[0]);
    } else if (modelName == "CMYK") {
        const RgbColor rgb = cmykToRGB(v[0] * 100.0, v[1] * 100.0, v[2] * 100.0, v[3] * 100.0);
        error = palette.addUnitColor(name, rgb.red, rgb.green, rgb.blue);
    } else if (modelName == "LAB ") {
        ++palette.skippedLab;
    } else {
        ++palette.skippedUnreadable;
    }
    return true;
}

void putU16(QByteArray &out, quint16 value)
{
    out.append(char(value >> 8)).append(char(value & 0xFF));
}

void putU32(QByteArray &out, quint32 value)
{
    putU16(out, quint16(value >> 16));
    putU16(out, quint16(value & 0xFFFF));
}

// The name's bytes, length first, with the terminating zero.
QByteArray encodedName(const QString &name)
{
    const QString text = name.left(0xFFFE);
    QByteArray out;
    putU16(out, quint16(text.size() + 1));
    for (const QChar c : text)
        putU16(out, c.unicode());
    putU16(out, 0);
    return out;
}

void putBlock(QByteArray &out, quint16 type, const QByteArray &data)
{
    putU16(out, type);
    putU32(out, quint32(data.size()));
    out.append(data);
}

} // namespace

namespace AseFormat {

ExchangeResult read(const QByteArray &data)
{
    if (!data.startsWith("ASEF"))
        return ExchangeResult::refused(
            u"it is not an Adobe Swatch Exchange file (it does not start with \"ASEF\")"_s);
    BlockReader file(data.constData(), data.size());
    const uchar *magic = nullptr;
    quint16 major = 0;
    quint16 minor = 0;
    quint32 blockCount = 0;
    if (!file.bytes(4, magic) || !file.u16(major) || !file.u16(minor) || !file.u32(blockCount))
        return ExchangeResult::refused(u"the file is truncated"_s);
    if (major != 1)
        return ExchangeResult::refused(u"ASE version %1.%2 is not supported"_s.arg(major).arg(minor));
    // Every block takes at least its six header bytes.
    if (blockCount > quint64(file.remaining() / blockHeaderSize))
        return ExchangeResult::refused(
            u"it claims %1 blocks in a file of %2 bytes"_s.arg(blockCount).arg(data.size()));

    ExchangePalette palette;
    bool named = false;
    for (quint32 n = 0; n < blockCount; ++n) {
        quint16 type = 0;
        quint32 length = 0;
        const uchar *start = nullptr;
        if (!file.u16(type) || !file.u32(length) || !file.bytes(length, start))
            return ExchangeResult::refused(
                u"the file is truncated (block %1 of %2 runs past its end)"_s.arg(n + 1).arg(blockCount));
        const BlockReader block(reinterpret_cast<const char *>(start), length);
        QString error;
        if (type == colorEntry) {
            if (!readColor(block, palette, error))
                return ExchangeResult::refused(u"color block %1 is damaged"_s.arg(n + 1));
        } else if (type == groupStart && !named) {
            // The first group names the palette; later ones are flattened.
            QString name;
            if (BlockReader(block).name(name))
                error = palette.setName(name);
            named = true;
        }
        if (!error.isEmpty())
            return ExchangeResult::refused(error);
    }
    return {std::move(palette), {}};
}

QByteArray write(const ExchangePalette &palette)
{
    QByteArray out("ASEF");
    putU16(out, 1);
    putU16(out, 0);
    putU32(out, quint32(palette.colors.size() + 2));
    putBlock(out, groupStart, encodedName(palette.name));
    for (const ExchangeColor &color : palette.colors) {
        QByteArray entry = encodedName(color.name) + "RGB ";
        for (const quint8 component : {color.red, color.green, color.blue})
            putU32(entry, std::bit_cast<quint32>(float(component / 255.0)));
        putU16(entry, globalColor);
        putBlock(out, colorEntry, entry);
    }
    putBlock(out, groupEnd, {});
    return out;
}

} // namespace AseFormat
