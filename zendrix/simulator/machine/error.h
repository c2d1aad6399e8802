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
    too_many_points = 41,
    no_contact = 42,
    emergency = 43,
    not_initialized = 44,
    buffer_overrun = 45,
};

// Thrown by a request that isn't carried out; nothing has changed then.
struct Refused {
    Error error;
};

// The events that this machine raises, by the catalogue's numbers.
enum class Event : int {
    capabilities_changed = 1,
    measurement_begin = 3,
    probe_contact = 9,
    movement_begin = 11,
    movement_end = 12,
    measurement_end = 13,
};

}  // namespace zendrix::sim
