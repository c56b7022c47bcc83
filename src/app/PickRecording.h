#pragma once

class HistoryStorage;
class TintwrightService;

// The one rule that joins the picker to the history.
namespace PickRecording {

enum class Cancels {
    // The window's rule: a cancel puts the color on show first again.
    RecordShownColor,
    // A pick from the command line shows no color before it, so a cancel
    // records nothing.
    RecordNothing,
};

void recordPicks(TintwrightService &service, HistoryStorage &history, Cancels cancels);

} // namespace PickRecording
