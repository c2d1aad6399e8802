// What the machine refuses, by the catalogue's numbers.
#pragma once

namespace zendrix::sim {

enum class Error : int {
    none = 0,
    syntax_invalid = 1,
    missing_argument = 2,
    invalid_argument = 3,
    invalid_axis = 4,
    unknown_axis = 5,
    no_axis_specified = 6,
    argument_out_of_range = 9,
    aborted = 10,
    tid_missing = 11,
    tid_invalid = 12,
    tid_unused = 13,
    command_missing = 14,
    command_unknown = 15,
    internal_error = 16,
    not_implemented = 17,
    wrong_state = 18,
    command_active = 19,
    undefined_probesystem = 20,
    undefined_probesystem_id = 21,
    probesystem_not_loaded = 22,
    probesystem_not_supported = 23,
    probesystem_already_defined = 24,
    unknown_probesystem = 25,
    undefined_probe = 26,
    undefined_tip = 27,
    invalid_probe_number = 28,
    invalid_tip_number = 29,
    tip_already_defined = 30,
    active_probe = 31,
    probe_already_loaded = 32,
    probe_already_unloaded = 33,
    probe_not_loaded = 35,
    too_many_points = 41,
    no_contact = 42,
    emergency = 43,
    not_initialized = 44,
    buffer_overrun = 45,
    keypad_enabled = 46,
};

// What it carries out with a remark.
enum class Warning : int {
    ambiguous_tip = 10003,
    no_effect = 10004,
};

// Thrown by a request that isn't carried out; nothing has changed then.
struct Refused {
    Error error;
};

// The events that this machine raises by itself, by the catalogue's numbers; those of its keys and others
// that only somebody at the machine causes have no names here.
enum class Event : int {
    capabilities_changed = 1,
    keypad_changed = 2,
    measurement_begin = 3,
    probesystem_changed = 5,
    probe_loaded = 6,
    probe_unloaded = 7,
    probe_contact = 9,
    probe_contact_lost = 10,
    movement_begin = 11,
    movement_end = 12,
    measurement_end = 13,
    keypad_enabled = 14,
    keypad_disabled = 15,
    emergency_active = 44,
    emergency_passive = 45,
    spin_changed = 55,
};

}  // namespace zendrix::sim
