// append_number against the library's formatting with six decimals and the zeros behind cut off.
#include <charconv>
#include <cmath>
#include <random>
#include <vector>

#include "append_number.h"
#include "comparison.h"

namespace {

void append_by_library(std::string& text, double value) {
    char buffer[64];
    buffer[0] = ' ';
    char* end = std::to_chars(buffer + 1, buffer + sizeof buffer, value, std::chars_format::fixed, 6).ptr;
    while (end[-1] == '0') --end;
    if (end[-1] == '.') --end;
    text.append(buffer, static_cast<std::size_t>(end - buffer));
}

constexpr std::size_t count = 50'000;

// Values of a measuring volume of a metre, rounded to 1 / scale; 0 leaves all their digits.
std::vector<double> values_of_scale(double scale) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> place(-500.0, 500.0);
    std::vector<double> values(count);
    for (double& value : values) {
        value = place(random);
        if (scale > 0.0) value = std::round(value * scale) / scale;
    }
    return values;
}

template <class Append>
bench::Measure writing(const std::vector<double>& values, Append append) {
    return bench::processor_time(
        [&values, append] {
            std::string text;
            text.reserve(16 * count);
            for (const double value : values) append(text, value);
            bench::keep(text.size());
        },
        count);
}

void compare_scale(const char* name, double scale) {
    const std::vector<double> values = values_of_scale(scale);
    bench::compare({.name = name,
                    .ours = writing(values, append_number),
                    .reference = writing(values, append_by_library),
                    .limit = 0.65,
                    .aim = 0.35});
}

}  // namespace

int main() {
    bench::print_head("std::to_chars with six decimals, zeros cut off, appended");
    compare_scale("append_number, all digits", 0.0);
    compare_scale("append_number, 4 decimals", 1e4);
    compare_scale("append_number, 1 decimal", 10.0);
    compare_scale("append_number, whole numbers", 1.0);
}
