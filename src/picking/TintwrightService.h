#pragma once

#include "model/ColorItem.h"
#include "picking/PickResult.h"
#include "picking/SampledColor.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class ColorSampler;

// The one object through which the interface picks a color from the
// screen. It publishes the current color and whether a pick is running,
// and ends every pick with one PickResult; it neither copies anything nor
// touches the history.
class TintwrightService : public QObject
{
    Q_OBJECT

public:
    using SamplerFactory = std::function<ColorSampler *(QObject *parent)>;

    explicit TintwrightService(QObject *parent = nullptr);

    // White named "White" until the first successful pick; never empty in
    // practice, though callers keep the empty case.
    std::optional<ColorItem> pickedColor() const { return m_pickedColor; }
    bool isPicking() const { return m_isPicking; }

    // Starts a pick and returns at once; pickFinished follows when the user
    // has chosen a color or cancelled. On X11 the program's own loupe
    // picks, and the desktop portal's picker only where the screen cannot
    // be read; on Wayland the loupe runs over the portal's screenshot, and
    // where there is none the portal's picker is asked. Fresh samplers
    // serve every pick.
    void pickColor();

    // Replaces the portal as the sampler asked first (tests, tools); the
    // loupe still takes over when it fails.
    void setSamplerFactory(SamplerFactory factory);

signals:
    void pickedColorChanged();
    void isPickingChanged(bool isPicking);
    void pickFinished(const PickResult &result);

private:
    // Starts the first sampler; when it fails, the next, and so on.
    void run(QList<SamplerFactory> order, const QStringList &earlierFailures);
    void finishPick(const PickResult &result);
    void setIsPicking(bool isPicking);

    std::optional<ColorItem> m_pickedColor;
    bool m_isPicking = false;
    SamplerFactory m_samplerFactory;
};
