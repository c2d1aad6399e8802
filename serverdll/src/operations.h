// Arguments of operations, put into a request.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "client.h"
#include "replies.h"

namespace serverdll {

inline wire::RequestWriter& operator<<(wire::RequestWriter& request, const std::vector<std::string>& names) {
    for (const std::string& name : names) request.text(name);
    return request;
}

inline wire::RequestWriter& operator<<(wire::RequestWriter& request, std::initializer_list<double> numbers) {
    for (const double number : numbers) request.number(number);
    return request;
}

// False if an entry is none that the protocol has words for.
bool add_positions(wire::RequestWriter& request, std::size_t count, const Position* positions);
bool add_names(wire::RequestWriter& request, std::size_t count, const char* const* names);

}  // namespace serverdll
