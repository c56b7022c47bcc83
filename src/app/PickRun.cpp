#include "PickRun.h"

#include "picking/TintwrightService.h"

#include <QTimer>

PickRun::PickRun(TintwrightService &service, PickFormat format, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_format(format)
{
}

void PickRun::start()
{
    if (m_service.isPicking()) {
        QTimer::singleShot(0, this, [this] { finish(Outcome::Busy, {}); });
        return;
    }
    connect(&m_service, &TintwrightService::pickedColorChanged, this, [this] { m_colorChanged = true; });
    connect(&m_service, &TintwrightService::pickUnavailable, this,
            [this](const QString &reason) { m_unavailableReason = reason; });
    connect(&m_service, &TintwrightService::pickFinished, this, [this] {
        const std::optional<ColorItem> color = m_service.pickedColor();
        if (m_colorChanged && color)
            finish(Outcome::Picked, PickFormats::text(*color, m_format));
        else if (!m_unavailableReason.isEmpty())
            finish(Outcome::Unavailable, m_unavailableReason);
        else
            finish(Outcome::Cancelled, {});
    });
    m_service.pickColor();
}

void PickRun::finish(Outcome outcome, const QString &detail)
{
    disconnect(&m_service, nullptr, this, nullptr);
    emit finished(outcome, detail);
    deleteLater();
}
