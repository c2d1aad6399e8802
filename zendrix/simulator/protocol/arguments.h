// Takes a request's arguments to their end; what doesn't fit is refused.
#pragma once

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
double number(Arguments& arguments);

}  // namespace zendrix::sim
