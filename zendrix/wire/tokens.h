// Tokens of a line: runs of bytes without blanks, or quoted texts with escapes (docs/protocol.md).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wire {

// Appends `"text"` with its escapes.
void append_quoted(std::string& out, std::string_view text);

// What a position says of its axis.
enum class TargetForm {
    absolute,     // "x"=12.5
    relative,     // "x"+=12.5
    none,         // "x"
    lowest,       // "x"=min
    highest,      // "x"=max
    end_of_point  // ;
};

struct Target {
    std::string name;
    double value = 0.0;  // of the first two forms
    TargetForm form = TargetForm::absolute;
};

// Walks over the tokens of a text that stays alive beside it. Each operation takes the next token if it is of
// that kind, and otherwise answers false and leaves everything as it was.
class TokenReader {
public:
    explicit TokenReader(std::string_view text) noexcept : m_rest(text) { skip_blanks(); }

    bool at_end() const noexcept { return m_rest.empty(); }
    // What isn't taken yet, without leading blanks.
    std::string_view rest() const noexcept { return m_rest; }

    bool word(std::string_view& word) noexcept;        // a bare token, any
    bool keyword(std::string_view expected) noexcept;  // this bare token
    bool text(std::string& text);                      // a quoted text
    bool name(std::string& name);                      // a quoted text or a bare token
    bool number(double& value) noexcept;
    bool integer(std::int64_t low, std::int64_t high, std::int64_t& value) noexcept;
    bool target(Target& target);

    // Everything up to the end; on false the reader stands before the entry that isn't one.
    bool names(std::vector<std::string>& names);
    bool numbers(std::vector<double>& numbers);
    bool targets(std::vector<Target>& targets);

private:
    void skip_blanks() noexcept;
    // Takes `length` bytes if a blank or the end follows.
    bool take(std::size_t length) noexcept;
    std::string_view bare() const noexcept;

    std::string_view m_rest;
};

}  // namespace wire
