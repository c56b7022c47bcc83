#include "TintwrightService.h"

#include "picking/LoupeColorSampler.h"
#include "picking/PortalColorSampler.h"
#include "picking/ScreenshotLoupeSampler.h"

#include <QGuiApplication>

#include <cstdio>
#include <memory>

TintwrightService::TintwrightService(QObject *parent)
    : QObject(parent)
    , m_pickedColor(ColorItem::create(QStringLiteral("White"), 1.0, 1.0, 1.0, 1.0))
{
}

void TintwrightService::setSamplerFactory(SamplerFactory factory)
{
    m_samplerFactory = std::move(factory);
}

void TintwrightService::pickColor()
{
    setIsPicking(true);
    QList<SamplerFactory> order;
    const auto loupe = [](QObject *parent) -> ColorSampler * { return new LoupeColorSampler(parent); };
    const auto portal = [](QObject *parent) -> ColorSampler * { return new PortalColorSampler(parent); };
    if (m_samplerFactory)
        order = {m_samplerFactory, loupe};
    else if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        // The loupe over the portal's screenshot; else the portal's picker.
        order = {[](QObject *parent) -> ColorSampler * { return new ScreenshotLoupeSampler(parent); }, portal,
                 loupe};
    else
        // The loupe reads the X screen itself, at once; a portal only
        // where the screen cannot be read.
        order = {loupe, portal};
    run(order, {});
}

void TintwrightService::run(QList<SamplerFactory> order, const QStringList &earlierFailures)
{
    ColorSampler *sampler = order.takeFirst()(this);
    // A sampler reports once; anything it emits later is ignored.
    auto release = [this, sampler] {
        sampler->disconnect(this);
        sampler->deleteLater();
    };
    // The colors picked so far in this run.
    auto picked = std::make_shared<QList<ColorItem>>();
    const auto keep = [picked](const SampledColor &color) {
        picked->append(ColorItem::create(QStringLiteral("Picked Color"), color.red, color.green, color.blue,
                                         color.alpha));
    };
    connect(sampler, &ColorSampler::colorKept, this, keep);
    connect(sampler, &ColorSampler::colorSampled, this,
            [this, release, keep, picked](const SampledColor &color) {
                release();
                keep(color);
                finishPick({PickResult::Outcome::Picked, *picked, {}});
            });
    connect(sampler, &ColorSampler::endedWithoutColor, this, [this, release](const QString &why) {
        release();
        finishPick({PickResult::Outcome::Cancelled, {}, why});
    });
    connect(sampler, &ColorSampler::cancelled, this, [this, release, picked] {
        release();
        finishPick(picked->isEmpty() ? PickResult{} : PickResult{PickResult::Outcome::Picked, *picked, {}});
    });
    connect(sampler, &ColorSampler::failed, this,
            [this, release, order, earlierFailures](const QString &reason) {
                release();
                const QStringList failures = earlierFailures + QStringList{reason};
                if (!order.isEmpty()) {
                    run(order, failures);
                    return;
                }
                // Nothing can read this screen; whoever asked says why.
                const QString why = failures.join(QStringLiteral("; ")).replace(u'\n', u' ');
                finishPick({PickResult::Outcome::Unavailable, {}, why});
            });
    sampler->start();
}

void TintwrightService::finishPick(const PickResult &result)
{
    if (result.isPicked()) {
        m_pickedColor = result.colors.last();
        emit pickedColorChanged();
    }
    setIsPicking(false);
    emit pickFinished(result);
}

void TintwrightService::setIsPicking(bool isPicking)
{
    if (m_isPicking == isPicking)
        return;
    m_isPicking = isPicking;
    emit isPickingChanged(m_isPicking);
}
