// Requests: what a client says. `ID<tab>WORDS ARGUMENTS`, ended by CR LF.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tokens.h"

namespace wire {

inline constexpr std::int64_t max_id = 2147483647;

// Appends the id with at least four digits, and the tab.
void append_id(std::string& out, std::int64_t id);

// Takes `ID<tab>REST` apart; false if the line doesn't begin that way or the id is out of range.
bool split_id(std::string_view line, std::int64_t& id, std::string_view& rest) noexcept;

// Builds one request. Each operation adds one argument behind a blank.
class RequestWriter {
public:
    RequestWriter(std::int64_t id, std::string_view words);

    RequestWriter& word(std::string_view word);
    RequestWriter& text(std::string_view text);  // quoted
    RequestWriter& number(double value);
    RequestWriter& integer(std::int64_t value);
    RequestWriter& target(std::string_view name, TargetForm form, double value);

    std::int64_t id() const noexcept { return m_id; }
    // The length without the line's end.
    std::size_t length() const noexcept { return m_line.size(); }
    // The whole line with CR LF; nothing may be added afterwards.
    const std::string& finish();

private:
    std::int64_t m_id;
    std::string m_line;
};

}  // namespace wire
