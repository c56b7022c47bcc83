#pragma once

#include <QByteArrayView>
#include <QLatin1StringView>
#include <QString>

#include <optional>

// Reads values straight from JSON text that JsonSyntax::check() accepted,
// without building a document: the records of a large library decode in
// one pass over the bytes. Every read stays inside the text, but on text
// that did not pass the check the values read are meaningless.
class JsonCursor
{
public:
    enum class Kind { Object, Array, String, Number, Bool, Null };

    explicit JsonCursor(QByteArrayView checkedJson);

    // The kind of the value at the cursor.
    Kind kind();
    qsizetype offset() const { return m_p - m_begin; }
    void seek(qsizetype offset) { m_p = m_begin + offset; }

    // Steps into the array or object at the cursor.
    void enter();
    // Inside an array: true with the cursor on the next element, false
    // (past the closing bracket) when there is none.
    bool nextElement();
    // Inside an object: true with the cursor on the next member's value,
    // false (past the closing brace) when there is none. keyIs() then
    // compares that member's key.
    bool nextMember();
    bool keyIs(QLatin1StringView key) const;

    // The string at the cursor, and past it.
    QString string();
    // The string's bytes as they stand in the text, when it holds no
    // escapes; the cursor stays on it. Nothing otherwise.
    std::optional<QByteArrayView> plainString();
    // The number at the cursor, and past it.
    double number();
    // Past the value at the cursor, whatever it is.
    void skip();

private:
    void skipSpace();
    bool nextItem(char closing);
    const char *stringEnd(const char *quote, bool *escaped) const;

    const char *m_begin;
    const char *m_p;
    const char *m_end;
    QByteArrayView m_key;
    bool m_keyEscaped = false;
};
