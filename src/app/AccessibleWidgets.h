#pragma once

// Registers how screen readers see the program's hand-drawn widgets (the
// frameless window, tab buttons, palette cards, palette colors); Qt asks
// the factory for every widget it exposes. Call once, after the
// application object exists.
namespace AccessibleWidgets {

void install();

} // namespace AccessibleWidgets
