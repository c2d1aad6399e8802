#include "handshake.h"

#include "numbers.h"

namespace serverdll {

namespace {

constexpr std::int64_t oldest_revision = 1;
constexpr std::int64_t newest_revision = 3;
constexpr std::size_t longest_hello = 4096;

std::string judge(std::string_view line, wire::Hello& hello) {
    wire::ServerLine parsed;
    if (!wire::parse_server_line(line, parsed) || parsed.keyword != wire::Keyword::hello ||
        !wire::parse_hello(parsed.body, hello)) {
        return "not a machine server: it says \"" + first_bytes(line) + "\"";
    }
    if (hello.major >= oldest_revision && hello.major <= newest_revision) return "";
    return "protocol revision " + std::to_string(hello.major) + "." + std::to_string(hello.minor) +
           " is not known: 1 to 3 are";
}

std::string no_hello(const wire::LineSplitter& splitter, const std::string& cause) {
    const std::string_view said = splitter.rest();
    if (said.empty()) return "no hello from the server: " + cause;
    return "not a machine server: it says \"" + first_bytes(said) + "\" and no hello: " + cause;
}

}  // namespace

std::string first_bytes(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes.substr(0, 40)) {
        const unsigned value = static_cast<unsigned char>(c);
        if (value >= 0x20 && value < 0x7f) {
            text.push_back(c);
        } else {
            text.append("\\x");
            text.push_back(digits[value / 16]);
            text.push_back(digits[value % 16]);
        }
    }
    return text;
}

std::string read_hello(Transport& transport, wire::LineSplitter& splitter, const ClientOptions& options,
                       wire::Hello& hello) {
    const Clock::time_point end = Clock::now() + options.hello;
    while (splitter.rest().size() < longest_hello) {
        std::string_view line;
        if (splitter.next(line) != wire::Framing::none) return judge(line, hello);
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            return no_hello(splitter, "silent for " + std::to_string(options.hello.count()) + " ms");
        const ReadResult read = transport.read(splitter.space(), left);
        if (read.status == ReadStatus::ended) return no_hello(splitter, read.cause);
        splitter.written(read.count);
    }
    return no_hello(splitter, "no end of the line");
}

}  // namespace serverdll
