#include "protocol/requests.h"

#include <algorithm>
#include <array>

namespace zendrix::sim {

namespace {

using C = Conversation;
using enum Request::Kind;

bool always(const Machine&) { return true; }
bool never(const Machine&) { return false; }
bool scanning(const Machine& machine) { return machine.has_scanning(); }

template <bool AxisDescription::*Property>
bool some(const Machine& machine) {
    return std::any_of(machine.axes().begin(), machine.axes().end(),
                       [](const Axis& axis) { return axis.is.*Property; });
}
constexpr auto initializing = some<&AxisDescription::needs_init>;
constexpr auto keypad = some<&AxisDescription::on_keypad>;
constexpr auto spinning = some<&AxisDescription::can_spin>;
constexpr auto limited = some<&AxisDescription::has_limits>;

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
    Request{"wobble get", unbuilt, &C::not_implemented, never},
    Request{"wobble", unbuilt, &C::not_implemented, never},
    Request{"keypad enable", unbuilt, &C::not_implemented, never},
    Request{"keypad disable", unbuilt, &C::not_implemented, never},
    Request{"spin enable", unbuilt, &C::not_implemented, never},
    Request{"spin disable", unbuilt, &C::not_implemented, never},
    Request{"probe list", unbuilt, &C::not_implemented, never},
    Request{"probe define", unbuilt, &C::not_implemented, never},
    Request{"probe delete", unbuilt, &C::not_implemented, never},
    Request{"probe load", unbuilt, &C::not_implemented, never},
    Request{"probe change", unbuilt, &C::not_implemented, never},
    Request{"probe unload", unbuilt, &C::not_implemented, never},
    Request{"probe offset", unbuilt, &C::not_implemented, never},
    Request{"probesystem list", unbuilt, &C::not_implemented, never},
    Request{"probesystem records", unbuilt, &C::not_implemented, never},
    Request{"probesystem info", unbuilt, &C::not_implemented, never},
    Request{"probesystem type", unbuilt, &C::not_implemented, never},
    Request{"probesystem define", unbuilt, &C::not_implemented, never},
    Request{"probesystem delete", unbuilt, &C::not_implemented, never},
    Request{"probesystem load", unbuilt, &C::not_implemented, never},
    Request{"probesystem unload", unbuilt, &C::not_implemented, never},
    Request{"send", unbuilt, &C::not_implemented, never},
    Request{"receive", unbuilt, &C::not_implemented, never},
};

const Request* by_words(std::string_view words) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const Request& request) { return request.words == words; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace

std::span<const Request> requests() { return table; }

const Request& find_request(wire::TokenReader& line, const Machine& machine) {
    std::string_view first;
    if (!line.word(first)) throw Refused{Error::command_missing};
    const Request* found = nullptr;
    // Two words before one: an axis may be called "list", but then it is quoted.
    wire::TokenReader behind = line;
    std::string_view second;
    if (behind.word(second)) {
        found = by_words(std::string(first).append(" ").append(second));
        if (found != nullptr) line = behind;
    }
    if (found == nullptr) found = by_words(first);
    const bool is_known = found != nullptr && (found->kind == unbuilt || found->is_offered(machine));
    if (!is_known) throw Refused{Error::command_unknown};
    return *found;
}

}  // namespace zendrix::sim
