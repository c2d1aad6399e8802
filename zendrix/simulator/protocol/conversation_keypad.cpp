// The handlers of the keypad, of spindles that turn by themselves, and of the wobble.
#include <cmath>

#include "protocol/arguments.h"
#include "protocol/axisnames.h"
#include "protocol/conversation.h"
#include "protocol/dataline.h"

namespace zendrix::sim {

using Outcome = Conversation::Outcome;

Outcome Conversation::keypad_list(Arguments& arguments) {
    const bool inactive_too = arguments.keyword("+inactive");
    no_more(arguments);
    texts(names_of(machine(), [&](const Axis& axis) {
        return axis.is.on_keypad && (inactive_too || axis.is_active());
    }));
    return Outcome::done;
}

Outcome Conversation::keypad_active(Arguments& arguments) {
    no_more(arguments);
    texts(names_of(machine(), [](const Axis& axis) { return axis.is_on_hand; }));
    return Outcome::done;
}

Outcome Conversation::keypad_enable(Arguments& arguments) {
    machine().switch_keypad(true, all_names(arguments));
    return Outcome::begun;
}

Outcome Conversation::keypad_disable(Arguments& arguments) {
    machine().switch_keypad(false, all_names(arguments));
    return Outcome::begun;
}

Outcome Conversation::spin_list(Arguments& arguments) {
    no_more(arguments);
    texts(names_of(machine(), [](const Axis& axis) { return axis.is.can_spin && axis.is_active(); }));
    return Outcome::done;
}

Outcome Conversation::spin_active(Arguments& arguments) {
    no_more(arguments);
    for (const Axis& axis : machine().axes()) {
        if (axis.spin == 0.0) continue;
        DataLine(m_transport.out(), m_id)
            .text((axis.spin < 0.0 ? "-" : "+") + axis.is.name)
            .number(std::abs(axis.spin));
    }
    return Outcome::done;
}

Outcome Conversation::spin_enable(Arguments& arguments) {
    std::vector<Machine::Spin> axes;
    for (const std::string& name : all_names(arguments)) {
        const bool is_signed = name.starts_with('-') || name.starts_with('+');
        axes.push_back({name.substr(is_signed ? 1 : 0), name.starts_with('-')});
    }
    machine().start_spin(axes);
    return Outcome::done;
}

Outcome Conversation::spin_disable(Arguments& arguments) {
    machine().stop_spin(all_names(arguments));
    return Outcome::done;
}

Outcome Conversation::wobble_get(Arguments& arguments) {
    no_more(arguments);
    DataLine(m_transport.out(), m_id).numbers(machine().wobble().value());
    return Outcome::done;
}

Outcome Conversation::wobble(Arguments& arguments) {
    const auto wobble = numbers<6>(arguments);
    no_more(arguments);
    machine().set_wobble(wobble);
    return Outcome::done;
}

}  // namespace zendrix::sim
