// Text and numbers. Everything here speaks the C locale, whatever locale the process is in: a window toolkit may switch
// the process to a decimal comma, and no file and no label may follow it there.
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

// The place where the file name begins in a path: behind the last '/' or '\', or behind a drive letter and its colon.
std::size_t FileNameStart(std::string_view path);
std::string_view FileNameOf(std::string_view path);
// Everything before the file name, its last separator included; empty for a bare name.
std::string_view DirectoryOf(std::string_view path);

// The text, cut to so many bytes where it is longer. A letter of several bytes (UTF-8) is not cut in two but left out.
std::string_view CutToBytes(std::string_view text, std::size_t most);

// Longest valid number at the start of [first, last), white space before it allowed, in the manner of strtod in the
// C locale (decimal, hexadecimal, "inf", "nan"). Gives the place behind the number, or first if there is none, with
// value left alone. A number too large for a double reads as infinity, one too small as 0.
const char* ParseReal(const char* first, const char* last, double& value);
// The same for a decimal integer, in the manner of strtol; a number outside 32 bits is held at the nearest limit.
const char* ParseInteger(const char* first, const char* last, std::int32_t& value);
// Conversions of a whole text: the longest valid prefix, 0 if there is none.
double RealOf(std::string_view text);
std::int32_t IntegerOf(std::string_view text);

// printf's number formats: %.<digits>g, %.<digits>G, %.<digits>f and %<width>.<digits>E.
void AppendG(std::string& out, double value, int digits = 6);
void AppendUpperG(std::string& out, double value, int digits = 6);
void AppendFixed(std::string& out, double value, int digits = 6, int width = 0);
void AppendScientific(std::string& out, double value, int digits, int width);
void AppendInteger(std::string& out, std::int64_t value);
std::string TextG(double value, int digits = 6);

}  // namespace kalvex
