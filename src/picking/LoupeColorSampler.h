#pragma once

#include "picking/FallibleColorSampler.h"

class PrecisionColorPicker;

// Picks through the program's own precision loupe; fails where the screen
// cannot be read.
class LoupeColorSampler : public FallibleColorSampler
{
    Q_OBJECT

public:
    explicit LoupeColorSampler(QObject *parent = nullptr);

    void start() override;

    // The loupe of the running pick, if any (tests drive it directly).
    PrecisionColorPicker *picker() const { return m_picker; }

private:
    PrecisionColorPicker *m_picker = nullptr;
};
