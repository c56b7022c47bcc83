#include "TintwrightService.h"

#include "picking/LoupeColorSampler.h"
#include "picking/PortalAvailability.h"
#include "picking/PortalColorSampler.h"

#include <cstdio>

TintwrightService::TintwrightService(QObject *parent)
    : TintwrightService([] { return QDBusConnection::sessionBus(); }, parent)
{
}

TintwrightService::TintwrightService(std::function<QDBusConnection()> connectToBus, QObject *parent)
    : QObject(parent)
    , m_pickedColor(ColorItem::create(QStringLiteral("White"), 1.0, 1.0, 1.0, 1.0))
    , m_portal(new PortalAvailability(std::move(connectToBus), this))
{
}

void TintwrightService::setSamplerFactory(SamplerFactory factory)
{
    m_samplerFactory = std::move(factory);
}

void TintwrightService::pickColor()
{
    m_unavailableReason.clear();
    setIsPicking(true);
    if (m_samplerFactory) {
        run(m_samplerFactory(this), {});
        return;
    }
    // Asked as the service was made; a click that comes before the answer
    // waits for it, never for a call to the portal to time out.
    if (m_portal->answer() == PortalAvailability::Answer::Unknown) {
        connect(m_portal, &PortalAvailability::answered, this, &TintwrightService::startFirstSampler,
                Qt::SingleShotConnection);
        return;
    }
    startFirstSampler();
}

void TintwrightService::startFirstSampler()
{
    if (m_portal->answer() == PortalAvailability::Answer::Present)
        run(new PortalColorSampler(m_portal->bus(), this), {});
    else
        run(new LoupeColorSampler(this), {QStringLiteral("no desktop portal on the session bus")});
}

void TintwrightService::run(ColorSampler *sampler, const QStringList &earlierFailures)
{
    // A sampler reports once; anything it emits later is ignored.
    auto release = [this, sampler] {
        sampler->disconnect(this);
        sampler->deleteLater();
    };
    connect(sampler, &ColorSampler::colorSampled, this, [this, release](const SampledColor &color) {
        release();
        finishPick(color);
    });
    connect(sampler, &ColorSampler::cancelled, this, [this, release] {
        release();
        finishPick(std::nullopt);
    });
    connect(sampler, &ColorSampler::failed, this,
            [this, sampler, release, earlierFailures](const QString &reason) {
                release();
                const QStringList failures = earlierFailures + QStringList{reason};
                if (!qobject_cast<LoupeColorSampler *>(sampler)) {
                    run(new LoupeColorSampler(this), failures);
                    return;
                }
                // Nothing can read this screen: say why once, end as a cancel.
                m_unavailableReason = failures.join(QStringLiteral("; ")).replace(u'\n', u' ');
                const QString line = QStringLiteral("Cannot pick a color: ") + m_unavailableReason;
                std::printf("%s\n", line.toUtf8().constData());
                std::fflush(stdout);
                emit pickUnavailable(m_unavailableReason);
                finishPick(std::nullopt);
            });
    sampler->start();
}

void TintwrightService::finishPick(const std::optional<SampledColor> &color)
{
    if (color) {
        m_pickedColor = ColorItem::create(QStringLiteral("Picked Color"), color->red, color->green,
                                          color->blue, color->alpha);
        emit pickedColorChanged();
    }
    setIsPicking(false);
    emit pickFinished();
}

void TintwrightService::setIsPicking(bool isPicking)
{
    if (m_isPicking == isPicking)
        return;
    m_isPicking = isPicking;
    emit isPickingChanged(m_isPicking);
}
