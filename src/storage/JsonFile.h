#pragma once

#include <QByteArray>
#include <QString>

// One data file, read whole and written whole. Writes are atomic (temporary
// file, then rename), and a file that could not be used is first kept aside
// as "<name>.corrupt-<UTC time>" so that the next write destroys nothing.
class JsonFile
{
public:
    explicit JsonFile(const QString &path);

    QString path() const { return m_path; }

    enum class ReadStatus { Missing, Read, Failed };
    struct ReadResult
    {
        ReadStatus status = ReadStatus::Missing;
        QByteArray data;
        QString error;
    };
    ReadResult read() const;

    // Keeps the current file aside before it is treated as empty. If it can
    // be neither copied nor moved, later writes are refused instead.
    void keepUnusableFile();

    // Returns an empty text on success, the error's description otherwise.
    QString write(const QByteArray &data);

private:
    QString m_path;
    bool m_writesRefused = false;
};
