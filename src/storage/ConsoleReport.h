#pragma once

#include <QString>

// Failures are never shown in the window: they go to standard output as one
// line each, flushed at once so that a crash right after loses nothing.
void printReportLine(const QString &line);
