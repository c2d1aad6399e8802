// `sim ...`: what somebody who stands at the machine does to it, and what he sees there.
#include <array>
#include <stdexcept>
#include <string_view>

#include "messagecatalogue.h"
#include "protocol/arguments.h"
#include "protocol/conversation.h"
#include "protocol/dataline.h"
#include "protocol/requests.h"
#include "protocol/truth.h"

namespace zendrix::sim {

namespace {

constexpr int last_event = 96;
constexpr std::size_t max_faults = 1000;

// The number of the event with this text; 0 if the catalogue has none.
int event_number(const std::string& text) {
    for (int number = 1; number <= last_event; ++number) {
        if (event_name(number) == text && !text.starts_with("unknown event")) return number;
    }
    return 0;
}

void raise(Hub& hub, const std::string& text) {
    if (event_number(text) == 0) throw Refused{Error::invalid_argument};
    hub.raise(text);
}

std::string only_text(Arguments& arguments) {
    const std::string value = text(arguments);
    no_more(arguments);
    return value;
}

bool only_flag(Arguments& arguments) {
    const std::int64_t value = integer(arguments, 0, 1);
    no_more(arguments);
    return value == 1;
}

void press_key(Hub& hub, Arguments& arguments) {
    const std::string key = only_text(arguments);
    if (!hub.machine().has_keypad()) throw Refused{Error::wrong_state};
    if (!key.starts_with("key-")) throw Refused{Error::invalid_argument};
    raise(hub, "keypad: " + key);
    hub.machine().press_key(key);
}

void emergency(Hub& hub, Arguments& arguments) {
    if (!only_flag(arguments)) return hub.raise(Event::emergency_passive);
    hub.press_emergency();
    hub.advance();
}

// A word that there is; `commands` itself and the way back can't be taken away.
std::string command_words(Arguments& arguments) {
    const std::string words = only_text(arguments);
    const bool is_needed = words == "commands" || words == "sim";
    if (request_of(words) == nullptr || is_needed) throw Refused{Error::invalid_argument};
    return words;
}

void plan_fault(Hub& hub, Arguments& arguments) {
    const std::string fault = only_text(arguments);
    if (hub.faults().size() >= max_faults) throw Refused{Error::buffer_overrun};
    try {
        hub.faults().add(fault);
    } catch (const std::invalid_argument&) {
        throw Refused{Error::invalid_argument};
    }
}

struct Control {
    std::string_view word;
    void (*act)(Hub& hub, Arguments& arguments);
};
constexpr std::array controls{
    Control{"key", press_key},
    Control{"event", [](Hub& hub, Arguments& arguments) { raise(hub, only_text(arguments)); }},
    Control{"emergency", emergency},
    Control{"deactivate",
            [](Hub& hub, Arguments& arguments) { hub.machine().put_out_of_use(only_text(arguments)); }},
    Control{"activate",
            [](Hub& hub, Arguments& arguments) { hub.machine().put_into_use(only_text(arguments)); }},
    Control{"withdraw",
            [](Hub& hub, Arguments& arguments) { hub.machine().withdraw(command_words(arguments)); }},
    Control{"restore",
            [](Hub& hub, Arguments& arguments) { hub.machine().restore(command_words(arguments)); }},
    Control{"changer",
            [](Hub& hub, Arguments& arguments) { hub.machine().fit_changer(only_flag(arguments)); }},
    Control{"fault", plan_fault},
    Control{"place", [](Hub& hub, Arguments& arguments) { hub.machine().place(all_targets(arguments)); }},
};

}  // namespace

Conversation::Outcome Conversation::control(Arguments& arguments) {
    std::string_view word;
    if (!arguments.word(word)) throw Refused{Error::missing_argument};
    if (word == "state") {
        no_more(arguments);
        append_truth(m_transport.out(), m_id, machine());
        return Outcome::done;
    }
    for (const Control& control : controls) {
        if (control.word != word) continue;
        control.act(m_hub, arguments);
        return Outcome::done;
    }
    throw Refused{Error::invalid_argument};
}

}  // namespace zendrix::sim
