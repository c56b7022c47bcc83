#include "GplFormat.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

QString headerValue(QStringView line, QLatin1StringView key)
{
    return line.sliced(key.size()).trimmed().toString();
}

// "R G B name", or with "Channels: RGBA" "R G B A name": whole numbers
// apart from each other and from the name by blanks or tabs ("12x" is no
// number).
const QRegularExpression &colorLine(int channels)
{
    static const auto pattern = [](int count) {
        return QRegularExpression(u"^[ \\t\\v\\f]*([+-]?\\d+)"_s
                                  + u"[ \\t\\v\\f]+([+-]?\\d+)"_s.repeated(count - 1)
                                  + u"(?=[ \\t\\v\\f]|$)(.*)$"_s);
    };
    static const QRegularExpression rgb = pattern(3), rgba = pattern(4);
    return channels == 4 ? rgba : rgb;
}

// A component as written; numbers too large for one read as "very large",
// clamped by the palette.
qint64 component(const QString &digits)
{
    bool ok = false;
    const qint64 value = digits.toLongLong(&ok);
    return ok ? value : (digits.startsWith(u'-') ? -1 : 256);
}

QString oneLine(QString text)
{
    text.replace(u'\r', u' ');
    text.replace(u'\n', u' ');
    return text;
}

} // namespace

namespace GplFormat {

FileReadResult read(const QByteArray &data)
{
    QString text = QString::fromUtf8(data);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    static const QRegularExpression lineBreak(u"\r\n|\r|\n"_s);
    static const QRegularExpression blankOrComment(u"^[ \t\v\f]*(#|$)"_s);
    const QStringList lines = text.split(lineBreak);
    if (!lines.first().startsWith("GIMP Palette"_L1))
        return FileReadResult::refused(
            u"it is not a GIMP palette (the first line is not \"GIMP Palette\")"_s);

    FilePalette palette;
    int channels = 3;
    for (qsizetype n = 1; n < lines.size(); ++n) {
        const QString &line = lines[n];
        QString error;
        if (line.startsWith("Name:"_L1)) {
            error = palette.setName(headerValue(line, "Name:"_L1));
        } else if (line.startsWith("Channels:"_L1)) {
            channels = headerValue(line, "Channels:"_L1) == "RGBA"_L1 ? 4 : 3;
        } else if (line.startsWith("Columns:"_L1)) {
            continue;
        } else if (!blankOrComment.match(line).hasMatch()) {
            const QRegularExpressionMatch color = colorLine(channels).match(line);
            if (!color.hasMatch()) {
                ++palette.skippedUnreadable;
                continue;
            }
            error = palette.addColor(color.captured(channels + 1).trimmed(), component(color.captured(1)),
                                     component(color.captured(2)), component(color.captured(3)));
        }
        if (!error.isEmpty())
            return FileReadResult::refused(error);
    }
    return {std::move(palette), {}};
}

QByteArray write(const FilePalette &palette)
{
    QByteArray out = "GIMP Palette\nName: " + oneLine(palette.name).toUtf8() + '\n';
    // GIMP's grid: a row of up to 16 swatches.
    out += "Columns: " + QByteArray::number(qBound(1, int(palette.colors.size()), 16)) + "\n#\n";
    for (const FileColor &color : palette.colors) {
        out += QStringLiteral("%1 %2 %3\t")
                   .arg(int(color.red), 3)
                   .arg(int(color.green), 3)
                   .arg(int(color.blue), 3)
                   .toLatin1();
        out += oneLine(color.name).toUtf8() + '\n';
    }
    return out;
}

} // namespace GplFormat
