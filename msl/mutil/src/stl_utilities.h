// Functions on byte strings: formatting, splitting, comments and blanks, numbers, quoting.
//
// None of them depends on the process's locale, and all may be called from any thread. What goes wrong is
// reported to the error trace, by the formatting functions to the error log: their callers have no result to
// test.
#pragma once

#include <cstdarg>
#include <string>
#include <vector>

#include "os/printf_format.h"

// The text formatted as by printf, up to its first NUL byte; empty, with a line in the error log, if the
// format can't be carried out.
OS_PRINTF_FORMAT(1, 2) std::string stl_string_format(const char* format, ...);
OS_PRINTF_FORMAT(1, 0) std::string stl_string_format_va(const char* format, va_list args);

// The same, assigned to `s`. The arguments may point into `s`.
OS_PRINTF_FORMAT(2, 3) void stl_string_printf(std::string& s, const char* format, ...);

void stl_string_toupper(std::string& s);
void stl_string_tolower(std::string& s);

// Appends the pieces of `text` between any of the bytes in `delimiters` to `out`, which is not cleared.
// Delimiters at the ends, and several in a row, give no empty pieces.
void stl_string_tokenize(const std::string& text, const char* delimiters, std::vector<std::string>& out);

// Cuts `s` at the first "//"; if there is none, at the first "/*"; if there is none, at the first ";".
void stl_string_strip_comment(std::string& s);

// Takes off the comment, and then all white space, inside the text too.
void stl_string_strip(std::string& s);

// `out` becomes the items with the separator, which may be null, between them. `out` is none of the items.
void stl_string_join(std::string& out, const char* separator, const std::vector<std::string>& items);

// Replaces each occurrence of `from`, not looking again at what it has put in; an empty `from` occurs
// nowhere. Returns how many there were.
std::size_t stl_string_replace_all(std::string& s, const std::string& from, const std::string& to);

// The number at the start of the text, after white space; `out` is always written, with 0 if there is none.
// With `whole` the result tells whether the conversion ended at the text's end, else whether it used a byte.
// to_long clamps to 32 bits.
bool stl_string_to_double(const std::string& s, double& out, bool whole);
bool stl_string_to_long(const std::string& s, long& out, bool whole);

// Appends a number in decimal digits.
void stl_string_append(std::string& s, int number);
void stl_string_append(std::string& s, unsigned int number);
void stl_string_append(std::string& s, long number);
void stl_string_append(std::string& s, unsigned long number);
void stl_string_append(std::string& s, long long number);
void stl_string_append(std::string& s, unsigned long long number);

// Appends the value with at most this many places; zeros at the end of the fraction, and then a point there,
// are left out.
void stl_string_append(std::string& s, double value, int precision);

// Makes the text one word of a command line that is split at blanks, and back. Unquoting reports and returns
// false for a text that quoting can't have made, and then leaves it as it was.
void stl_string_quote_space(std::string& s);
bool stl_string_unquote_space(std::string& s);

// Turns the bytes into their base64 text, and back. Decoding takes trailing NULs for no part of the text; on
// failure it reports, and `s`, or the result, is empty.
bool stl_encode_base64(std::string& s);
bool stl_decode_base64(std::string& s);
std::string stl_decode_base64(const std::string& s);
