#include "replies.h"

#include <limits>

#include "tokens.h"

namespace serverdll {

namespace {

bool take_int(wire::TokenReader& tokens, std::int32_t& value) {
    using Limits = std::numeric_limits<std::int32_t>;
    std::int64_t read = 0;
    if (!tokens.integer(Limits::min(), Limits::max(), read)) return false;
    value = static_cast<std::int32_t>(read);
    return true;
}

template <typename... Doubles>
bool take_doubles(wire::TokenReader& tokens, Doubles&... values) {
    return (tokens.number(values) && ...);
}

}  // namespace

bool read_name(std::string_view line, std::string& name) {
    wire::TokenReader tokens(line);
    return tokens.name(name) && tokens.at_end();
}

bool read_name_and_text(std::string_view line, std::string& name, std::string& text) {
    wire::TokenReader tokens(line);
    return tokens.name(name) && tokens.name(text) && tokens.at_end();
}

bool read_name_and_value(std::string_view line, std::string& name, double& value) {
    wire::TokenReader tokens(line);
    return tokens.name(name) && tokens.number(value) && tokens.at_end();
}

bool read_name_and_id(std::string_view line, std::string& name, long& id) {
    wire::TokenReader tokens(line);
    std::int32_t read = 0;
    if (!tokens.name(name) || !take_int(tokens, read) || !tokens.at_end()) return false;
    id = read;
    return true;
}

bool read_flag(std::string_view line, bool& flag) {
    flag = line == "1";
    return flag || line == "0";
}

bool read_numbers(std::string_view line, double* values, std::size_t count) {
    wire::TokenReader tokens(line);
    for (std::size_t i = 0; i < count; ++i) {
        if (!tokens.number(values[i])) return false;
    }
    return tokens.at_end();
}

bool read_axis(std::string_view line, CAxis& axis) {
    wire::TokenReader tokens(line);
    return tokens.name(axis.name) && take_int(tokens, axis.kind) &&
           take_doubles(tokens, axis.number1, axis.number2, axis.number3, axis.number4, axis.number5,
                        axis.step) &&
           tokens.numbers(axis.values);
}

bool read_probe(std::string_view line, CProbe& probe) {
    wire::TokenReader tokens(line);
    return take_int(tokens, probe.probe) && take_int(tokens, probe.tip) &&
           take_doubles(tokens, probe.x1, probe.x2, probe.x3, probe.x4) && tokens.at_end();
}

bool read_probesystem(std::string_view line, CProbesystemEntry& entry) {
    wire::TokenReader tokens(line);
    return tokens.name(entry.name) && take_int(tokens, entry.id) &&
           take_doubles(tokens, entry.x1, entry.x2, entry.x3, entry.x4, entry.x5, entry.x6) &&
           tokens.at_end();
}

bool read_probesystem_type(std::string_view line, Probesystemtype& type) {
    wire::TokenReader tokens(line);
    return take_int(tokens, type.kind) && take_int(tokens, type.a) && take_int(tokens, type.b) &&
           take_doubles(tokens, type.c, type.d) && tokens.at_end();
}

}  // namespace serverdll
