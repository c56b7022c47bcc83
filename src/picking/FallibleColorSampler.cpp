#include "FallibleColorSampler.h"

FallibleColorSampler::~FallibleColorSampler() = default;
