// What the command line says to all verbs.
#pragma once

#include <string>

namespace zxhost {

enum class Format { AsTable, AsJson };

struct Settings {
    std::string plugin;              // file of the plug-in; empty: the one beside the program
    std::string host;                // empty: what the configuration says
    int port = 7073;                 // counts with `host`
    std::string config;              // configuration directory; counts without `host`
    std::string name = "m2zendrix";  // configuration name
    unsigned trace = 0;
    Format format = Format::AsTable;
    bool progress = false;  // show progress also where no person watches
    bool lines = false;     // show the machine's lines on standard error
};

}  // namespace zxhost
