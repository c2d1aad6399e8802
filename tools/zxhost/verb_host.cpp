#include "verb_host.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "exit_status.h"
#include "number_text.h"
#include "rehearsal.h"
#include "way_out.h"

namespace zxhost {
namespace {

ProgressStyle style_of(const Settings& settings, const Streams& streams) {
    if (streams.err_is_watched) return ProgressStyle::InPlace;
    return settings.progress ? ProgressStyle::Lines : ProgressStyle::Off;
}

HostError error_of(const std::string& name, bool aborted, const std::vector<std::string>& errors) {
    std::string text = name + ": ";
    if (aborted) text += "aborted";
    for (const std::string& error : errors) text += (text.ends_with(": ") ? "" : "; ") + printable(error);
    return HostError(ExitStatus::MachineError, text,
                     errors.empty() ? "" : way_out_of(name + ": " + errors.front()));
}

}  // namespace

VerbHost::VerbHost(const Settings& settings, const Streams& streams)
    : m_settings(settings),
      m_streams(streams),
      m_own(settings.borrow ? nullptr : std::make_unique<OpenMachine>(settings)),
      m_open(m_own ? *m_own : settings.borrow()),
      m_progress(streams.err, style_of(settings, streams)),
      m_loop(m_open.machine(), m_open.channel(), m_open.notifier(), *this) {}

MMachAbstract& VerbHost::machine() {
    return m_settings.rehearsal ? m_settings.rehearsal->machine() : m_open.machine();
}

void VerbHost::run(const Action& action) {
    if (m_settings.rehearsal) return m_settings.rehearsal->examine(action);
    if (!machine().IsCommandEnabled(action.class_name))
        throw HostError(ExitStatus::MachineError, action.name + ": this machine has no such command",
                        "see what it knows with: zxhost info");
    m_action = &action;
    const CommandResult result = m_loop.run({action.make, action.take, action.finish, action.needs_machine});
    m_action = nullptr;
    if (action.progress && result.errors.empty()) show_progress(action);
    m_progress.end();
    if (!result.good()) throw error_of(action.name, result.aborted, result.errors);
}

void VerbHost::wait() {
    if (m_settings.rehearsal) throw RehearsalIsOver();  // what a verb waits for doesn't come
    m_loop.wait();
}

void VerbHost::begin_query() {
    m_in_query = false;
    poll();  // what came before belongs to no query
    m_query_errors.clear();
    m_in_query = true;
}

void VerbHost::end_query(const std::string& what) {
    if (!m_in_query) return;
    poll();
    m_in_query = false;
    if (!m_query_errors.empty()) throw error_of(what, false, m_query_errors);
}

void VerbHost::on_line(const ChannelLine& line) {
    if (m_in_query && line.keyword == "error") m_query_errors.push_back(line.text);
    if (m_sink) return m_sink(line);
    // A verb tells the errors of its own command, and a lost connection, at its end.
    const bool is_own_error =
        line.keyword == "error" && (m_in_query || line.id != "0000" || line.text.rfind("fatal:", 0) == 0);
    const bool is_plain = (line.keyword == "event" && !m_settings.events) || line.keyword == "data";
    if (!m_settings.lines && (is_own_error || is_plain)) return;
    m_progress.end();
    if (m_settings.lines)
        m_streams.err << printable(line.whole) << std::endl;
    else
        m_streams.err << line.keyword << ": " << printable(line.text) << std::endl;
}

void VerbHost::on_wake() {
    if (m_action && m_action->progress && m_progress.is_due()) show_progress(*m_action);
}

void VerbHost::show_progress(const Action& action) {
    m_progress.show(action.name + ": " + action.progress());
}

void VerbHost::on_abort() {
    m_progress.end();
    m_streams.err << "aborting; press Ctrl-C again to leave at once" << std::endl;
}

void VerbHost::show(const std::vector<Column>& columns, const Json& rows) {
    if (wants_json())
        write_json(out(), rows);
    else
        write_table(out(), columns, rows);
}

}  // namespace zxhost
