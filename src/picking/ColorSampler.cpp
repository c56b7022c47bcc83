#include "ColorSampler.h"

ColorSampler::~ColorSampler() = default;
