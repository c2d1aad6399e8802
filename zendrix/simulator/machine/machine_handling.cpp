// What takes time without a motion: probes and probe systems that come and go.
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "machine/machine.h"

namespace zendrix::sim {

namespace {

constexpr const char* coordinates[] = {"x", "y", "z"};

}  // namespace

void Machine::begin_handling(std::vector<Handling::Step> steps) {
    require_idle();
    if (m_has_emergency) throw Refused{Error::emergency};
    m_handling.emplace(std::move(steps));
    m_result = Error::none;
}

void Machine::warn_if(bool is_needed, Warning warning) {
    if (is_needed) m_listener.on_warning(warning);
}

Handling::Step Machine::put_down() {
    return {m_probes.seconds(), [this] {
                m_probes.unload();
                m_touches = false;
                m_listener.on_event(Event::probe_unloaded);
            }};
}

Handling::Step Machine::take_up(TipId id) {
    return {m_probes.seconds(), [this, id] {
                m_probes.load(id);
                m_listener.on_event(Event::probe_loaded);
            }};
}

void Machine::load_probe(TipId id) {
    bool is_ambiguous = false;
    const TipId chosen = m_probes.choose(id, is_ambiguous);
    if (m_probes.is_loaded()) throw Refused{Error::probe_already_loaded};
    begin_handling(
        {{0.0, [this, is_ambiguous] { warn_if(is_ambiguous, Warning::ambiguous_tip); }}, take_up(chosen)});
}

void Machine::change_probe(TipId id) {
    bool is_ambiguous = false;
    const TipId chosen = m_probes.choose(id, is_ambiguous);
    if (chosen == m_probes.loaded()) throw Refused{Error::probe_already_loaded};
    std::vector<Handling::Step> steps{
        {0.0, [this, is_ambiguous] { warn_if(is_ambiguous, Warning::ambiguous_tip); }}};
    if (m_probes.is_loaded()) steps.push_back(put_down());
    steps.push_back(take_up(chosen));
    begin_handling(std::move(steps));
}

void Machine::unload_probe() {
    if (!m_probes.is_loaded()) throw Refused{Error::probe_already_unloaded};
    begin_handling({put_down()});
}

// The numbers of the loaded tip tell where it is; they are all that changes.
void Machine::offset_probe(const Targets& offsets) {
    if (offsets.empty()) throw Refused{Error::no_axis_specified};
    std::array<std::optional<double>, 3> places;
    for (const wire::Target& offset : offsets) {
        const auto found = std::find(std::begin(coordinates), std::end(coordinates), offset.name);
        if (found == std::end(coordinates)) {
            index(offset.name);
            throw Refused{Error::invalid_axis};
        }
        const auto coordinate = static_cast<std::size_t>(found - std::begin(coordinates));
        if (places[coordinate]) throw Refused{Error::invalid_axis};
        const bool is_relative = offset.form == wire::TargetForm::relative;
        if ((offset.form != wire::TargetForm::absolute && !is_relative) || !std::isfinite(offset.value)) {
            throw Refused{Error::invalid_argument};
        }
        if (!m_probes.is_loaded()) throw Refused{Error::probe_not_loaded};
        places[coordinate] = offset.value + (is_relative ? m_probes.place(coordinate) : 0.0);
    }
    require_idle();
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i]) m_probes.place(i) = *places[i];
    }
}

void Machine::load_probesystem(const std::string& name, std::int32_t id) {
    m_probesystems.require_defined(name, id);
    const bool is_there = name == m_probesystems.loaded_name() && id == m_probesystems.loaded_id();
    if (is_there) return begin_handling({{0.0, [this] { warn_if(true, Warning::no_effect); }}});
    begin_handling({{m_probesystems.seconds(), [this, name, id] {
                         m_probesystems.load(name, id);
                         m_listener.on_event(Event::probesystem_changed);
                     }}});
}

void Machine::unload_probesystem() {
    if (!m_probesystems.is_loaded()) throw Refused{Error::probesystem_not_loaded};
    begin_handling({{m_probesystems.seconds(), [this] {
                         m_probesystems.unload();
                         m_listener.on_event(Event::probesystem_changed);
                     }}});
}

}  // namespace zendrix::sim
