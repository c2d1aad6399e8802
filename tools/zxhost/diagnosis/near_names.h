// Names that a person has meant but not written.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zxhost {

// How a written name stands to a known one.
enum class Nearness { same, case_differs, blanks_differ, misspelt, far };

// Blanks, tabs, '_' and '-' are all blanks here. Misspelt: one or two letters are wrong, missing, doubled or
// exchanged.
Nearness nearness(std::string_view written, std::string_view known);

// How many letters must be put in, taken out, replaced or exchanged with their neighbour.
std::size_t edit_distance(std::string_view a, std::string_view b);

}  // namespace zxhost
