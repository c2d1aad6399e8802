#include "faults/faultplan.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "numbers.h"

namespace zendrix::sim {

namespace {

constexpr std::array<std::pair<std::string_view, Fault>, 13> fault_names{{
    {"close", Fault::close},
    {"reset", Fault::reset},
    {"silent", Fault::silent},
    {"half-line", Fault::half_line},
    {"garbage", Fault::garbage},
    {"long-line", Fault::long_line},
    {"unknown-id", Fault::unknown_id},
    {"early-ready", Fault::early_ready},
    {"gap", Fault::gap},
    {"double", Fault::twice},
    {"slow", Fault::slow},
    {"capabilities", Fault::capabilities},
    {"emergency", Fault::emergency},
}};

constexpr std::array<std::pair<std::string_view, Place>, 3> place_names{{
    {"connect", Place::connect},
    {"request", Place::request},
    {"point", Place::point},
}};

template <class Names>
auto by_name(const Names& names, std::string_view name, const std::string& whole, const char* what) {
    for (const auto& [known, value] : names) {
        if (known == name) return value;
    }
    std::string list;
    for (const auto& [known, value] : names) list.append(" ").append(known);
    throw std::invalid_argument("fault \"" + whole + "\": unknown " + what + " \"" + std::string(name) +
                                "\"; there are" + list);
}

std::int64_t positive(std::string_view text, const std::string& whole, const char* what) {
    std::int64_t value = 0;
    if (wire::parse_integer(text, 1, 1000000000000, value)) return value;
    throw std::invalid_argument("fault \"" + whole + "\": " + what + " must be a whole number from 1 on");
}

// Takes off what follows the first `mark`; empty if there is none.
std::string_view split_off(std::string_view& text, char mark) {
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos) return {};
    const std::string_view rest = text.substr(at + 1);
    text = text.substr(0, at);
    return rest;
}

bool is_due(const PlannedFault& fault, std::int64_t number) {
    if (number <= fault.number || fault.every == 0) return number == fault.number;
    return (number - fault.number) % fault.every == 0;
}

}  // namespace

void FaultPlan::add(const std::string& text) {
    std::string_view name = text;
    std::string_view place = split_off(name, '@');
    std::string_view number = split_off(place, ':');
    if (number.empty()) {
        throw std::invalid_argument("fault \"" + text + "\" is not of the form NAME@PLACE:N");
    }
    const std::string_view value = split_off(name, '=');
    const std::string_view every = split_off(number, '+');
    PlannedFault fault;
    fault.fault = by_name(fault_names, name, text, "fault");
    fault.place = by_name(place_names, place, text, "place");
    fault.number = positive(number, text, "the count");
    if (!every.empty()) fault.every = positive(every, text, "the interval");
    if (!value.empty()) fault.value = positive(value, text, "the value");
    if ((fault.fault == Fault::slow) != (fault.value > 0)) {
        throw std::invalid_argument("fault \"" + text +
                                    "\": a value in ms belongs to slow, as in slow=50@...");
    }
    m_faults.push_back(fault);
    if (fault.place == Place::point) m_next_point = std::min(m_next_point, fault.number);
}

std::vector<PlannedFault> FaultPlan::due(Place place, std::int64_t number) const {
    std::vector<PlannedFault> result;
    for (const PlannedFault& fault : m_faults) {
        if (fault.place == place && is_due(fault, number)) result.push_back(fault);
    }
    return result;
}

std::vector<PlannedFault> FaultPlan::count(Place place) {
    return due(place, place == Place::connect ? ++m_connects : ++m_requests);
}

std::vector<PlannedFault> FaultPlan::at_point() {
    m_next_point = std::numeric_limits<std::int64_t>::max();
    for (const PlannedFault& fault : m_faults) {
        if (fault.place != Place::point) continue;
        std::int64_t next = fault.number;
        if (m_points >= next && fault.every == 0) continue;
        if (m_points >= next) next += ((m_points - next) / fault.every + 1) * fault.every;
        m_next_point = std::min(m_next_point, next);
    }
    return due(Place::point, m_points);
}

}  // namespace zendrix::sim
