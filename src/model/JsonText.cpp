#include "JsonText.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

// Record fields in the order they are written; other keys follow, sorted.
constexpr const char *fieldOrder[] = {"id",    "name",      "red",    "green",       "blue",
                                      "alpha", "dateAdded", "colors", "dateCreated", "hex"};

int rank(const QString &key)
{
    const auto found = std::find_if(std::begin(fieldOrder), std::end(fieldOrder),
                                    [&key](const char *field) { return key == QLatin1String(field); });
    return int(found - std::begin(fieldOrder));
}

void writeString(QByteArray &out, const QString &text)
{
    out += '"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c >= 0x20 && c < 0x80 && c != '"' && c != '\\') {
            out += char(c);
            continue;
        }
        static constexpr std::pair<char16_t, char> escapes[] = {
            {'"', '"'}, {'\\', '\\'}, {'\b', 'b'}, {'\f', 'f'}, {'\n', 'n'}, {'\r', 'r'}, {'\t', 't'}};
        const auto escape = std::find_if(std::begin(escapes), std::end(escapes),
                                         [c](const auto &pair) { return pair.first == c; });
        if (escape != std::end(escapes)) {
            out += '\\';
            out += escape->second;
        } else if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            out += QStringView(text).sliced(i++, 2).toUtf8();
        } else if (c < 0x20 || QChar::isSurrogate(c) || c == 0xFEFF) {
            // Control characters; lone surrogates, which UTF-8 cannot carry;
            // and U+FEFF, which Qt's reader drops from the start of a string
            // when it comes as raw UTF-8 (a byte order mark).
            out += "\\u" + QByteArray::number(c, 16).rightJustified(4, '0');
        } else {
            out += QStringView(text).sliced(i, 1).toUtf8();
        }
    }
    out += '"';
}

bool writeValue(QByteArray &out, const QJsonValue &value, int depth)
{
    const auto newLine = [&out](int level) {
        out += '\n';
        out.append(2 * level, ' ');
    };
    switch (value.type()) {
    case QJsonValue::Array: {
        const QJsonArray array = value.toArray();
        out += '[';
        for (qsizetype i = 0; i < array.size(); ++i) {
            out += i ? "," : "";
            newLine(depth + 1);
            if (!writeValue(out, array[i], depth + 1))
                return false;
        }
        if (!array.isEmpty())
            newLine(depth);
        out += ']';
        return true;
    }
    case QJsonValue::Object: {
        const QJsonObject object = value.toObject();
        bool first = true;
        const auto member = [&](const QString &key, const QJsonValue &member) {
            out += first ? "" : ",";
            first = false;
            newLine(depth + 1);
            writeString(out, key);
            out += " : ";
            return writeValue(out, member, depth + 1);
        };
        out += '{';
        for (const char *field : fieldOrder) {
            const auto found = object.constFind(QLatin1StringView(field));
            if (found != object.constEnd() && !member(found.key(), found.value()))
                return false;
        }
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            if (rank(it.key()) == int(std::size(fieldOrder)) && !member(it.key(), it.value()))
                return false;
        }
        if (!first)
            newLine(depth);
        out += '}';
        return true;
    }
    case QJsonValue::Double: {
        const double number = value.toDouble();
        if (!std::isfinite(number))
            return false;
        char digits[32];
        out.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr - digits);
        return true;
    }
    case QJsonValue::String:
        writeString(out, value.toString());
        return true;
    case QJsonValue::Bool:
        out += value.toBool() ? "true" : "false";
        return true;
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        out += "null";
        return true;
    }
    return true;
}

} // namespace

namespace JsonText {

std::optional<QByteArray> write(const QJsonValue &value, QString *error)
{
    QByteArray out;
    if (writeValue(out, value, 0))
        return out;
    if (error)
        *error = QStringLiteral("Unable to encode a color component that is not a finite number");
    return std::nullopt;
}

} // namespace JsonText
