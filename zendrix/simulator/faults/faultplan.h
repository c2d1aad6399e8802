// When the server is to misbehave, and how. docs/simulator.md lists the faults.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>
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
    capabilities,
    emergency,
};

// Where a fault can be placed; each counts from 1 over the server's life.
enum class Place { connect, request, point };

struct PlannedFault {
    Fault fault = Fault::close;
    Place place = Place::request;
    std::int64_t number = 1;
    std::int64_t every = 0;  // after `number`, again each so many; 0: once
    std::int64_t value = 0;  // slow: milliseconds
};

class FaultPlan {
public:
    // Adds `NAME[=VALUE]@PLACE:N[+EVERY]`. Throws std::invalid_argument, which says what is wrong with it.
    void add(const std::string& text);

    // One more of these has come; what is planned for it.
    std::vector<PlannedFault> count(Place place);

    // The same for a point, where it has to be quick: true if something is planned for this one.
    bool count_point() { return ++m_points >= m_next_point; }
    std::vector<PlannedFault> at_point();  // after count_point() said true

private:
    std::vector<PlannedFault> due(Place place, std::int64_t number) const;

    std::vector<PlannedFault> m_faults;
    std::int64_t m_connects = 0;
    std::int64_t m_requests = 0;
    std::int64_t m_points = 0;
    std::int64_t m_next_point = std::numeric_limits<std::int64_t>::max();
};

}  // namespace zendrix::sim
