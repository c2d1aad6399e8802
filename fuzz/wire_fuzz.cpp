// Any bytes are split into the same lines however they come in, and any line is read as what it is or
// refused, by the readers of both ends.

#include <string>
#include <utility>
#include <vector>

#include "linesplitter.h"
#include "numbers.h"
#include "request.h"
#include "require.h"
#include "serverline.h"
#include "target.h"
#include "tokens.h"

namespace {

constexpr std::size_t line_limit = 200;

// A line, or an empty text for one over the limit.
using Line = std::pair<wire::Framing, std::string>;

std::vector<Line> split(std::string_view bytes, std::size_t piece) {
    wire::LineSplitter splitter(line_limit, 16);
    std::vector<Line> lines;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        splitter.append(bytes.substr(at, piece));
        std::string_view line;
        for (auto framing = splitter.next(line); framing != wire::Framing::none;
             framing = splitter.next(line)) {
            const bool whole = framing == wire::Framing::line;
            REQUIRE(!whole || line.size() <= line_limit);
            lines.emplace_back(framing, whole ? line : "");
        }
    }
    return lines;
}

void read_as_server_line(std::string_view line) {
    wire::ServerLine parsed;
    if (!wire::parse_server_line(line, parsed)) return;
    REQUIRE(parsed.body.size() <= line.size());
    std::string_view text;
    if (wire::message_text(parsed.body, text)) REQUIRE(text.size() + 2 <= parsed.body.size());
    std::int64_t number = 0;
    wire::point_number(parsed.body, number, text);
    wire::Hello hello;
    if (!wire::parse_hello(parsed.body, hello)) return;
    std::string again;
    wire::append_hello(again, hello);
    REQUIRE(again.ends_with("\r\n"));
}

// Each kind of token wherever it stands.
void read_tokens(std::string_view text) {
    wire::TokenReader reader(text);
    std::string name;
    std::string_view word;
    double number = 0;
    std::int64_t integer = 0;
    wire::Target target;
    while (!reader.at_end()) {
        const std::size_t left = reader.rest().size();
        if (!reader.target(target) && !reader.integer(-100, 100, integer) && !reader.number(number) &&
            !reader.text(name) && !reader.name(name) && !reader.word(word)) {
            return;
        }
        REQUIRE(reader.rest().size() < left);
    }
}

void read_as_request(std::string_view line) {
    std::int64_t id = 0;
    std::string_view rest = line;
    if (wire::split_id(line, id, rest)) REQUIRE(id >= 0 && id <= wire::max_id);
    read_tokens(rest);
    std::vector<std::string> names;
    std::vector<double> numbers;
    std::vector<wire::Target> targets;
    wire::TokenReader(rest).names(names);
    wire::TokenReader(rest).targets(targets);
    wire::TokenReader(rest).numbers(numbers);
    wire::scan_numbers(rest, numbers);
}

// Any text comes back from its quoting.
void quote_and_read(std::string_view text) {
    std::string quoted;
    wire::append_quoted(quoted, text);
    wire::TokenReader reader(quoted);
    std::string again;
    REQUIRE(reader.text(again));
    REQUIRE(reader.at_end());
    REQUIRE(again == text);
}

void write_and_read_number(std::string_view text) {
    double number = 0;
    if (!wire::parse_number(text, number)) return;
    std::string written;
    wire::append_shortest(written, number);
    double again = 0;
    REQUIRE(wire::parse_number(written, again));
    REQUIRE(again == number || (again != again && number != number));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = text_of(data, size);
    const auto lines = split(bytes, bytes.size() + 1);
    REQUIRE(split(bytes, 1) == lines);
    REQUIRE(split(bytes, 7) == lines);
    for (const auto& [framing, line] : lines) {
        read_as_server_line(line);
        read_as_request(line);
        write_and_read_number(line);
    }
    quote_and_read(bytes);
    return 0;
}
