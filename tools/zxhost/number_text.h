// Numbers and texts as a person types and reads them, the same in every locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zxhost {

// The whole text as a decimal number, "+5", "nan" and "inf" included; nothing if it is anything else.
std::optional<double> number_from(std::string_view text);

// The whole text as a whole number within 32 bits; nothing if it is anything else.
std::optional<std::int32_t> whole_number_from(std::string_view text);

// With this many decimals; "unknown" for not-a-number, never "-0.000".
std::string fixed_text(double value, int decimals);

// The shortest text that reads back as the same number.
std::string shortest_text(double value);

// The unit of an axis or pseudo-axis by its name: "mm", "deg", "s", "mm/s" or nothing.
std::string_view unit_of(std::string_view axis);

// With bytes that a terminal would act on written as \xNN; tabs and UTF-8 pass.
std::string printable(std::string_view text);

}  // namespace zxhost
