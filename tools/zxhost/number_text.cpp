#include "number_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace zxhost {

std::optional<double> number_from(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<std::int32_t> whole_number_from(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::string fixed_text(double value, int decimals) {
    if (std::isnan(value)) return "unknown";
    std::string text = fmt::format("{:.{}f}", value, decimals);
    if (text.find_first_not_of("-0.") == std::string::npos && text[0] == '-') text.erase(0, 1);
    return text;
}

std::string shortest_text(double value) { return fmt::format("{}", value); }

std::string_view unit_of(std::string_view axis) {
    struct Unit {
        std::string_view axis, unit;
    };
    static constexpr std::array<Unit, 12> units{{{"c", "deg"},
                                                 {"ha", "deg"},
                                                 {"hb", "deg"},
                                                 {"hc", "deg"},
                                                 {"ka", "deg"},
                                                 {"kb", "deg"},
                                                 {"time", "s"},
                                                 {"speed", "mm/s"},
                                                 {"scanspeed", "mm/s"},
                                                 {"init", ""},
                                                 {"probe", ""},
                                                 {"tip", ""}}};
    const auto found =
        std::find_if(units.begin(), units.end(), [&](const Unit& unit) { return unit.axis == axis; });
    return found == units.end() ? "mm" : found->unit;
}

std::string printable(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x20 && c != '\t') || byte == 0x7f)
            out += fmt::format("\\x{:02x}", byte);
        else
            out += c;
    }
    return out;
}

}  // namespace zxhost
