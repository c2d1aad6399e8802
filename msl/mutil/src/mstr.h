// Functions on NUL-terminated buffers of the caller. None of them reports, none depends on the process's
// locale, and all may be called from any thread.
#pragma once

#include <cstddef>

// Bounded copy and append into a buffer of `size` bytes. 1 if all of it fit, with its NUL; 0 if it was cut,
// and then terminated, or if `size` is 0.
int MStrCopy(char* target, const char* source, std::size_t size);
int MStrCat(char* target, const char* source, std::size_t size);

// -1, 0 or 1. Bytes compare as signed; the I forms take upper case for lower, the N forms look at no more
// than `length` bytes.
int MStrCmp(const char* a, const char* b);
int MStrNCmp(const char* a, const char* b, std::size_t length);
int MStrICmp(const char* a, const char* b);
int MStrNICmp(const char* a, const char* b, std::size_t length);

// Swaps the case of each letter, and returns the length.
std::size_t MStrSwapCase(char* s);

// A null pointer is accepted.
void MStrToLower(char* s);
void MStrToUpper(char* s);

// Removes all white space, and ends the text at the first ';', "//" or "/*".
void MStrStrip(char* s);

void MStrReverse(char* s, std::size_t length);

// Decimal digits, and NUL, into room for 12 bytes. Returns the length.
std::size_t MStrFromInt(int value, char* target);

// Remove white space at the ends of a text of this length, 0 for one that is to be measured. Return the new
// length, where a shortened text is terminated.
std::size_t MStrTrimRight(char* s, std::size_t length);
std::size_t MStrTrimLeft(char* s, std::size_t length);
std::size_t MStrTrim(char* s, std::size_t length);
