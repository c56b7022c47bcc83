#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <optional>

// JSON as the program writes its files: pretty-printed with two spaces an
// indent and `"key" : value`, the keys of a record in its field order (they
// read best so to someone editing the file by hand; a QJsonObject keeps them
// sorted), numbers as the shortest text that reads back the same double.
// NaN and the infinities have no JSON form: a value holding one is refused
// rather than written as null, which would make the file unreadable.
namespace JsonText {

std::optional<QByteArray> write(const QJsonValue &value, QString *error = nullptr);

} // namespace JsonText
