// Engineering notation: a number as text with an SI prefix for its power of one
// thousand ("1.50 kV", "500.00 mV"), the prefix tables, and the power of ten by repeated
// squaring that the readers and writers share. All 8-bit text is in the code page of
// GetACP: the micro prefix is byte 0xB5 under 1252 and 'u' elsewhere.
#pragma once

#include <cstddef>

// The room the 5-argument form writes into at most, terminating NUL included. Longer
// texts (a value beyond the prefixes printed in full, a long unit) are cut to fit.
constexpr int CONVERT2ENG_MAX = 128;

// Writes value with the prefix of its power of one thousand (k from -6 to 6; k = 0 and
// values beyond the table are printed unscaled) and unit to dest, after leadingBlanks
// blanks (0..10; more are cut to 10). decimals as printf's precision (<= 2 in
// picometres for unit "m", which is never shown below picometres). 0.0 shows no unit.
// Under a code page other than 1252 the one-byte unit "\xBA" is written "deg".
// dest must hold CONVERT2ENG_MAX bytes. Returns the number of characters written.
int Convert2Eng(char* dest, double value, const char* unit, int decimals, int leadingBlanks);

// The same into a buffer of the calling thread that the next call overwrites.
char* Convert2Eng(double value, const char* unit, int decimals, int leadingBlanks);

namespace orlex {

// The same with an explicit room: writes at most destSize bytes including the NUL
// (nothing if destSize is 0) and returns the number of characters written.
int Convert2Eng(char* dest, std::size_t destSize, double value, const char* unit, int decimals,
                int leadingBlanks);

// Which lower limit a conversion applies: the free form's picometre floor for metres,
// or the plot's nanometre floor for every unit.
enum class EngFloor { PicoForMetres, NanoForAll };

// The conversion shared by the free and the plot forms. The format room of 19 characters
// limits leadingBlanks to 10.
int FormatEngineering(char* dest, std::size_t destSize, double value, const char* unit,
                      int decimals, int leadingBlanks, EngFloor floor);

// The 13-byte prefix table for output under the current code page, index = k + 6
// ("afpn\xB5m kMGTPE" under 1252, "afpnum kMGTPE" otherwise). Static storage.
const char* EngPrefixTable();

// The code page 1252 table: the lookup table of the reader, whatever the code page.
inline constexpr char kEngPrefix1252[] = "afpn\xB5m kMGTPE";

// 10 to the power e by repeated squaring on |e| and, for negative e, the reciprocal:
// the same bits as the text conversions give. |e| up to about 308.
double PowerOfTen(int e);

} // namespace orlex
