// The host tool's watch at 1 kHz with 20 axes: no record may be lost, and what the host's whole process costs
// is held against the time of one core.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "comparison.h"
#include "measured_process.h"
#include "temporary_directory.h"
#include "watchserver.h"

namespace {

constexpr std::size_t records = 3000;
constexpr std::size_t axes = 20;

std::vector<std::string> watch_words(const std::string& port) {
    std::vector<std::string> words{"--host", "127.0.0.1", "--port", port, "watch"};
    for (std::size_t i = 0; i < axes; ++i) words.push_back("a" + std::to_string(i));
    for (const char* word : {"--interval", "1", "--format", "csv", "--count"}) words.emplace_back(word);
    words.push_back(std::to_string(records));
    return words;
}

// Each line of the file must be the server's record of that number, whole.
void check(const std::string& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);  // the head
    std::size_t count = 0;
    while (std::getline(in, line)) {
        const std::string number = std::to_string(++count);
        const std::size_t first = line.find(',', line.find(',') + 1) + 1;
        const bool is_whole = static_cast<std::size_t>(std::count(line.begin(), line.end(), ',')) == axes + 1;
        if (!is_whole || line.rfind(number + ",", 0) != 0 ||
            line.substr(first, number.size() + 1) != number + ",")
            throw std::runtime_error("record " + number + " is not the server's: " + line);
    }
    if (count != records)
        throw std::runtime_error(std::to_string(records) + " records were sent, and " +
                                 std::to_string(count) + " came");
}

}  // namespace

int main() try {
    const TemporaryDirectory directory;
    const bench::WatchServer server(records);
    ::setenv("ZENDRIX_ERRORLOG", directory.path("error.log").c_str(), 1);
    ::setenv("ZENDRIX_TRACE", directory.path("trace.log").c_str(), 1);
    bench::ProcessCost cost;
    bench::print_head("the time of one core");
    bench::compare({.name = "watch of 20 axes at 1 kHz, the whole host",
                    .ours =
                        [&] {
                            const std::string file = directory.path("values.csv");
                            cost = bench::run_measured(HOST_FILE, watch_words(server.port()), file);
                            if (cost.exit_status != 0) throw std::runtime_error("the host failed");
                            check(file);
                            return cost.processor;
                        },
                    .reference = [&] { return cost.wall; },
                    .limit = 0.05,
                    .aim = 0.03,
                    .unit = "s",
                    .rounds = 3});
    bench::print_figure("records sent and received, each run", static_cast<double>(records), "records");
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "watch_bench: %s\n", error.what());
    return EXIT_FAILURE;
}
