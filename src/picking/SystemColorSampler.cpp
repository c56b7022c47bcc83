#include "SystemColorSampler.h"

#include "picking/FallbackColorSampler.h"
#include "picking/LoupeColorSampler.h"
#include "picking/PortalColorSampler.h"

ColorSampler *createSystemColorSampler(QObject *parent)
{
    return new FallbackColorSampler(
        {
            [](QObject *owner) -> FallibleColorSampler * { return new PortalColorSampler(owner); },
            [](QObject *owner) -> FallibleColorSampler * { return new LoupeColorSampler(owner); },
        },
        parent);
}
