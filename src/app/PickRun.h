#pragma once

#include "app/PickFormat.h"

#include <QObject>
#include <QString>

class TintwrightService;

// One pick asked for from outside the window (the command line, the global
// shortcut), run through the service as the "Pick Color" button runs it;
// the service's own rules (the history) apply unchanged. Reports once, then
// deletes itself.
class PickRun : public QObject
{
    Q_OBJECT

public:
    enum class Outcome { Picked, Cancelled, Unavailable, Busy };
    Q_ENUM(Outcome)

    PickRun(TintwrightService &service, PickFormat format, QObject *parent = nullptr);

    // A pick already running is not interrupted: the run reports Busy.
    void start();

signals:
    // detail: the color's text when picked, the reason when unavailable.
    void finished(PickRun::Outcome outcome, const QString &detail);

private:
    void finish(Outcome outcome, const QString &detail);

    TintwrightService &m_service;
    PickFormat m_format;
    bool m_colorChanged = false;
    QString m_unavailableReason;
};
