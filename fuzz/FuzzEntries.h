#pragma once

#include <cstddef>
#include <cstdint>

// One entry per fuzz target. Each feeds arbitrary bytes to one input path of
// the program and aborts when an invariant of that path breaks. The libFuzzer
// targets and the corpus replay test call exactly these functions.
namespace FuzzEntries {

// The hex field: parseHex on the bytes as UTF-8 and as UTF-16.
void hex(const uint8_t *data, size_t size);
// The Convert groups: the first byte picks the notation, the rest is split
// into the group's texts at '\n'.
void convert(const uint8_t *data, size_t size);
// The two Contrast fields, split at the first '\n'.
void contrast(const uint8_t *data, size_t size);
// history.json or palettes.json (first byte even/odd): decode, and for a
// file that decodes, encode and decode again to the same records.
void records(const uint8_t *data, size_t size);
// Palette files to import: the bytes as a .gpl, an .ase, or a .css and a
// .json file. A file is either refused with one line or gives a palette
// within the limits, which written out in the same format reads back the
// same (CSS: the same colors, names as identifiers).
void gpl(const uint8_t *data, size_t size);
void ase(const uint8_t *data, size_t size);
void css(const uint8_t *data, size_t size);

} // namespace FuzzEntries
