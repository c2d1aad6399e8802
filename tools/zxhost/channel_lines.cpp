#include "channel_lines.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <string_view>

#include "moutputchannel.h"

namespace zxhost {
namespace {

constexpr std::array<std::string_view, 4> keywords{"error", "warning", "event", "data"};

// The length of "0007<tab>" at the front of a line, 0 if none stands there.
std::size_t prefix_length(std::string_view line) {
    std::size_t digits = 0;
    while (digits < line.size() && std::isdigit(static_cast<unsigned char>(line[digits]))) ++digits;
    if (digits < 4 || digits == line.size() || line[digits] != '\t') return 0;
    const std::string_view rest = line.substr(digits + 1);
    const bool known = std::any_of(keywords.begin(), keywords.end(), [&](std::string_view keyword) {
        return rest.substr(0, rest.find(' ')) == keyword;
    });
    return known ? digits + 1 : 0;
}

// A catalogue line that was wrapped once more loses both wrappings.
std::string_view unwrapped(std::string_view keyword, std::string_view body) {
    while (body.size() >= 2 && body.front() == '"' && body.back() == '"') {
        body = body.substr(1, body.size() - 2);
        if (body.size() > keyword.size() && body.substr(0, keyword.size()) == keyword &&
            body[keyword.size()] == ' ')
            body.remove_prefix(keyword.size() + 1);
    }
    return body;
}

ChannelLine parse(const std::string& whole) {
    const std::size_t prefix = prefix_length(whole);
    const std::size_t blank = std::min(whole.find(' ', prefix), whole.size());
    ChannelLine line;
    line.whole = whole;
    line.id = whole.substr(0, prefix ? prefix - 1 : 0);
    line.keyword = whole.substr(prefix, blank - prefix);
    const std::string_view body = std::string_view(whole).substr(std::min(blank + 1, whole.size()));
    line.text = line.keyword == "data" ? body : unwrapped(line.keyword, body);
    return line;
}

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find("\r\n", start), text.size());
        const std::string line = text.substr(start, end - start);
        if (lines.empty() || prefix_length(line))
            lines.push_back(line);
        else
            lines.back() += "\r\n" + line;
        start = end + 2;
    }
    return lines;
}

}  // namespace

std::vector<ChannelLine> take_lines(MOutputChannel& channel) {
    std::string text;
    std::vector<ChannelLine> lines;
    if (channel.take_text(text, true))
        for (const std::string& line : split(text)) lines.push_back(parse(line));
    channel.clear_error();
    return lines;
}

}  // namespace zxhost
