// A configuration directory of this run alone, for a machine that is named on the command line.
#pragma once

#include <string>

namespace zxhost {

class PrivateConfiguration {
public:
    // Makes a directory that only this user can enter, with an m2zendrix.ini for this server in it. Throws
    // HostError (wrong usage) for a host that the file can't carry, or if no directory can be made.
    PrivateConfiguration(const std::string& host, int port);

    // Removes the directory.
    ~PrivateConfiguration();
    PrivateConfiguration(const PrivateConfiguration&) = delete;
    PrivateConfiguration& operator=(const PrivateConfiguration&) = delete;

    const std::string& directory() const { return m_directory; }

private:
    std::string m_directory;
};

}  // namespace zxhost
