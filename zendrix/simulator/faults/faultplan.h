// When the server is to misbehave, and how. docs/simulator.md lists the faults.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::sim {

enum class Fault {
    close,
    reset,
    silent,
    half_line,
    garbage,
    long_line,
    unknown_id,
    early_ready,
    gap,
    twice,
    slow,
    refuse,
    cut,
    capabilities,
    emergency,
    short_line,
    unquoted,
    wrong_base64,
};

// Where a fault can be placed. `record`: a watch line. `block_line`: a line of a block that is being
// received. `words`: a request with these.
enum class Place { connect, request, point, record, block_line, words };

struct PlannedFault {
    Fault fault = Fault::close;
    Place place = Place::request;
    std::string words;  // if the place says so
    std::int64_t number = 1;
    std::int64_t every = 0;  // after `number`, again each so many; 0: once
    std::int64_t value = 0;  // slow: milliseconds
};

class FaultPlan {
public:
    // Adds `NAME[=VALUE]@PLACE:N[+EVERY]`, counted from 1 and from now on. Throws std::invalid_argument,
    // which says what is wrong with it.
    void add(const std::string& text);

    std::size_t size() const { return m_faults.size(); }

    // One more of these has come; what is planned for it.
    std::vector<PlannedFault> count(Place place, std::string_view words = {});

    // The same for a point, where it has to be quick: true if something is planned for this one.
    bool count_point() { return ++m_points >= m_next_point; }
    std::vector<PlannedFault> at_point();  // after count_point() said true

private:
    std::int64_t& counter(Place place, std::string_view words);

    std::vector<PlannedFault> m_faults;
    std::int64_t m_connects = 0;
    std::int64_t m_requests = 0;
    std::int64_t m_points = 0;
    std::int64_t m_records = 0;
    std::int64_t m_block_lines = 0;
    std::map<std::string, std::int64_t, std::less<>> m_words;
    std::int64_t m_next_point = std::numeric_limits<std::int64_t>::max();
};

}  // namespace zendrix::sim
