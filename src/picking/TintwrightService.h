#pragma once

#include "model/ColorItem.h"
#include "picking/SampledColor.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class ColorSampler;
class PortalAvailability;

// The one object through which the interface picks a color from the
// screen. It publishes the current color and whether a pick is running; it
// neither copies anything nor touches the history.
class TintwrightService : public QObject
{
    Q_OBJECT

public:
    using SamplerFactory = std::function<ColorSampler *(QObject *parent)>;

    // Picks through the session bus's portal.
    explicit TintwrightService(QObject *parent = nullptr);
    // Picks through the portal of the bus that connectToBus() opens (on a
    // thread of its own, at once: the first pick never waits for it).
    explicit TintwrightService(std::function<QDBusConnection()> connectToBus, QObject *parent = nullptr);

    // White named "White" until the first successful pick; never empty in
    // practice, though callers keep the empty case.
    std::optional<ColorItem> pickedColor() const { return m_pickedColor; }
    bool isPicking() const { return m_isPicking; }

    // Starts a pick and returns at once; pickFinished follows when the user
    // has chosen a color or cancelled. The desktop portal is asked first
    // where the bus has one; where there is none, or it fails, the
    // program's own loupe takes over. Fresh samplers serve every pick.
    void pickColor();

    // Why the last pick could not show anything at all: neither a portal
    // nor the screen could be read (a Wayland session without the
    // desktop's screenshot portal). Empty when it could; reset as a pick
    // starts.
    QString unavailableReason() const { return m_unavailableReason; }

    // Replaces the portal as the sampler asked first (tests, tools); the
    // loupe still takes over when it fails.
    void setSamplerFactory(SamplerFactory factory);

signals:
    void pickedColorChanged();
    void isPickingChanged(bool isPicking);
    // No way to pick here (see unavailableReason()); the pick then ends as
    // a cancel.
    void pickUnavailable(const QString &reason);
    void pickFinished();

private:
    void startFirstSampler();
    void run(ColorSampler *sampler, const QStringList &earlierFailures);
    void finishPick(const std::optional<SampledColor> &color);
    void setIsPicking(bool isPicking);

    std::optional<ColorItem> m_pickedColor;
    bool m_isPicking = false;
    QString m_unavailableReason;
    PortalAvailability *m_portal;
    SamplerFactory m_samplerFactory;
};
