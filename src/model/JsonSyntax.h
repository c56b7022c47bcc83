#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

// Checks that bytes are one JSON document, without building anything from
// them. The records are read straight from the text afterwards (JsonCursor),
// so a flaw anywhere fails the whole file before any record is looked at.
//
// What passes is what Qt's own JSON parser accepts, so that no file that
// loaded before stops loading: an array or object at the top, a leading
// UTF-8 byte order mark, strict UTF-8 in strings, raw control characters in
// strings, unknown escapes standing for the character itself, numbers such
// as "1." and ".5", finite doubles only, at most 1024 levels of nesting.
namespace JsonSyntax {

struct Error
{
    QString message;
    qsizetype offset = 0; // in bytes from the start
};

inline constexpr int maxDepth = 1024;

// The length of a leading UTF-8 byte order mark (0 or 3).
qsizetype byteOrderMarkLength(QByteArrayView json);

// Nothing when the document is well formed.
std::optional<Error> check(QByteArrayView json);

// 0 to 15 for a hexadecimal digit of either case, -1 for anything else.
int hexDigitValue(char c);

// The value of a number's text as the check accepts it; nothing when it is
// not a number or does not fit in a double. Zero is never negative, as in
// Qt, which keeps whole numbers as integers.
std::optional<double> numberValue(QByteArrayView text);

} // namespace JsonSyntax
