// What a server says: `ID<tab>KEYWORD BODY`, ended by CR LF. Reading for the client, writing for the server.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace wire {

enum class Keyword { accepted, data, point, error, warning, ready, event, watch, hello, unknown };

struct ServerLine {
    std::int64_t id = 0;
    Keyword keyword = Keyword::unknown;
    std::string_view body;  // behind the keyword and its blank
};

// False if the line doesn't begin with an id and a tab. A keyword that isn't known is `unknown`.
bool parse_server_line(std::string_view line, ServerLine& parsed) noexcept;

// The text of an error, a warning or an event: what stands between the first and the last quote.
bool message_text(std::string_view body, std::string_view& text) noexcept;

// The point's number; `values` are the texts behind it.
bool point_number(std::string_view body, std::int64_t& number, std::string_view& values) noexcept;

struct Hello {
    std::string name;
    std::int64_t major = 0;
    std::int64_t minor = 0;
    bool simulated = false;
};

bool parse_hello(std::string_view body, Hello& hello);

// Whole lines, with their ends, appended to `out`. Message texts stand as they are; CR, LF and NUL in them
// become blanks.
void append_hello(std::string& out, const Hello& hello);
void append_accepted(std::string& out, std::int64_t id);
void append_ready(std::string& out, std::int64_t id);
void append_error(std::string& out, std::int64_t id, std::string_view text);
void append_warning(std::string& out, std::int64_t id, std::string_view text);
void append_event(std::string& out, std::string_view text);

// The begin of a line that the caller completes with " VALUE"... and append_end.
void append_data(std::string& out, std::int64_t id);
void append_watch(std::string& out, std::int64_t id);
void append_point(std::string& out, std::int64_t id, std::int64_t number);
void append_end(std::string& out);

}  // namespace wire
