#include "blocks.h"

#include <fmt/format.h>

#include <array>
#include <chrono>
#include <limits>

#include "exit_status.h"
#include "mmachabstract.h"
#include "tokens.h"
#include "verb_host.h"

namespace zxhost {
namespace {

// A block that tells of the others: a line `"NAME" BYTES` each.
constexpr const char* list_block = "blocks.list";

BlockEntry entry_of(std::string_view line) {
    wire::TokenReader tokens(line);
    BlockEntry entry;
    std::int64_t bytes = 0;
    if (!tokens.text(entry.name) || !tokens.integer(0, std::numeric_limits<std::int64_t>::max(), bytes) ||
        !tokens.at_end())
        throw HostError(ExitStatus::MachineError, "the machine's list of blocks can't be understood",
                        "see what it says with: zxhost receive blocks.list -");
    entry.bytes = static_cast<std::uint64_t>(bytes);
    return entry;
}

}  // namespace

std::string receive_block(VerbHost& host, const std::string& name) {
    using Clock = std::chrono::steady_clock;
    std::string data;
    const auto start = Clock::now();
    host.run(
        {.name = "receive",
         .class_name = MMachReceiveCommand::ClassName(),
         .make =
             [&](MOutputChannel* channel) { return host.machine().NewMMachReceiveCommand(channel, name); },
         .progress =
             [&] {
                 const std::chrono::duration<double> passed = Clock::now() - start;
                 return fmt::format("{:.1f} s", passed.count());
             },
         .finish =
             [&](MMachCommand& command) {
                 data = std::move(static_cast<MMachReceiveCommand&>(command).m_data);
             }});
    return data;
}

// The driver hands all of it to the machine before the command is there: there is no progress between.
void send_block(VerbHost& host, const std::string& name, const std::string& data) {
    host.show_progress("send: " + size_text(data.size()));
    host.run(
        {.name = "send", .class_name = MMachSendCommand::ClassName(), .make = [&](MOutputChannel* channel) {
             return host.machine().NewMMachSendCommand(channel, name, data);
         }});
}

std::vector<BlockEntry> list_blocks(VerbHost& host) {
    const std::string list = receive_block(host, list_block);
    std::vector<BlockEntry> entries;
    for (std::string_view rest = list; !rest.empty();) {
        const std::size_t end = rest.find('\n');
        entries.push_back(entry_of(rest.substr(0, end)));
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    }
    return entries;
}

std::string size_text(std::uint64_t bytes) {
    if (bytes < 1000) return fmt::format("{} bytes", bytes);
    constexpr std::array units{"kB", "MB", "GB"};
    double size = static_cast<double>(bytes) / 1000.0;
    std::size_t unit = 0;
    for (; size >= 999.95 && unit + 1 < units.size(); ++unit) size /= 1000.0;
    return fmt::format("{:.1f} {}", size, units[unit]);
}

}  // namespace zxhost
