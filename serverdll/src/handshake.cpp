#include "handshake.h"

#include "numbers.h"

namespace serverdll {

namespace {

constexpr std::int64_t oldest_revision = 1;
constexpr std::int64_t newest_revision = 3;
constexpr std::size_t longest_hello = 4096;

bool is_hello(std::string_view line, wire::Hello& hello) {
    wire::ServerLine parsed;
    return wire::parse_server_line(line, parsed) && parsed.keyword == wire::Keyword::hello &&
           wire::parse_hello(parsed.body, hello);
}

std::string judge(const wire::Hello& hello) {
    if (hello.major >= oldest_revision && hello.major <= newest_revision) return "";
    return "protocol revision " + std::to_string(hello.major) + "." + std::to_string(hello.minor) +
           " is not known: 1 to 3 are";
}

std::string no_hello(std::string_view said, const std::string& cause) {
    if (said.empty()) return "no hello from the server: " + cause;
    return "not a machine server: it says \"" + first_bytes(said) + "\" and no hello: " + cause;
}

// Takes the lines that are there. True when the hello has come or can't come any more.
class HelloReader {
public:
    HelloReader(wire::LineSplitter& splitter, bool passes_over, wire::Hello& hello)
        : m_splitter(splitter), m_passesOver(passes_over), m_hello(hello) {}

    bool take_lines() {
        std::string_view line;
        while (m_splitter.next(line) != wire::Framing::none) {
            if (is_hello(line, m_hello)) {
                m_verdict = judge(m_hello);
                return true;
            }
            if (!m_passesOver) {
                m_verdict = "not a machine server: it says \"" + first_bytes(line) + "\"";
                return true;
            }
            if (m_before.empty()) m_before = line;
        }
        if (m_passesOver || m_splitter.rest().size() < longest_hello) return false;
        give_up("no end of the line");
        return true;
    }

    void give_up(const std::string& cause) {
        m_verdict = no_hello(m_before.empty() ? m_splitter.rest() : m_before, cause);
    }

    const std::string& verdict() const { return m_verdict; }

private:
    wire::LineSplitter& m_splitter;
    const bool m_passesOver;
    wire::Hello& m_hello;
    std::string m_before;  // the first line that was passed over
    std::string m_verdict;
};

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
    const std::string_view opening = transport.opening();
    HelloReader reader(splitter, !opening.empty(), hello);
    if (const char* const cause = opening.empty() ? nullptr : transport.write(opening, options.hello))
        return no_hello("", cause);
    while (!reader.take_lines()) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left.count() <= 0) {
            reader.give_up("silent for " + std::to_string(options.hello.count()) + " ms");
            break;
        }
        const ReadResult read = transport.read(splitter.space(), left);
        if (read.status == ReadStatus::ended) {
            reader.give_up(read.cause);
            break;
        }
        splitter.written(read.count);
    }
    return reader.verdict();
}

}  // namespace serverdll
