#include "AseFormat.h"

#include "ColorFormats.h"

#include <QDataStream>
#include <QIODevice>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr quint16 groupStart = 0xC001;
constexpr quint16 groupEnd = 0xC002;
constexpr quint16 colorEntry = 0x0001;
constexpr quint16 globalColor = 0;
constexpr qsizetype blockHeaderSize = 6;

// Big-endian, floats in single precision, as the format has them.
void prepare(QDataStream &stream)
{
    stream.setByteOrder(QDataStream::BigEndian);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

// A name: its length in UTF-16 units (terminating zero included), then
// the units. The zero, and any further zeros before it, go.
QString readName(QDataStream &in)
{
    quint16 units = 0;
    in >> units;
    QString text;
    for (quint16 i = 0; i < units && in.status() == QDataStream::Ok; ++i) {
        quint16 unit = 0;
        in >> unit;
        text.append(QChar(unit));
    }
    while (!text.isEmpty() && text.back() == QChar(0))
        text.chop(1);
    return text;
}

// Reads one color block into the palette; false when the block is too
// short for what it says it holds.
bool readColor(const QByteArray &block, FilePalette &palette, QString &error)
{
    QDataStream in(block);
    prepare(in);
    const QString name = readName(in);
    QByteArray model(4, '\0');
    in.readRawData(model.data(), 4);
    const int valueCount = model == "CMYK"   ? 4
        : model == "Gray"                    ? 1
        : model == "RGB " || model == "LAB " ? 3
                                             : 0;
    float v[4] = {};
    for (int i = 0; i < valueCount; ++i)
        in >> v[i];
    // The color type (global, spot, normal) that follows changes nothing
    // here, and some writers leave it out.
    if (in.status() != QDataStream::Ok)
        return false;
    if (model == "RGB ") {
        error = palette.addUnitColor(name, v[0], v[1], v[2]);
    } else if (model == "Gray") {
        error = palette.addUnitColor(name, v[0], v[0], v[0]);
    } else if (model == "CMYK") {
        const RgbColor rgb = cmykToRGB(v[0] * 100.0, v[1] * 100.0, v[2] * 100.0, v[3] * 100.0);
        error = palette.addUnitColor(name, rgb.red, rgb.green, rgb.blue);
    } else if (model == "LAB ") {
        ++palette.skippedLab;
    } else {
        ++palette.skippedUnreadable;
    }
    return true;
}

// The name's bytes, length first, with the terminating zero.
void writeName(QDataStream &out, const QString &name)
{
    const QString text = name.left(0xFFFE);
    out << quint16(text.size() + 1);
    for (const QChar c : text)
        out << quint16(c.unicode());
    out << quint16(0);
}

void writeBlock(QDataStream &out, quint16 type, const QByteArray &data)
{
    out << type << quint32(data.size());
    out.writeRawData(data.constData(), int(data.size()));
}

} // namespace

namespace AseFormat {

FileReadResult read(const QByteArray &data)
{
    if (!data.startsWith("ASEF"))
        return FileReadResult::refused(
            u"it is not an Adobe Swatch Exchange file (it does not start with \"ASEF\")"_s);
    QDataStream in(data);
    prepare(in);
    in.skipRawData(4);
    quint16 major = 0;
    quint16 minor = 0;
    quint32 blockCount = 0;
    in >> major >> minor >> blockCount;
    if (in.status() != QDataStream::Ok)
        return FileReadResult::refused(u"the file is truncated"_s);
    if (major != 1)
        return FileReadResult::refused(u"ASE version %1.%2 is not supported"_s.arg(major).arg(minor));
    // Every block takes at least its six header bytes.
    if (blockCount > quint64(in.device()->bytesAvailable() / blockHeaderSize))
        return FileReadResult::refused(
            u"it claims %1 blocks in a file of %2 bytes"_s.arg(blockCount).arg(data.size()));

    FilePalette palette;
    bool named = false;
    for (quint32 n = 0; n < blockCount; ++n) {
        quint16 type = 0;
        quint32 length = 0;
        in >> type >> length;
        if (in.status() != QDataStream::Ok || length > in.device()->bytesAvailable())
            return FileReadResult::refused(
                u"the file is truncated (block %1 of %2 runs past its end)"_s.arg(n + 1).arg(blockCount));
        QByteArray block(length, Qt::Uninitialized);
        in.readRawData(block.data(), int(length));
        QString error;
        if (type == colorEntry) {
            if (!readColor(block, palette, error))
                return FileReadResult::refused(u"color block %1 is damaged"_s.arg(n + 1));
        } else if (type == groupStart && !named) {
            // The first group names the palette; later ones are flattened.
            QDataStream group(block);
            prepare(group);
            const QString name = readName(group);
            if (group.status() == QDataStream::Ok)
                error = palette.setName(name);
            named = true;
        }
        if (!error.isEmpty())
            return FileReadResult::refused(error);
    }
    return {std::move(palette), {}};
}

QByteArray write(const FilePalette &palette)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    prepare(out);
    out.writeRawData("ASEF", 4);
    out << quint16(1) << quint16(0) << quint32(palette.colors.size() + 2);
    const auto block = [](const auto &fill) {
        QByteArray data;
        QDataStream blockOut(&data, QIODevice::WriteOnly);
        prepare(blockOut);
        fill(blockOut);
        return data;
    };
    writeBlock(out, groupStart, block([&](QDataStream &b) { writeName(b, palette.name); }));
    for (const FileColor &color : palette.colors) {
        writeBlock(out, colorEntry, block([&](QDataStream &b) {
                       writeName(b, color.name);
                       b.writeRawData("RGB ", 4);
                       for (const quint8 component : {color.red, color.green, color.blue})
                           b << float(component / 255.0);
                       b << globalColor;
                   }));
    }
    writeBlock(out, groupEnd, {});
    return bytes;
}

} // namespace AseFormat
