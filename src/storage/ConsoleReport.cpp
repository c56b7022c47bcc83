#include "ConsoleReport.h"

#include <cstdio>

void printReportLine(const QString &line)
{
    QString singleLine = line;
    singleLine.replace(u'\n', u' ');
    const QByteArray bytes = singleLine.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
    std::fflush(stdout);
}
