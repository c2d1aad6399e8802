#include "settings.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "machine/blockstore.h"
#include "machine/descriptionreader.h"
#include "machine/error.h"
#include "messagecatalogue.h"
#include "numbers.h"

namespace zendrix::sim {

namespace {

std::unique_ptr<Clock> make_clock(const std::string& speed) {
    if (speed == "max") return std::make_unique<LeapingClock>();
    double factor = 0.0;
    if (!wire::parse_number(speed, factor) || !(factor >= 0.001 && factor <= 1000000.0)) {
        throw std::invalid_argument("--speed: \"" + speed + "\" is neither max nor a factor from 0.001 on");
    }
    return std::make_unique<ScaledClock>(factor);
}

// Each file of the directory is a block of the file's name.
void read_blocks(const std::string& directory, std::map<std::string, std::string>& blocks) {
    std::error_code error;
    const std::filesystem::directory_iterator entries(directory, error);
    if (error) throw std::invalid_argument("--blocks: \"" + directory + "\": " + error.message());
    for (const std::filesystem::directory_entry& entry : entries) {
        if (!entry.is_regular_file()) continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::ostringstream content;
        if (entry.file_size() > 0) content << file.rdbuf();
        if (!file || !content) throw std::invalid_argument("--blocks: can't read " + entry.path().string());
        blocks[entry.path().filename().string()] = std::move(content).str();
    }
}

void add_blocks(const std::string& directory, BlocksDescription& blocks) {
    read_blocks(directory, blocks.blocks);
    try {
        const BlockStore store(blocks);
    } catch (const Refused& refused) {
        throw std::invalid_argument("--blocks: \"" + directory +
                                    "\": " + error_text(static_cast<int>(refused.error)));
    }
}

Revision parse_revision(const std::string& text) {
    const std::size_t point = text.find('.');
    std::int64_t major = 0;
    std::int64_t minor = 0;
    const bool is_good = point != std::string::npos &&
                         wire::parse_integer(text.substr(0, point), 0, 1000000, major) &&
                         wire::parse_integer(text.substr(point + 1), 0, 1000000, minor);
    if (!is_good) throw std::invalid_argument("--revision: \"" + text + "\" is not of the form MAJOR.MINOR");
    return {static_cast<int>(major), static_cast<int>(minor)};
}

}  // namespace

void declare_settings(CLI::App& app, Settings& settings) {
    app.add_option("--machine", settings.machine, "Machine file (default: built in, as machines/round4.ini)");
    app.add_option("--speed", settings.speed, "Machine time against real time, or max")
        ->capture_default_str();
    app.add_option("--seed", settings.seed, "Seed of the probing noise (default: the machine's)")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--blocks", settings.blocks, "Directory of files that are blocks from the begin");
    app.add_option("--fault", settings.faults,
                   "NAME[=VALUE]@PLACE:N[+EVERY], as in close@request:5; repeatable")
        ->allow_extra_args(false);
    app.add_option("--capabilities-change-every", settings.capabilities_every,
                   "Send the event \"capabilities changed\" every so many ms")
        ->check(CLI::NonNegativeNumber);
    app.add_option("--revision", settings.revision, "Protocol revision to announce")->capture_default_str();
}

std::unique_ptr<Server> make_server(const Settings& settings, ServerOptions options) {
    MachineDescription machine =
        settings.machine.empty() ? builtin_machine() : read_machine(settings.machine);
    if (settings.seed >= 0) machine.seed = static_cast<std::uint64_t>(settings.seed);
    if (!settings.blocks.empty()) add_blocks(settings.blocks, machine.blocks);
    options.revision = parse_revision(settings.revision);
    for (const std::string& fault : settings.faults) options.faults.add(fault);
    options.capabilities_change_every = std::chrono::milliseconds(settings.capabilities_every);
    return std::make_unique<Server>(std::move(machine), std::move(options), make_clock(settings.speed));
}

}  // namespace zendrix::sim
