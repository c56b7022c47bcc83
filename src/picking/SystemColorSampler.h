#pragma once

class ColorSampler;
class QObject;

// The sampler a real pick uses: the desktop portal's color picker where one
// answers, the program's own precision loupe elsewhere.
ColorSampler *createSystemColorSampler(QObject *parent);
