// The numeric field of a data line.
#pragma once

#include <string>

// Appends a blank and the shortest text of `value` with at most six decimals, rounded by adding 0.0000005 and
// cutting. From 1e11 on it is seventeen significant digits instead; infinities and not-a-number are "inf",
// "-inf" and "nan". The same on every system and in every locale.
void append_number(std::string& text, double value);
