// Is a zip archive whole? Each of its entries is read back.
#pragma once

#include <cstdint>
#include <string>

namespace zxhost {

struct ZipFacts {
    std::uint64_t entries = 0;
    std::uint64_t bytes = 0;  // of all entries, unpacked
};

// Reads every entry to its end and holds it against its length and checksum. The archive has no comment.
// Throws HostError (error of the machine) for what is no whole archive.
ZipFacts check_zip(const std::string& path);

}  // namespace zxhost
