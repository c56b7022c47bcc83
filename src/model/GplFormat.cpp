#include "GplFormat.h"

#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\v' || c == u'\f';
}

qsizetype skipBlanks(QStringView line, qsizetype at)
{
    while (at < line.size() && isBlank(line[at]))
        ++at;
    return at;
}

// A whole number with an optional sign; values too large for a component
// read as "very large" and are clamped by the caller.
std::optional<qint64> readNumber(QStringView line, qsizetype &at)
{
    qsizetype i = at;
    bool negative = false;
    if (i < line.size() && (line[i] == u'-' || line[i] == u'+'))
        negative = line[i++] == u'-';
    const qsizetype digitsStart = i;
    qint64 value = 0;
    while (i < line.size() && line[i] >= u'0' && line[i] <= u'9') {
        value = qMin<qint64>(value * 10 + (line[i].unicode() - u'0'), 1'000'000);
        ++i;
    }
    if (i == digitsStart)
        return std::nullopt;
    at = i;
    return negative ? -value : value;
}

QString headerValue(QStringView line, QLatin1StringView key)
{
    return line.sliced(key.size()).trimmed().toString();
}

// One line per entry, whatever the platform ended it with.
QList<QStringView> splitLines(QStringView text)
{
    QList<QStringView> lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\n' && text[i] != u'\r')
            continue;
        lines.append(text.sliced(start, i - start));
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    lines.append(text.sliced(start));
    return lines;
}

QString oneLine(QString text)
{
    text.replace(u'\r', u' ');
    text.replace(u'\n', u' ');
    return text;
}

} // namespace

namespace GplFormat {

ExchangeResult read(const QByteArray &data)
{
    QString text = QString::fromUtf8(data);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    const QList<QStringView> lines = splitLines(text);
    if (!lines.first().startsWith("GIMP Palette"_L1))
        return ExchangeResult::refused(
            u"it is not a GIMP palette (the first line is not \"GIMP Palette\")"_s);

    ExchangePalette palette;
    int channels = 3;
    for (qsizetype n = 1; n < lines.size(); ++n) {
        const QStringView line = lines[n];
        QString error;
        if (line.startsWith("Name:"_L1)) {
            error = palette.setName(headerValue(line, "Name:"_L1));
        } else if (line.startsWith("Channels:"_L1)) {
            channels = headerValue(line, "Channels:"_L1) == "RGBA"_L1 ? 4 : 3;
        } else if (line.startsWith("Columns:"_L1)) {
            continue;
        } else {
            qsizetype at = skipBlanks(line, 0);
            if (at == line.size() || line[at] == u'#')
                continue;
            qint64 values[4] = {};
            bool readable = true;
            for (int i = 0; i < channels && readable; ++i) {
                at = skipBlanks(line, at);
                const std::optional<qint64> value = readNumber(line, at);
                // The next field must stand apart: "12x" is no number.
                readable = value && (at == line.size() || isBlank(line[at]));
                values[i] = value.value_or(0);
            }
            if (!readable) {
                ++palette.skippedUnreadable;
                continue;
            }
            error = palette.addColor(line.sliced(at).trimmed().toString(), values[0], values[1], values[2]);
        }
        if (!error.isEmpty())
            return ExchangeResult::refused(error);
    }
    return {std::move(palette), {}};
}

QByteArray write(const ExchangePalette &palette)
{
    QByteArray out = "GIMP Palette\nName: " + oneLine(palette.name).toUtf8() + '\n';
    // GIMP's grid: a row of up to 16 swatches.
    out += "Columns: " + QByteArray::number(qBound(1, int(palette.colors.size()), 16)) + "\n#\n";
    for (const ExchangeColor &color : palette.colors) {
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
