#include "tokens.h"

#include <algorithm>
#include <array>

#include "numbers.h"

namespace wire {

namespace {

struct Escape {
    char plain;
    char written;
};

constexpr std::array<Escape, 6> escapes = {
    {{'"', '"'}, {'\\', '\\'}, {'\r', 'r'}, {'\n', 'n'}, {'\t', 't'}, {'\0', '0'}}};

template <char Escape::*From, char Escape::*To>
bool translate(char from, char& to) noexcept {
    const auto found =
        std::find_if(escapes.begin(), escapes.end(), [from](const Escape& e) { return e.*From == from; });
    if (found == escapes.end()) return false;
    to = (*found).*To;
    return true;
}

// How many bytes stand before the first that is special. Blocks of data pass here, byte by byte.
template <typename IsSpecial>
std::size_t run_length(std::string_view text, IsSpecial is_special) noexcept {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* at = begin;
    while (at != end && !is_special(*at)) ++at;
    return static_cast<std::size_t>(at - begin);
}

bool needs_escape(char c) noexcept {
    return c == '"' || c == '\\' || c == '\r' || c == '\n' || c == '\t' || c == '\0';
}

// The quoted text at the begin of `text`; gives its length with both quotes, or 0 if none stands there.
std::size_t read_quoted(std::string_view text, std::string& out) {
    if (text.empty() || text[0] != '"') return 0;
    out.clear();
    for (std::size_t i = 1; i < text.size(); ++i) {
        const std::size_t run = run_length(text.substr(i), [](char c) { return c == '"' || c == '\\'; });
        out.append(text, i, run);
        i += run;
        if (i < text.size() && text[i] == '"') return i + 1;
        char c = '\0';
        if (++i >= text.size() || !translate<&Escape::written, &Escape::plain>(text[i], c)) return 0;
        out.push_back(c);
    }
    return 0;
}

// The value behind a name: "=12.5", "+=12.5", "=min", "=max" or nothing.
bool read_value(std::string_view text, Target& target) noexcept {
    target.value = 0.0;
    target.form = TargetForm::none;
    if (text.empty()) return true;
    target.form = text[0] == '+' ? TargetForm::relative : TargetForm::absolute;
    if (text[0] == '+') text.remove_prefix(1);
    if (text.empty() || text[0] != '=') return false;
    text.remove_prefix(1);
    if (parse_number(text, target.value)) return true;
    if (target.form == TargetForm::relative || (text != "min" && text != "max")) return false;
    target.form = text == "min" ? TargetForm::lowest : TargetForm::highest;
    return true;
}

// A bare name ends at its value.
std::size_t name_length(std::string_view token) noexcept {
    const std::size_t equals = token.find('=');
    if (equals == std::string_view::npos) return token.size();
    return equals > 0 && token[equals - 1] == '+' ? equals - 1 : equals;
}

}  // namespace

void append_quoted(std::string& out, std::string_view text) {
    out.push_back('"');
    // Runs of plain bytes go over whole.
    for (std::size_t run; (run = run_length(text, needs_escape)) < text.size();) {
        out.append(text.substr(0, run));
        char escaped = text[run];
        translate<&Escape::plain, &Escape::written>(text[run], escaped);
        out.push_back('\\');
        out.push_back(escaped);
        text.remove_prefix(run + 1);
    }
    out.append(text);
    out.push_back('"');
}

void TokenReader::skip_blanks() noexcept {
    const std::size_t begin = m_rest.find_first_not_of(' ');
    m_rest.remove_prefix(begin == std::string_view::npos ? m_rest.size() : begin);
}

bool TokenReader::take(std::size_t length) noexcept {
    if (length == 0 || (length < m_rest.size() && m_rest[length] != ' ')) return false;
    m_rest.remove_prefix(length);
    skip_blanks();
    return true;
}

std::string_view TokenReader::bare() const noexcept {
    if (m_rest.empty() || m_rest[0] == '"') return {};
    return m_rest.substr(0, m_rest.find(' '));
}

bool TokenReader::word(std::string_view& word) noexcept {
    const std::string_view token = bare();
    if (token.empty()) return false;
    word = token;
    return take(token.size());
}

bool TokenReader::keyword(std::string_view expected) noexcept {
    return bare() == expected && take(expected.size());
}

bool TokenReader::text(std::string& text) {
    std::string read;
    if (!take(read_quoted(m_rest, read))) return false;
    text = std::move(read);
    return true;
}

bool TokenReader::name(std::string& name) {
    if (text(name)) return true;
    const std::string_view token = bare();
    if (token.empty()) return false;
    name = token;
    return take(token.size());
}

bool TokenReader::number(double& value) noexcept {
    const std::string_view token = bare();
    double read = 0.0;
    if (!parse_number(token, read)) return false;
    value = read;
    return take(token.size());
}

bool TokenReader::integer(std::int64_t low, std::int64_t high, std::int64_t& value) noexcept {
    const std::string_view token = bare();
    return parse_integer(token, low, high, value) && take(token.size());
}

bool TokenReader::target(Target& target) {
    Target read;
    if (bare() == ";") {
        read.form = TargetForm::end_of_point;
        target = std::move(read);
        return take(1);
    }
    std::size_t length = read_quoted(m_rest, read.name);
    if (length == 0) {
        length = name_length(bare());
        read.name = bare().substr(0, length);
    }
    const std::string_view value = m_rest.substr(length, m_rest.find(' ', length) - length);
    if (length == 0 || !read_value(value, read)) return false;
    target = std::move(read);
    return take(length + value.size());
}

bool TokenReader::names(std::vector<std::string>& names) {
    for (std::string one; !at_end(); names.push_back(one)) {
        if (!name(one)) return false;
    }
    return true;
}

bool TokenReader::numbers(std::vector<double>& numbers) {
    for (double one = 0.0; !at_end(); numbers.push_back(one)) {
        if (!number(one)) return false;
    }
    return true;
}

bool TokenReader::targets(std::vector<Target>& targets) {
    for (Target one; !at_end(); targets.push_back(one)) {
        if (!target(one)) return false;
    }
    return true;
}

}  // namespace wire
