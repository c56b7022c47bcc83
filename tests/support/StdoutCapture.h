#pragma once

#include <QByteArray>
#include <QTemporaryFile>

// Redirects the process's standard output into a temporary file for the
// lifetime of the object, so tests can check the exact lines printed.
class StdoutCapture
{
public:
    StdoutCapture();
    ~StdoutCapture();

    // Everything printed since construction.
    QByteArray text();

private:
    QTemporaryFile m_file;
    int m_savedStdout = -1;
};
