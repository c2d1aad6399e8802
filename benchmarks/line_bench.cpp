// MFastFileReader::ReadLine over a file of 100 MB against getline(3).
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "comparison.h"
#include "fastfile.h"
#include "own_process.h"
#include "temporary_directory.h"

namespace {

constexpr std::size_t file_size = 100'000'000;
constexpr int rounds = 9;

struct Lines {
    std::string path;
    std::size_t count = 0;
    char last_of_end = '\n';  // what getdelim looks for
};

Lines write_lines(const std::string& path, std::size_t shortest, std::size_t longest, const char* end) {
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::size_t> length(shortest, longest);
    std::ofstream out(path, std::ios::binary);
    const std::string text(longest, 'x');
    Lines lines{path, 0, std::string(end).back()};
    for (std::size_t size = 0; size < file_size; ++lines.count) {
        const std::string line = text.substr(0, length(random)) + end;
        out << line;
        size += line.size();
    }
    return lines;
}

struct Seen {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

Seen read_ours(const Lines& lines) {
    MFastFileReader reader(lines.path.c_str());
    Seen seen;
    for (std::string line; !reader.IsEOF() && reader.ReadLine(line); ++seen.count) seen.bytes += line.size();
    return seen;
}

Seen read_getline(const Lines& lines) {
    std::FILE* const file = std::fopen(lines.path.c_str(), "r");
    char* line = nullptr;
    std::size_t room = 0;
    Seen seen;
    for (ssize_t size; (size = ::getdelim(&line, &room, lines.last_of_end, file)) >= 0; ++seen.count) {
        seen.bytes += static_cast<std::size_t>(size);
    }
    std::free(line);
    std::fclose(file);
    return seen;
}

using Read = Seen (*)(const Lines&);

bench::Measure reading(Read read, const Lines& lines) {
    return bench::in_own_process([read, lines] {
        return bench::processor_time(
            [read, lines] {
                if (read(lines).count != lines.count) std::abort();
            },
            lines.count);
    });
}

void compare_reading(const std::string& name, const Lines& lines, double limit, double aim) {
    bench::compare({.name = name,
                    .ours = reading(read_ours, lines),
                    .reference = reading(read_getline, lines),
                    .limit = limit,
                    .aim = aim,
                    .rounds = rounds});
    std::remove(lines.path.c_str());
}

}  // namespace

int main() {
    const TemporaryDirectory directory;
    const std::string path = directory.path("lines.txt");
    bench::print_head("getline(3), getdelim(3) for lines ended by CR; ns a line of a file of 100 MB");
    compare_reading("ReadLine, 5 to 30 bytes", write_lines(path, 5, 30, "\n"), 1.0, 0.8);
    compare_reading("ReadLine, 5 to 30 bytes, CR LF", write_lines(path, 5, 30, "\r\n"), 1.0, 0.8);
    compare_reading("ReadLine, 5 to 30 bytes, CR alone", write_lines(path, 5, 30, "\r"), 1.0, 0.8);
    compare_reading("ReadLine, 100 to 900 bytes", write_lines(path, 100, 900, "\n"), 1.3, 1.0);
    compare_reading("ReadLine, 100 to 900 bytes, CR LF", write_lines(path, 100, 900, "\r\n"), 1.3, 1.0);
    compare_reading("ReadLine, 100 to 900 bytes, CR alone", write_lines(path, 100, 900, "\r"), 1.3, 1.0);
}
