#include "TintwrightService.h"

#include "picking/LoupeColorSampler.h"
#include "picking/PortalColorSampler.h"

#include <cstdio>

TintwrightService::TintwrightService(QObject *parent)
    : QObject(parent)
    , m_pickedColor(ColorItem::create(QStringLiteral("White"), 1.0, 1.0, 1.0, 1.0))
    , m_samplerFactory([](QObject *owner) -> ColorSampler * { return new PortalColorSampler(owner); })
{
}

void TintwrightService::setSamplerFactory(SamplerFactory factory)
{
    m_samplerFactory = std::move(factory);
}

void TintwrightService::pickColor()
{
    setIsPicking(true);
    m_unavailableReason.clear();
    run(m_samplerFactory(this), {});
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
                std::printf("Cannot pick a color: %s\n", m_unavailableReason.toUtf8().constData());
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
