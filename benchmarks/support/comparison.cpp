#include "comparison.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

namespace bench {

namespace {

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

volatile std::size_t kept = 0;

}  // namespace

Measure wall_time(std::function<void()> work, std::size_t items) {
    return [work = std::move(work), items] {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::nano> spent = std::chrono::steady_clock::now() - start;
        return spent.count() / static_cast<double>(items);
    };
}

Measure processor_time(std::function<void()> work, std::size_t items) {
    return [work = std::move(work), items] {
        const std::clock_t start = std::clock();
        work();
        const double spent = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        return spent * 1e9 / static_cast<double>(items);
    };
}

void print_head(const std::string& reference) {
    std::printf("reference: %s\n", reference.c_str());
    std::printf("%-44s %13s %13s %7s %7s %7s\n", "work", "ours", "reference", "ratio", "limit", "aim");
}

double compare(const Comparison& comparison) {
    std::vector<double> ours;
    std::vector<double> reference;
    comparison.ours();
    comparison.reference();
    for (int round = 0; round < comparison.rounds; ++round) {
        // Neither is always the one that runs behind the other.
        if (round % 2 == 0) ours.push_back(comparison.ours());
        reference.push_back(comparison.reference());
        if (round % 2 != 0) ours.push_back(comparison.ours());
    }
    const double ratio = median(ours) / median(reference);
    std::printf("%-44s %10.2f %-2s %10.2f %-2s %7.3f %7.2f %7.2f%s\n", comparison.name.c_str(), median(ours),
                comparison.unit.c_str(), median(reference), comparison.unit.c_str(), ratio, comparison.limit,
                comparison.aim, ratio > comparison.limit ? "  ABOVE THE LIMIT" : "");
    std::fflush(stdout);
    return ratio;
}

void print_figure(const std::string& name, double value, const std::string& unit) {
    std::printf("%-44s %10.2f %s\n", name.c_str(), value, unit.c_str());
    std::fflush(stdout);
}

void keep(std::size_t value) { kept = value; }

}  // namespace bench
