#include "PickRecording.h"

#include "picking/TintwrightService.h"
#include "storage/HistoryStorage.h"

#include <memory>
#include <utility>

void PickRecording::recordPicks(TintwrightService &service, HistoryStorage &history, Cancels cancels)
{
    // Set when the pick that is running has chosen a color.
    auto chosen = std::make_shared<bool>(false);
    QObject::connect(&service, &TintwrightService::pickedColorChanged, &history,
                     [chosen] { *chosen = true; });
    // A pick that ends puts the color the service then holds first in the
    // history, whichever tab is showing by then.
    QObject::connect(&service, &TintwrightService::pickFinished, &history,
                     [&service, &history, chosen, cancels] {
                         const bool wasChosen = std::exchange(*chosen, false);
                         if (!wasChosen && cancels == Cancels::RecordNothing)
                             return;
                         if (const std::optional<ColorItem> picked = service.pickedColor())
                             history.addColor(*picked);
                     });
}
