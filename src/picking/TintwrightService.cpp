#include "TintwrightService.h"

#include "picking/ColorSampler.h"
#include "picking/SystemColorSampler.h"

TintwrightService::TintwrightService(QObject *parent)
    : QObject(parent)
    , m_pickedColor(ColorItem::create(QStringLiteral("White"), 1.0, 1.0, 1.0, 1.0))
    , m_samplerFactory(createSystemColorSampler)
{
}

void TintwrightService::setSamplerFactory(SamplerFactory factory)
{
    m_samplerFactory = std::move(factory);
}

void TintwrightService::pickColor()
{
    setIsPicking(true);
    ColorSampler *sampler = m_samplerFactory(this);
    connect(sampler, &ColorSampler::colorSampled, this, [this, sampler](const SampledColor &color) {
        finishPick(sampler, ColorItem::create(QStringLiteral("Picked Color"), color.red,
                                              color.green, color.blue, color.alpha));
    });
    connect(sampler, &ColorSampler::cancelled, this,
            [this, sampler] { finishPick(sampler, std::nullopt); });
    sampler->start();
}

void TintwrightService::finishPick(ColorSampler *sampler, const std::optional<ColorItem> &picked)
{
    // A sampler reports once; anything it emits later is ignored.
    sampler->disconnect(this);
    sampler->deleteLater();
    if (picked) {
        m_pickedColor = picked;
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
