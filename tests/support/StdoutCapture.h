#pragma once

#include <QByteArray>
#include <QTemporaryFile>

#include <cstdio>
#include <unistd.h>

// Redirects the process's standard output into a temporary file for the
// lifetime of the object, so tests can check the exact lines printed.
class StdoutCapture
{
public:
    StdoutCapture()
    {
        if (!m_file.open())
            return;
        std::fflush(stdout);
        m_savedStdout = ::dup(STDOUT_FILENO);
        ::dup2(m_file.handle(), STDOUT_FILENO);
    }
    ~StdoutCapture()
    {
        if (m_savedStdout < 0)
            return;
        std::fflush(stdout);
        ::dup2(m_savedStdout, STDOUT_FILENO);
        ::close(m_savedStdout);
    }

    // Everything printed since construction.
    QByteArray text()
    {
        std::fflush(stdout);
        QFile reader(m_file.fileName());
        return reader.open(QIODevice::ReadOnly) ? reader.readAll() : QByteArray();
    }

private:
    QTemporaryFile m_file;
    int m_savedStdout = -1;
};
