// The verbs: each adds itself to the command line, and puts what it does into the program when it is chosen.
#pragma once

#include <functional>

#include "settings.h"

namespace CLI {
class App;
}

namespace zxhost {

struct Streams;

struct Program {
    Settings settings;
    std::function<void(const Streams&)> verb;  // the chosen one; throws HostError
};

void add_info(CLI::App& app, Program& program);
void add_axes(CLI::App& app, Program& program);
void add_get(CLI::App& app, Program& program);
void add_set(CLI::App& app, Program& program);
void add_init(CLI::App& app, Program& program);
void add_move(CLI::App& app, Program& program);
void add_zero(CLI::App& app, Program& program);
void add_home(CLI::App& app, Program& program);
void add_circle(CLI::App& app, Program& program);
void add_scan(CLI::App& app, Program& program);
void add_scan_files(CLI::App& scan, Program& program);  // its parts that read a file
void add_events(CLI::App& app, Program& program);
void add_session(CLI::App& app, Program& program);
void add_run(CLI::App& app, Program& program);
void add_shell(CLI::App& app, Program& program);
void add_probes(CLI::App& app, Program& program);
void add_probe(CLI::App& app, Program& program);
void add_probesystems(CLI::App& app, Program& program);
void add_probesystem(CLI::App& app, Program& program);
void add_keypad(CLI::App& app, Program& program);
void add_spin(CLI::App& app, Program& program);
void add_wobble(CLI::App& app, Program& program);
void add_can(CLI::App& app, Program& program);
void add_raster(CLI::App& app, Program& program);
void add_components(CLI::App& app, Program& program);
void add_watch(CLI::App& app, Program& program);
void add_blocks(CLI::App& app, Program& program);
void add_send(CLI::App& app, Program& program);
void add_receive(CLI::App& app, Program& program);
void add_backup(CLI::App& app, Program& program);
void add_firmware(CLI::App& app, Program& program);
void add_magazine(CLI::App& app, Program& program);

// These look at what stands before an open machine.
void add_config(CLI::App& app, Program& program);
void add_doctor(CLI::App& app, Program& program);

}  // namespace zxhost
