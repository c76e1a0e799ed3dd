// The computed content of the colour tables: the built-in formulas, the parse of the
// "color.par" text and the mapping of its 240-entry tables onto 256 entries. Pure
// functions over plain arrays, so the list of tables and its file stay apart from them.
#pragma once

#include <cstddef>

#include "foundation/platform/wintypes.h"

namespace orlex::colour {

constexpr int kBuiltInTables = 26;          // numbers 0..25
constexpr int kFirstCustomTable = 26;
constexpr int kTableEntries = 256;
constexpr int kResourceTables = 18;         // numbers 4..21
constexpr int kFirstResourceTable = 4;
constexpr int kResourceEntries = 240;
constexpr int kResourceValuesPerTable = kResourceEntries * 3;
constexpr std::size_t kResourceValues = std::size_t(kResourceTables) * kResourceValuesPerTable;  // 12960 words
constexpr WORD kEditMark = 0x8000;
constexpr WORD kValueMask = 0x00FF;

// The three planes of one table as stored: bits 0-7 the colour value, bit 15 the edit mark.
struct TablePlanes {
    WORD red[kTableEntries] = {};
    WORD green[kTableEntries] = {};
    WORD blue[kTableEntries] = {};
    bool stepped = false;
};

// Parses the text of "color.par" into `store` (kResourceValues words, 16-bit patterns
// in table, entry, red-green-blue order). Reads no byte at or past text+length. Returns
// false when the text ends before 18 tables of 720 values are read; `store` is then
// partly written and must not be used.
bool ParseColorParText(const char* text, std::size_t length, WORD* store);

// Fills table `number` (0..25) as built in. `store` is the parsed resource, or null when
// the parse failed, in which case tables 4..21 stay all zero without marks. `out` must be
// zeroed by the caller (a fresh TablePlanes).
void FillBuiltInTable(int number, const WORD* store, TablePlanes& out);

// The value of the grey curve of table 0 at entry i, before truncation: exp(3.4 + i*d).
double GreyCurve(int i);

// Colour of band k (0..9) of the stepped table 3 as red, green, blue.
struct BandColour {
    BYTE red, green, blue;
};
extern const BandColour kTable3Bands[10];

}  // namespace orlex::colour
