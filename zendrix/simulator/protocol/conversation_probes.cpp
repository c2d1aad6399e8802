// The handlers of probes and probe systems.
#include "protocol/arguments.h"
#include "protocol/conversation.h"
#include "protocol/dataline.h"

namespace zendrix::sim {

namespace {

using Outcome = Conversation::Outcome;

TipId tip(Arguments& arguments) {
    TipId id;
    id.probe = small_integer(arguments);
    id.tip = small_integer(arguments);
    return id;
}

void append_tip(std::string& out, std::int64_t id, const std::pair<const TipId, TipNumbers>& tip) {
    DataLine(out, id).number(tip.first.probe).number(tip.first.tip).numbers(tip.second);
}

}  // namespace

Outcome Conversation::probe_info(Arguments& arguments) {
    no_more(arguments);
    const ProbeStore& probes = machine().probes();
    const auto loaded = probes.tips().find(probes.loaded());
    if (loaded == probes.tips().end()) throw Refused{Error::probe_not_loaded};
    append_tip(m_transport.out(), m_id, *loaded);
    return Outcome::done;
}

Outcome Conversation::probe_list(Arguments& arguments) {
    const TipId wanted = tip(arguments);
    no_more(arguments);
    for (const auto& entry : machine().probes().tips()) {
        const TipId id = entry.first;
        const bool is_wanted =
            (wanted.probe == 0 || wanted.probe == id.probe) && (wanted.tip == 0 || wanted.tip == id.tip);
        if (is_wanted) append_tip(m_transport.out(), m_id, entry);
    }
    return Outcome::done;
}

Outcome Conversation::probe_define(Arguments& arguments) {
    const TipId id = tip(arguments);
    const TipNumbers is = numbers<4>(arguments);
    no_more(arguments);
    machine().probes().define(id, is);
    return Outcome::done;
}

Outcome Conversation::probe_delete(Arguments& arguments) {
    const TipId id = tip(arguments);
    no_more(arguments);
    if (machine().is_busy()) throw Refused{Error::wrong_state};  // it may be on its way to the machine
    machine().probes().remove(id);
    return Outcome::done;
}

Outcome Conversation::probe_load(Arguments& arguments) {
    const TipId id = tip(arguments);
    no_more(arguments);
    machine().load_probe(id);
    return Outcome::begun;
}

Outcome Conversation::probe_change(Arguments& arguments) {
    const TipId id = tip(arguments);
    no_more(arguments);
    machine().change_probe(id);
    return Outcome::begun;
}

Outcome Conversation::probe_unload(Arguments& arguments) {
    no_more(arguments);
    machine().unload_probe();
    return Outcome::begun;
}

Outcome Conversation::probe_offset(Arguments& arguments) {
    machine().offset_probe(all_targets(arguments));
    return Outcome::done;
}

Outcome Conversation::probesystem_list(Arguments& arguments) {
    const std::string wanted = text(arguments);
    no_more(arguments);
    for (const auto& [name, system] : machine().probesystems().supported()) {
        if (wanted.empty() || wanted == name) texts({name});
    }
    return Outcome::done;
}

// Asked for all, a system without ids has a line as well: it is supported.
Outcome Conversation::probesystem_records(Arguments& arguments) {
    const std::string wanted = text(arguments);
    no_more(arguments);
    for (const auto& [name, system] : machine().probesystems().supported()) {
        if (!wanted.empty() && wanted != name) continue;
        if (wanted.empty() && system.ids.empty()) texts({name});
        for (const auto& [id, is] : system.ids) {
            DataLine(m_transport.out(), m_id).text(name).number(id).numbers(is);
        }
    }
    return Outcome::done;
}

Outcome Conversation::probesystem_info(Arguments& arguments) {
    no_more(arguments);
    const ProbesystemStore& systems = machine().probesystems();
    if (!systems.is_loaded()) throw Refused{Error::probesystem_not_loaded};
    DataLine(m_transport.out(), m_id).text(systems.loaded_name()).number(systems.loaded_id());
    return Outcome::done;
}

Outcome Conversation::probesystem_type(Arguments& arguments) {
    no_more(arguments);
    const ProbesystemStore& systems = machine().probesystems();
    ProbesystemDescription type;
    type.kind = 0;
    if (systems.is_loaded()) type = systems.supported().at(systems.loaded_name());
    DataLine(m_transport.out(), m_id)
        .number(type.kind)
        .number(type.a)
        .number(type.b)
        .number(type.c)
        .number(type.d);
    return Outcome::done;
}

Outcome Conversation::probesystem_define(Arguments& arguments) {
    const std::string name = text(arguments);
    const std::int32_t id = small_integer(arguments);
    const ProbesystemNumbers is = numbers<6>(arguments);
    no_more(arguments);
    machine().probesystems().define(name, id, is);
    return Outcome::done;
}

Outcome Conversation::probesystem_delete(Arguments& arguments) {
    const std::string name = text(arguments);
    const std::int32_t id = small_integer(arguments);
    no_more(arguments);
    if (machine().is_busy()) throw Refused{Error::wrong_state};  // it may be on its way to the machine
    machine().probesystems().remove(name, id);
    return Outcome::done;
}

Outcome Conversation::probesystem_load(Arguments& arguments) {
    const std::string name = text(arguments);
    const std::int32_t id = small_integer(arguments);
    no_more(arguments);
    machine().load_probesystem(name, id);
    return Outcome::begun;
}

Outcome Conversation::probesystem_unload(Arguments& arguments) {
    no_more(arguments);
    machine().unload_probesystem();
    return Outcome::begun;
}

}  // namespace zendrix::sim
