// A host in one file: loads the plug-in, opens the machine that DIRECTORY/NAME.ini tells of, finds its
// reference marks, drives one axis, and shows where all of them stand.
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <semaphore>

#include "mmachabstract.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"
#include "os/library.h"

// The driver rings from threads of its own; the host sleeps on it, on the one thread that calls the driver.
class Bell : public MMachNotifier {
public:
    int HasNotification() override { return 0; }
    bool Notify() override { return m_rings.release(), true; }
    void wait() { m_rings.try_acquire_for(std::chrono::milliseconds(20)); }

private:
    std::counting_semaphore<> m_rings{0};
};

// Polls a command to its end, or that of the connection. True if it did as it was told.
bool run(MMachAbstract& machine, MMachCommand* started, MOutputChannel& channel, Bell& bell) {
    const std::unique_ptr<MMachCommand> command(started);
    if (!command) return false;  // there is no machine
    while (!command->IsDone() && !channel.is_fatal()) {
        bell.wait();
        machine.PollAsyncErrors();
    }
    const bool good = !channel.has_error() && !channel.is_fatal();
    std::string text;
    if (channel.take_text(text, true)) std::cout << text;
    return good;
}

int main(int argc, char** argv) {
    if (argc != 5) {
        std::cerr << "usage: host DIRECTORY NAME AXIS POSITION\n";
        return EXIT_FAILURE;
    }
    os::SharedLibrary plugin;  // must outlive the driver
    using NewMachine =
        MMachAbstract*(const std::string*, const std::string*, MOutputChannel*, MMachNotifier*);
    NewMachine* const new_machine =
        plugin.load(PLUGIN_FILE) ? plugin.function<NewMachine>("NewMMachAbstract") : nullptr;
    if (!new_machine) {
        std::cerr << plugin.error_text() << '\n';
        return EXIT_FAILURE;
    }

    Bell bell;
    MOutputChannel channel(1);
    const std::string directory = argv[1], name = argv[2];
    const std::unique_ptr<MMachAbstract> machine(new_machine(&name, &directory, &channel, &bell));
    if (!machine || !machine->Open()) {
        std::cerr << "no connection; the error log has the reason\n";
        return EXIT_FAILURE;
    }

    MMachAxisTargets targets;
    targets.m_targets[argv[3]].value = std::atof(argv[4]);
    const bool good = run(*machine, machine->NewMMachInitCommand(&channel, {}), channel, bell) &&
                      run(*machine, machine->NewMMachMoveCommand(&channel, targets), channel, bell);
    for (auto* axis = machine->GetFirstAxisInfo(); axis; axis = machine->GetNextAxisInfo())
        std::cout << axis->name << ' ' << machine->GetAxisValue(axis->name.c_str()) << '\n';
    machine->Close();
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
