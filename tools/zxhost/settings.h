// What the command line says to all verbs.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zxhost {

class OpenMachine;
class Rehearsal;

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
    bool events = false;    // show its events on standard error

    // In a shell or script: the machine that is open there. Throws HostError if it is lost. None: each verb
    // opens a machine of its own.
    std::function<OpenMachine&()> borrow = nullptr;
    std::vector<std::string> scripts;  // the files that are being played, the outermost first
    Rehearsal* rehearsal = nullptr;    // actions are examined and not run
};

}  // namespace zxhost
