#include "protocol/requests.h"

#include <algorithm>
#include <array>

namespace zendrix::sim {

namespace {

using C = Conversation;
using enum Request::Kind;

bool always(const Machine&) { return true; }
bool scanning(const Machine& machine) { return machine.has_scanning(); }

template <bool AxisDescription::*Property>
bool some(const Machine& machine) {
    return std::any_of(machine.axes().begin(), machine.axes().end(),
                       [](const Axis& axis) { return axis.is.*Property; });
}
constexpr auto initializing = some<&AxisDescription::needs_init>;
constexpr auto spinning = some<&AxisDescription::can_spin>;
constexpr auto limited = some<&AxisDescription::has_limits>;

bool keypad(const Machine& machine) { return machine.has_keypad(); }
bool wobbling(const Machine& machine) { return machine.wobble().has_value(); }
bool probes(const Machine& machine) { return machine.probes().exists(); }
bool changing(const Machine& machine) { return machine.probes().exists() && machine.probes().has_changer(); }
bool probesystems(const Machine& machine) { return machine.probesystems().exists(); }

bool arcs(const Machine& machine) {
    const auto has = [&](const char* name) {
        return std::any_of(machine.axes().begin(), machine.axes().end(),
                           [&](const Axis& axis) { return axis.is.name == name; });
    };
    return has("x") && has("y") && has("z");
}

constexpr std::array table{
    Request{"machine name", query, &C::machine_name, always},
    Request{"machine revision", query, &C::machine_revision, always},
    Request{"machine serial", query, &C::machine_serial, always},
    Request{"machine get", query, &C::machine_get, always},
    Request{"machine release", query, &C::machine_release, always},
    Request{"master", query, &C::master, always},
    Request{"ping", query, &C::ping, always},
    Request{"commands", query, &C::commands, always},
    Request{"components", query, &C::components, always},
    Request{"options", query, &C::options, always},
    Request{"capabilities", query, &C::capabilities, always},
    Request{"init list", query, &C::init_list, initializing},
    Request{"init active", query, &C::init_active, initializing},
    Request{"keypad list", query, &C::keypad_list, keypad},
    Request{"keypad active", query, &C::keypad_active, keypad},
    Request{"spin list", query, &C::spin_list, spinning},
    Request{"spin active", query, &C::spin_active, spinning},
    Request{"get", query, &C::get, always},
    Request{"scanaxis", query, &C::scanaxis, always},
    Request{"moveaxis", query, &C::moveaxis, always},
    Request{"movezeroaxis", query, &C::movezeroaxis, always},
    Request{"movelimitaxis", query, &C::movelimitaxis, limited},
    Request{"watch", query, &C::watch, always},
    Request{"abort", query, &C::abort, always},
    Request{"reset", action, &C::reset, always},
    Request{"modulo", action, &C::modulo, always},
    Request{"movebase", action, &C::movebase, always},
    Request{"scanbase", action, &C::scanbase, scanning},
    Request{"init", transaction, &C::init, always},
    Request{"set", transaction, &C::set, always},
    Request{"move", transaction, &C::move, always},
    Request{"movezero", transaction, &C::movezero, scanning},
    Request{"movepoly", transaction, &C::movepoly, always},
    Request{"movecircle", transaction, &C::movecircle, arcs},
    Request{"movecone", transaction, &C::movecone, arcs},
    Request{"movehome", transaction, &C::movehome, always},
    Request{"scan", transaction, &C::scan, scanning},
    Request{"scanpoint", transaction, &C::scanpoint, scanning},
    Request{"scanpoly", transaction, &C::scanpoly, scanning},
    Request{"scancircle", transaction, &C::scancircle, scanning},
    Request{"scancone", transaction, &C::scancone, scanning},
    Request{"scandata", transaction, &C::scandata, scanning},
    Request{"wobble get", query, &C::wobble_get, wobbling},
    Request{"wobble", action, &C::wobble, wobbling},
    Request{"keypad enable", transaction, &C::keypad_enable, keypad},
    Request{"keypad disable", transaction, &C::keypad_disable, keypad},
    Request{"spin enable", action, &C::spin_enable, spinning},
    Request{"spin disable", action, &C::spin_disable, spinning},
    Request{"probe info", query, &C::probe_info, probes},
    Request{"probe list", query, &C::probe_list, probes},
    Request{"probe define", action, &C::probe_define, probes},
    Request{"probe delete", action, &C::probe_delete, probes},
    Request{"probe load", transaction, &C::probe_load, probes},
    Request{"probe change", transaction, &C::probe_change, changing},
    Request{"probe unload", transaction, &C::probe_unload, probes},
    Request{"probe offset", transaction, &C::probe_offset, probes},
    Request{"probesystem list", query, &C::probesystem_list, probesystems},
    Request{"probesystem records", query, &C::probesystem_records, probesystems},
    Request{"probesystem info", query, &C::probesystem_info, probesystems},
    Request{"probesystem type", query, &C::probesystem_type, probesystems},
    Request{"probesystem define", action, &C::probesystem_define, probesystems},
    Request{"probesystem delete", action, &C::probesystem_delete, probesystems},
    Request{"probesystem load", transaction, &C::probesystem_load, probesystems},
    Request{"probesystem unload", transaction, &C::probesystem_unload, probesystems},
    Request{"sim", query, &C::control, always},
    Request{"send", action, &C::send, always},
    Request{"send begin", action, &C::send_begin, always},
    Request{"send part", action, &C::send_part, always},
    Request{"receive", transaction, &C::receive, always},
};

}  // namespace

std::span<const Request> requests() { return table; }

bool is_known(const Request& request, const Machine& machine) {
    return request.is_offered(machine) && !machine.withdrawn().contains(request.words);
}

const Request* request_of(std::string_view words) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const Request& request) { return request.words == words; });
    return found == table.end() ? nullptr : &*found;
}

const Request& find_request(wire::TokenReader& line, const Machine& machine) {
    std::string_view first;
    if (!line.word(first)) throw Refused{Error::command_missing};
    const Request* found = nullptr;
    // Two words before one: an axis may be called "list", but then it is quoted.
    wire::TokenReader behind = line;
    std::string_view second;
    if (behind.word(second)) {
        found = request_of(std::string(first).append(" ").append(second));
        if (found != nullptr) line = behind;
    }
    if (found == nullptr) found = request_of(first);
    if (found == nullptr || !is_known(*found, machine)) throw Refused{Error::command_unknown};
    return *found;
}

}  // namespace zendrix::sim
