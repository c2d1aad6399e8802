// Takes a request's arguments to their end; what doesn't fit is refused.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tokens.h"

namespace zendrix::sim {

using Arguments = wire::TokenReader;

void no_more(const Arguments& arguments);
std::vector<std::string> all_names(Arguments& arguments);
std::vector<wire::Target> all_targets(Arguments& arguments);
std::int64_t integer(Arguments& arguments, std::int64_t low, std::int64_t high);
std::int32_t small_integer(Arguments& arguments);  // any of 32 bits
double number(Arguments& arguments);
std::string text(Arguments& arguments);  // a name or quoted text

template <std::size_t Count>
std::array<double, Count> numbers(Arguments& arguments) {
    std::array<double, Count> values;
    for (double& value : values) value = number(arguments);
    return values;
}

}  // namespace zendrix::sim
