#include "FallbackColorSampler.h"

#include "storage/ConsoleReport.h"

FallbackColorSampler::FallbackColorSampler(QList<Factory> factories, QObject *parent)
    : ColorSampler(parent)
    , m_factories(std::move(factories))
{
}

void FallbackColorSampler::start()
{
    m_next = 0;
    m_reasons.clear();
    startNext();
}

void FallbackColorSampler::startNext()
{
    if (m_next >= m_factories.size()) {
        printReportLine(QStringLiteral("Cannot pick a color: ") + m_reasons.join(QStringLiteral("; ")));
        emit cancelled();
        return;
    }
    FallibleColorSampler *sampler = m_factories.at(m_next++)(this);
    auto finish = [sampler] {
        sampler->disconnect();
        sampler->deleteLater();
    };
    connect(sampler, &ColorSampler::colorSampled, this, [this, finish](const SampledColor &color) {
        finish();
        emit colorSampled(color);
    });
    connect(sampler, &ColorSampler::cancelled, this, [this, finish] {
        finish();
        emit cancelled();
    });
    connect(sampler, &FallibleColorSampler::failed, this, [this, finish](const QString &reason) {
        finish();
        m_reasons.append(reason);
        startNext();
    });
    sampler->start();
}
