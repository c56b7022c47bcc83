#include "JsonSwatchFormat.h"

#include "ColorFormats.h"
#include "JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

// "#RRGGBB", "#RGB", with or without the "#"; nothing else.
std::optional<RgbColor> readHex(QString text)
{
    text = text.trimmed();
    if (text.startsWith(u'#'))
        text.remove(0, 1);
    if (text.size() != 3 && text.size() != 6)
        return std::nullopt;
    return parseCssHex(text);
}

} // namespace

namespace JsonSwatchFormat {

FileReadResult read(const QByteArray &data)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return FileReadResult::refused(
            u"it is not valid JSON (%1 at byte %2)"_s.arg(parseError.errorString()).arg(parseError.offset));
    if (!document.isArray())
        return FileReadResult::refused(u"it is not a JSON array of { \"name\", \"hex\" } entries"_s);
    FilePalette palette;
    const QJsonArray entries = document.array();
    for (const QJsonValue &entry : entries) {
        const std::optional<RgbColor> color = readHex(entry.toObject().value("hex"_L1).toString());
        if (!color) {
            ++palette.skippedUnreadable;
            continue;
        }
        const QString error = palette.addUnitColor(entry.toObject().value("name"_L1).toString(), color->red,
                                                   color->green, color->blue);
        if (!error.isEmpty())
            return FileReadResult::refused(error);
    }
    return {std::move(palette), {}};
}

QByteArray write(const FilePalette &palette)
{
    QJsonArray entries;
    for (const FileColor &color : palette.colors)
        entries.append(QJsonObject{{"name"_L1, color.name}, {"hex"_L1, color.hexText()}});
    return JsonText::write(entries).value_or(QByteArray()) + '\n';
}

} // namespace JsonSwatchFormat
