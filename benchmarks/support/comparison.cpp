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

// One of those that take turns.
struct Way {
    std::string name;
    Measure measure;
    std::vector<double> costs;
};

void print_row(const Way& way, double reference, const std::string& unit) {
    const double cost = median(way.costs);
    std::printf("%-44s %10.2f %-2s %10.2f %-2s %7.3f", way.name.c_str(), cost, unit.c_str(), reference,
                unit.c_str(), cost / reference);
}

const char* verdict(double ratio, const Comparison& comparison) {
    if (ratio > comparison.limit) return "ABOVE THE LIMIT";
    return ratio > comparison.aim ? "within the limit" : "meets the aim";
}

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
    std::vector<Way> ways{{comparison.name, comparison.ours, {}}, {"reference", comparison.reference, {}}};
    for (const auto& [name, measure] : comparison.others) ways.push_back({"  " + name, measure, {}});
    for (const Way& way : ways) way.measure();
    for (int round = 0; round < comparison.rounds; ++round) {
        for (Way& way : ways) way.costs.push_back(way.measure());
        // None is always the one that runs behind the same other.
        std::reverse(ways.begin(), ways.end());
    }
    if (comparison.rounds % 2 != 0) std::reverse(ways.begin(), ways.end());
    const double reference = median(ways[1].costs);
    const double ratio = median(ways[0].costs) / reference;
    print_row(ways[0], reference, comparison.unit);
    std::printf(" %7.2f %7.2f  %s\n", comparison.limit, comparison.aim, verdict(ratio, comparison));
    for (std::size_t i = 2; i < ways.size(); ++i) {
        print_row(ways[i], reference, comparison.unit);
        std::printf("\n");
    }
    std::fflush(stdout);
    return ratio;
}

void print_figure(const std::string& name, double value, const std::string& unit) {
    std::printf("%-44s %10.2f %s\n", name.c_str(), value, unit.c_str());
    std::fflush(stdout);
}

void keep(std::size_t value) { kept = value; }

}  // namespace bench
