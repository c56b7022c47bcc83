#include "StdoutCapture.h"

#include <cstdio>
#include <unistd.h>

StdoutCapture::StdoutCapture()
{
    if (!m_file.open())
        return;
    std::fflush(stdout);
    m_savedStdout = ::dup(STDOUT_FILENO);
    ::dup2(m_file.handle(), STDOUT_FILENO);
}

StdoutCapture::~StdoutCapture()
{
    if (m_savedStdout < 0)
        return;
    std::fflush(stdout);
    ::dup2(m_savedStdout, STDOUT_FILENO);
    ::close(m_savedStdout);
}

QByteArray StdoutCapture::text()
{
    std::fflush(stdout);
    QFile reader(m_file.fileName());
    if (!reader.open(QIODevice::ReadOnly))
        return {};
    return reader.readAll();
}
