#include "SystemColorSampler.h"

#include "picking/ColorSampler.h"

#include <QTimer>

namespace {

// Placeholder until the portal and loupe samplers exist: cancels at once.
class UnavailableSampler : public ColorSampler
{
public:
    using ColorSampler::ColorSampler;
    void start() override
    {
        QTimer::singleShot(0, this, [this] { emit cancelled(); });
    }
};

} // namespace

ColorSampler *createSystemColorSampler(QObject *parent)
{
    return new UnavailableSampler(parent);
}
