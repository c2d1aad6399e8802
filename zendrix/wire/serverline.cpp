#include "serverline.h"

#include <array>

#include "numbers.h"
#include "request.h"
#include "tokens.h"

namespace wire {

namespace {

struct KeywordText {
    std::string_view text;
    Keyword keyword;
};

constexpr std::array<KeywordText, 9> keywords = {{{"point", Keyword::point},
                                                  {"data", Keyword::data},
                                                  {"ready", Keyword::ready},
                                                  {"accepted", Keyword::accepted},
                                                  {"error", Keyword::error},
                                                  {"event", Keyword::event},
                                                  {"watch", Keyword::watch},
                                                  {"warning", Keyword::warning},
                                                  {"hello", Keyword::hello}}};

Keyword find_keyword(std::string_view word) noexcept {
    for (const KeywordText& known : keywords) {
        if (known.text == word) return known.keyword;
    }
    return Keyword::unknown;
}

void append_line(std::string& out, std::int64_t id, std::string_view keyword) {
    append_id(out, id);
    out.append(keyword);
    append_end(out);
}

void append_message(std::string& out, std::int64_t id, std::string_view keyword, std::string_view text) {
    append_id(out, id);
    out.append(keyword);
    out.append(" \"");
    for (const char c : text) out.push_back(c == '\r' || c == '\n' || c == '\0' ? ' ' : c);
    out.append("\"\r\n");
}

// "2.1"
bool parse_revision(std::string_view word, Hello& hello) noexcept {
    const std::size_t dot = word.find('.');
    return dot != std::string_view::npos && parse_integer(word.substr(0, dot), 0, 9999, hello.major) &&
           parse_integer(word.substr(dot + 1), 0, 9999, hello.minor);
}

}  // namespace

bool parse_server_line(std::string_view line, ServerLine& parsed) noexcept {
    std::string_view rest;
    if (!split_id(line, parsed.id, rest)) return false;
    const std::size_t blank = rest.find(' ');
    parsed.keyword = find_keyword(rest.substr(0, blank));
    parsed.body = blank == std::string_view::npos ? std::string_view() : rest.substr(blank + 1);
    return true;
}

bool message_text(std::string_view body, std::string_view& text) noexcept {
    const std::size_t first = body.find('"');
    const std::size_t last = body.rfind('"');
    if (first == last) return false;
    text = body.substr(first + 1, last - first - 1);
    return true;
}

bool point_number(std::string_view body, std::int64_t& number, std::string_view& values) noexcept {
    const std::size_t blank = body.find(' ');
    if (!parse_integer(body.substr(0, blank), 1, INT64_MAX, number)) return false;
    values = blank == std::string_view::npos ? std::string_view() : body.substr(blank + 1);
    return true;
}

bool parse_hello(std::string_view body, Hello& hello) {
    TokenReader tokens(body);
    std::string_view revision;
    if (!tokens.text(hello.name) || !tokens.word(revision) || !parse_revision(revision, hello)) return false;
    hello.simulated = tokens.keyword("simulated");
    return (hello.simulated || tokens.keyword("machine")) && tokens.at_end();
}

void append_hello(std::string& out, const Hello& hello) {
    append_id(out, 0);
    out.append("hello ");
    append_quoted(out, hello.name);
    out.push_back(' ');
    append_integer(out, hello.major);
    out.push_back('.');
    append_integer(out, hello.minor);
    out.append(hello.simulated ? " simulated" : " machine");
    append_end(out);
}

void append_accepted(std::string& out, std::int64_t id) { append_line(out, id, "accepted"); }

void append_ready(std::string& out, std::int64_t id) { append_line(out, id, "ready"); }

void append_error(std::string& out, std::int64_t id, std::string_view text) {
    append_message(out, id, "error", text);
}

void append_warning(std::string& out, std::int64_t id, std::string_view text) {
    append_message(out, id, "warning", text);
}

void append_event(std::string& out, std::string_view text) { append_message(out, 0, "event", text); }

void append_data(std::string& out, std::int64_t id) {
    append_id(out, id);
    out.append("data");
}

void append_watch(std::string& out, std::int64_t id) {
    append_id(out, id);
    out.append("watch");
}

void append_point(std::string& out, std::int64_t id, std::int64_t number) {
    append_id(out, id);
    out.append("point ");
    append_integer(out, number);
}

void append_end(std::string& out) { out.append("\r\n"); }

}  // namespace wire
