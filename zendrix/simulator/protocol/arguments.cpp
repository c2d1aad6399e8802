#include "protocol/arguments.h"

#include <limits>

#include "machine/error.h"

namespace zendrix::sim {

namespace {

void require_one(const Arguments& arguments) {
    if (arguments.at_end()) throw Refused{Error::missing_argument};
}

}  // namespace

void no_more(const Arguments& arguments) {
    if (!arguments.at_end()) throw Refused{Error::syntax_invalid};
}

std::vector<std::string> all_names(Arguments& arguments) {
    std::vector<std::string> names;
    if (!arguments.names(names)) throw Refused{Error::syntax_invalid};
    return names;
}

std::vector<wire::Target> all_targets(Arguments& arguments) {
    std::vector<wire::Target> targets;
    if (!arguments.targets(targets)) throw Refused{Error::syntax_invalid};
    return targets;
}

std::int64_t integer(Arguments& arguments, std::int64_t low, std::int64_t high) {
    require_one(arguments);
    std::int64_t value = 0;
    if (!arguments.integer(low, high, value)) throw Refused{Error::invalid_argument};
    return value;
}

std::int32_t small_integer(Arguments& arguments) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(integer(arguments, Limits::min(), Limits::max()));
}

double number(Arguments& arguments) {
    require_one(arguments);
    double value = 0.0;
    if (!arguments.number(value)) throw Refused{Error::invalid_argument};
    return value;
}

std::string text(Arguments& arguments) {
    require_one(arguments);
    std::string value;
    if (!arguments.name(value)) throw Refused{Error::syntax_invalid};
    return value;
}

}  // namespace zendrix::sim
