#include "LoupeColorSampler.h"

#include "picking/PrecisionColorPicker.h"

#include <QTimer>

LoupeColorSampler::LoupeColorSampler(QObject *parent)
    : FallibleColorSampler(parent)
{
}

void LoupeColorSampler::start()
{
    m_picker = new PrecisionColorPicker({}, this);
    m_picker->setCompletion([this](const std::optional<SampledColor> &color) {
        if (color)
            emit colorSampled(*color);
        else
            emit cancelled();
    });
    const QString reason = m_picker->start();
    if (!reason.isEmpty()) {
        QTimer::singleShot(0, this, [this, reason] { emit failed(reason); });
    }
}
