// Named blocks of data between this program and the machine.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zxhost {

class VerbHost;

// The name under which the driver gives an archive of its own configuration directory, and the part of a name
// that makes a block a firmware configuration.
inline constexpr std::string_view backup_block = "backup.m2zendrix_dll";
inline constexpr std::string_view firmware_mark = "firmware.config";

// Throws HostError if the machine refuses. In a rehearsal nothing comes.
std::string receive_block(VerbHost& host, const std::string& name);
void send_block(VerbHost& host, const std::string& name, const std::string& data);

struct BlockEntry {
    std::string name;
    std::uint64_t bytes = 0;
};

// What the machine has, sorted by name. Throws HostError.
std::vector<BlockEntry> list_blocks(VerbHost& host);

// 1234567 as "1.2 MB".
std::string size_text(std::uint64_t bytes);

}  // namespace zxhost
