// What can be chosen of a simulated machine, as options of the program or words of a connection string.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "net/server.h"

namespace zendrix::sim {

struct Settings {
    std::string machine;
    std::string speed = "1";
    std::string blocks;  // a directory of files
    std::string revision = "3.0";
    std::vector<std::string> faults;
    std::int64_t seed = -1;
    std::int64_t capabilities_every = 0;
};

void declare_settings(CLI::App& app, Settings& settings);

// A server for them; `options` gives the rest. Throws std::exception with the reason if a setting is wrong.
std::unique_ptr<Server> make_server(const Settings& settings, ServerOptions options);

}  // namespace zendrix::sim
