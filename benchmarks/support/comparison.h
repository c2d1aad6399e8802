// Measures our way of doing something against a reference in the same run.
//
// A machine's speed drifts, so the two are measured in turn, round by round, and what counts is the ratio of
// their medians. A benchmark prints and never fails; its limits are for the reader.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

// Does the work once and returns what it cost, in whatever unit; both sides of a comparison use the same.
using Measure = std::function<double()>;

// The wall-clock nanoseconds an item when `work` handles `items` of them.
Measure wall_time(std::function<void()> work, std::size_t items);

// The same in processor time, of all threads of the process.
Measure processor_time(std::function<void()> work, std::size_t items);

struct Comparison {
    std::string name;
    Measure ours;
    Measure reference;
    double limit = 0.0;  // at most this many times the reference
    double aim = 0.0;
    std::string unit = "ns";
    int rounds = 25;                                           // after one to warm up
    std::vector<std::pair<std::string, Measure>> others = {};  // take turns with them, without a limit
};

// Prints the head of the table; `reference` says what ours are compared with.
void print_head(const std::string& reference);

// Measures, prints one line of the table and one for each of the others, and returns the ratio.
double compare(const Comparison& comparison);

// Prints a figure that has no reference.
void print_figure(const std::string& name, double value, const std::string& unit);

// Keeps the compiler from dropping the work that gave this value.
void keep(std::size_t value);

}  // namespace bench
