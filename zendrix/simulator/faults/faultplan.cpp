#include "faults/faultplan.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "numbers.h"
#include "protocol/requests.h"

namespace zendrix::sim {

namespace {

constexpr std::array<std::pair<std::string_view, Fault>, 18> fault_names{{
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
    {"refuse", Fault::refuse},
    {"cut", Fault::cut},
    {"capabilities", Fault::capabilities},
    {"emergency", Fault::emergency},
    {"short", Fault::short_line},
    {"unquoted", Fault::unquoted},
    {"wrong-base64", Fault::wrong_base64},
}};

constexpr std::array<std::pair<std::string_view, Place>, 5> place_names{{
    {"connect", Place::connect},
    {"request", Place::request},
    {"point", Place::point},
    {"record", Place::record},
    {"block-line", Place::block_line},
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

bool is_at_request(const PlannedFault& fault) {
    return fault.place == Place::request || fault.place == Place::words;
}

bool is_at_values(const PlannedFault& fault) {
    return fault.place == Place::point || fault.place == Place::record;
}

bool spoils_text(Fault fault) {
    return fault == Fault::short_line || fault == Fault::unquoted || fault == Fault::wrong_base64;
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
    if (request_of(place) != nullptr) {
        fault.place = Place::words;
        fault.words = place;
    } else {
        fault.place = by_name(place_names, place, text, "place");
    }
    fault.number = positive(number, text, "the count");
    if (!every.empty()) fault.every = positive(every, text, "the interval");
    if (!value.empty()) fault.value = positive(value, text, "the value");
    if ((fault.fault == Fault::slow) != (fault.value > 0)) {
        throw std::invalid_argument("fault \"" + text +
                                    "\": a value in ms belongs to slow, as in slow=50@...");
    }
    if (fault.fault == Fault::refuse && !is_at_request(fault)) {
        throw std::invalid_argument("fault \"" + text + "\": only a request can be refused");
    }
    if (fault.fault == Fault::cut && !is_at_values(fault)) {
        throw std::invalid_argument("fault \"" + text + "\": only a point or a record can be cut");
    }
    if (spoils_text(fault.fault) && fault.place != Place::block_line) {
        throw std::invalid_argument("fault \"" + text + "\": only a line of a block can be so");
    }
    fault.number += counter(fault.place, fault.words);
    m_faults.push_back(fault);
    if (fault.place == Place::point) m_next_point = std::min(m_next_point, fault.number);
}

std::int64_t& FaultPlan::counter(Place place, std::string_view words) {
    switch (place) {
        case Place::connect:
            return m_connects;
        case Place::point:
            return m_points;
        case Place::record:
            return m_records;
        case Place::block_line:
            return m_block_lines;
        case Place::words:
            return m_words[std::string(words)];
        case Place::request:
            break;
    }
    return m_requests;
}

std::vector<PlannedFault> FaultPlan::count(Place place, std::string_view words) {
    std::vector<PlannedFault> result;
    if (place == Place::words && !m_words.contains(words)) return result;  // nothing was ever planned there
    const std::int64_t number = ++counter(place, words);
    for (const PlannedFault& fault : m_faults) {
        if (fault.place == place && fault.words == words && is_due(fault, number)) result.push_back(fault);
    }
    return result;
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
    std::vector<PlannedFault> result;
    for (const PlannedFault& fault : m_faults) {
        if (fault.place == Place::point && is_due(fault, m_points)) result.push_back(fault);
    }
    return result;
}

}  // namespace zendrix::sim
