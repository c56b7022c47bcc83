#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

// Either file-backed store, seen through what the hostile-file tests need.
class HostileStore
{
public:
    enum class Kind { History, Palettes };

    static QString name(Kind kind)
    {
        return kind == Kind::History ? QStringLiteral("history") : QStringLiteral("palettes");
    }
    static QString fileName(Kind kind) { return name(kind) + QStringLiteral(".json"); }
    static QByteArray loadMessage(Kind kind) { return "Failed to load " + name(kind).toUtf8() + ": "; }
    static QByteArray saveMessage(Kind kind) { return "Failed to save " + name(kind).toUtf8() + ": "; }

    // A well-formed file of `count` records (palettes with one color each).
    // Components are 0.25, 0.5, 0.75 and 1, so they can be swapped out as text.
    static QByteArray validFile(Kind kind, int count);

    HostileStore(Kind kind, const QString &folder);
    ~HostileStore();

    // Colors in the history, or palettes.
    qsizetype count() const;
    // Adds one color to the history, or creates a palette; saves.
    void addOne();

private:
    struct Stores;
    Kind m_kind;
    std::unique_ptr<Stores> m_stores;
    int m_added = 0;
};
