#include "list_verb.h"
#include "mmachabstract.h"
#include "positions.h"
#include "verb_host.h"

namespace zxhost {
namespace {

void home(const Settings& settings, const Streams& streams, const std::vector<std::string>&) {
    VerbHost host(settings, streams);
    const std::vector<std::string> axes = active_axes(host.machine());
    host.run(
        {.name = "movehome",
         .class_name = MMachMovehomeCommand::ClassName(),
         .make = [&](MOutputChannel* channel) { return host.machine().NewMMachMovehomeCommand(channel); },
         .progress = [&] { return positions_text(host.machine(), axes); }});
    show_positions(host, axes);
}

}  // namespace

void add_home(CLI::App& app, Program& program) {
    add_list_verb(
        app, program,
        {.name = "home", .description = "Drive to the machine's home position", .example = "zxhost home"},
        home);
}

}  // namespace zxhost
