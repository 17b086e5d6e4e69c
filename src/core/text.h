// src/core (floor 1, together with src/numeric) holds what every other folder uses. It depends on no other folder.
//
//   text.h            conversion of numbers to text and back, file names, letters without regard to case
//   status.h          Status and Result: how an operation reports success or failure
//   files.h           reading and writing whole files
//   bytes.h           little-endian fields of binary files
//   limits.h          sizes of tables and the marker values of missing numbers
//   noise.h           pseudo-random numbers
//   shared_list.h     a list that never changes and is cheap to copy
//   platform.h        Platform: message box, file dialog, events, clock
//   vector_width.h    files compiled once for each width of the vector units
//
// Read status.h and text.h first.
//
// The functions below always use the C locale. A window toolkit may set the locale of the process to a decimal comma,
// which must not appear in files and labels.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kalvex {

char LowerAscii(char c);
bool IsAsciiLetter(char c);
bool IsAsciiDigit(char c);

bool EqualsIgnoringCase(std::string_view a, std::string_view b);
// True if the first prefix.size() characters of text equal prefix, ignoring the case of ASCII letters.
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

// Index of the file name in a path: after the last '/' or '\', or after a drive letter and its colon.
std::size_t FileNameStart(std::string_view path);
std::string_view FileNameOf(std::string_view path);
// The path up to the file name, with its last separator. Empty for a bare name.
std::string_view DirectoryOf(std::string_view path);

// The first `most` bytes of the text. A UTF-8 letter that would be cut is left out.
std::string_view CutToBytes(std::string_view text, std::size_t most);

// Parses the longest valid number at the start of [first, last), after optional white space, as strtod does in the C
// locale (decimal, hexadecimal, "inf", "nan"). Returns the position after the number. Without a number it returns first
// and leaves value unchanged. A number too large for a double reads as infinity, one too small as 0.
const char* ParseReal(const char* first, const char* last, double& value);
// The same for a decimal integer, as strtol does. A number outside 32 bits becomes the nearest limit.
const char* ParseInteger(const char* first, const char* last, std::int32_t& value);
// The number at the start of a text; 0 if there is none.
double RealOf(std::string_view text);
std::int32_t IntegerOf(std::string_view text);

// Numbers in printf's formats: %.<digits>g, %.<digits>G, %.<digits>f and %<width>.<digits>E.
void AppendG(std::string& out, double value, int digits = 6);
void AppendUpperG(std::string& out, double value, int digits = 6);
void AppendFixed(std::string& out, double value, int digits = 6, int width = 0);
void AppendScientific(std::string& out, double value, int digits, int width);
// The fewest digits that read back to the same bits.
void AppendShortest(std::string& out, double value);
void AppendInteger(std::string& out, std::int64_t value);
std::string TextG(double value, int digits = 6);

}  // namespace kalvex
