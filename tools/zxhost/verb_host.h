// What every verb works with: the open machine, its messages shown, its commands run with progress.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "driver_call.h"
#include "host_loop.h"
#include "open_machine.h"
#include "progress.h"
#include "settings.h"
#include "table.h"

namespace zxhost {

// The streams of the program.
struct Streams {
    std::ostream& out;            // results
    std::ostream& err;            // messages and progress
    bool out_is_watched = false;  // a terminal is at its end
    bool err_is_watched = false;
};

// One action of the machine as a verb asks for it.
struct Action {
    std::string name;        // as the machine calls it, "move"
    const char* class_name;  // of the command, which the machine must know
    HostLoop::MakeCommand make;
    HostLoop::TakeResults take = nullptr;
    std::function<std::string()> progress = nullptr;  // its state in one line
    HostLoop::TakeResults finish = nullptr;           // see HostLoop::Job
    bool needs_machine = true;
};

class VerbHost : private LoopListener {
public:
    using LineSink = std::function<void(const ChannelLine&)>;

    VerbHost(const Settings& settings, const Streams& streams);

    MMachAbstract& machine();
    const std::string& address() const { return m_open.address(); }
    const Settings& settings() const { return m_settings; }
    std::ostream& out() { return m_streams.out; }
    std::ostream& err() { return m_streams.err; }
    bool wants_json() const { return m_settings.format == Format::AsJson; }

    // Each line of the machine goes here instead of being shown in the common way.
    void set_line_sink(LineSink sink) { m_sink = std::move(sink); }

    // Runs the action to its end; in a rehearsal it is only examined. Throws HostError if the machine doesn't
    // know it, refuses, fails or is aborted, and if the connection is lost.
    void run(const Action& action);

    // A query of the driver, which tells of a failure at most by a neutral answer: throws HostError if the
    // machine said an error meanwhile, if the driver threw, or if the connection is lost. `function` returns
    // the answer.
    template <class Function>
    auto ask(const std::string& what, Function&& function);

    void poll() { m_loop.poll(); }

    // Tells how far it is with what no action tells of.
    void show_progress(const std::string& text) { m_progress.show(text); }
    void end_progress() { m_progress.end(); }
    void wait();

    // The rows as a table or as JSON.
    void show(const std::vector<Column>& columns, const Json& rows);

private:
    void on_line(const ChannelLine& line) override;
    void on_wake() override;
    void on_abort() override;
    void show_progress(const Action& action);
    void begin_query();
    void end_query(const std::string& what);  // throws HostError

    Settings m_settings;
    Streams m_streams;
    std::unique_ptr<OpenMachine> m_own;  // null where one is borrowed
    OpenMachine& m_open;
    Progress m_progress;
    HostLoop m_loop;
    LineSink m_sink;
    const Action* m_action = nullptr;
    bool m_in_query = false;
    std::vector<std::string> m_query_errors;
};

template <class Function>
auto VerbHost::ask(const std::string& what, Function&& function) {
    begin_query();
    try {
        auto answer = driver_call(what, ExitStatus::MachineError, std::forward<Function>(function));
        end_query(what);
        return answer;
    } catch (...) {
        end_query(what);  // what the machine said against it is the better story
        throw;
    }
}

}  // namespace zxhost
