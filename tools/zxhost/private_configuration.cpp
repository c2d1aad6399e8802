#include "private_configuration.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include "exit_status.h"
#include "number_text.h"

namespace zxhost {
namespace {

namespace fs = std::filesystem;

void check_host(const std::string& host) {
    if (host.empty() || host.find_first_of(" \t\r\n;/") != std::string::npos)
        throw HostError(ExitStatus::WrongUsage, "'" + printable(host) + "' is no host name",
                        "give the machine's name or address, as in --host 127.0.0.1");
    // The driver takes such texts for a serial line or a library.
    if (host.find("COM") != std::string::npos || host.find(".dll") != std::string::npos)
        throw HostError(ExitStatus::WrongUsage, "'" + host + "' is taken for a serial line or a library",
                        "write a host name in lower case, or use --config DIR for other connections");
}

// A new directory below the system's place for temporary files.
fs::path make_directory() {
    std::random_device random;
    std::error_code error;
    const fs::path base = fs::temp_directory_path(error);
    for (int attempt = 0; !error && attempt < 100; ++attempt) {
        const fs::path path = base / fmt::format("zxhost-{:08x}{:08x}", random(), random());
        if (!fs::create_directory(path, error)) continue;
        fs::permissions(path, fs::perms::owner_all, error);
        if (!error) return path;
        fs::remove(path);
    }
    throw HostError(ExitStatus::WrongUsage, "no directory for temporary files can be made",
                    "set TMPDIR, or use --config DIR");
}

}  // namespace

PrivateConfiguration::PrivateConfiguration(const std::string& host, int port) {
    check_host(host);
    const fs::path path = make_directory();
    m_directory = path.string();
    std::ofstream ini(path / "m2zendrix.ini", std::ios::binary);
    ini << "[connection]\nhost=" << host << "\nport=" << port << "\n";
}

PrivateConfiguration::~PrivateConfiguration() {
    std::error_code ignored;
    std::filesystem::remove_all(m_directory, ignored);
}

}  // namespace zxhost
