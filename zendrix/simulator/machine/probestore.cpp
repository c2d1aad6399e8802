#include "machine/probestore.h"

#include <algorithm>
#include <cmath>

#include "machine/error.h"

namespace zendrix::sim {

ProbeStore::ProbeStore(const ProbesDescription& description)
    : m_description(description),
      m_tips(description.tips),
      m_loaded(description.loaded),
      m_has_changer(description.has_changer) {}

void ProbeStore::check_numbers(TipId id, std::int32_t lowest_tip) const {
    if (id.probe < 1 || id.probe > highest_probe()) throw Refused{Error::invalid_probe_number};
    if (id.tip < lowest_tip || id.tip > highest_tip()) throw Refused{Error::invalid_tip_number};
}

void ProbeStore::require_defined(TipId id) const {
    const auto first = m_tips.lower_bound({id.probe, 1});
    if (first == m_tips.end() || first->first.probe != id.probe) throw Refused{Error::undefined_probe};
    if (id.tip != 0 && !m_tips.contains(id)) throw Refused{Error::undefined_tip};
}

void ProbeStore::define(TipId id, const TipNumbers& numbers) {
    check_numbers(id, 1);
    const bool is_finite =
        std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
    if (!is_finite) throw Refused{Error::invalid_argument};
    if (numbers[3] < 0.0) throw Refused{Error::argument_out_of_range};
    if (!m_tips.try_emplace(id, numbers).second) throw Refused{Error::tip_already_defined};
}

void ProbeStore::remove(TipId id) {
    check_numbers(id, 0);
    require_defined(id);
    const auto is_meant = [id](TipId tip) {
        return tip.probe == id.probe && (id.tip == 0 || id.tip == tip.tip);
    };
    if (is_meant(m_loaded)) throw Refused{Error::active_probe};
    std::erase_if(m_tips, [&](const auto& entry) { return is_meant(entry.first); });
}

TipId ProbeStore::choose(TipId id, bool& is_ambiguous) const {
    check_numbers(id, 0);
    require_defined(id);
    is_ambiguous = false;
    if (id.tip != 0) return id;
    const auto first = m_tips.lower_bound({id.probe, 1});
    const auto second = std::next(first);
    is_ambiguous = second != m_tips.end() && second->first.probe == id.probe;
    return first->first;
}

}  // namespace zendrix::sim
