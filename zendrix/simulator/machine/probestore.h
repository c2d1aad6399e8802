// The machine's probes and tips: which are defined, and which it carries.
//
// A request that can't be carried out throws Refused and changes nothing.
#pragma once

#include <map>
#include <string>

#include "machine/description.h"

namespace zendrix::sim {

class ProbeStore {
public:
    explicit ProbeStore(const ProbesDescription& description);

    // Is there a choice of probes at all?
    bool exists() const { return m_description.highest_probe > 0; }
    bool has_changer() const { return m_has_changer; }
    void fit_changer(bool is_there) { m_has_changer = is_there; }

    const std::map<TipId, TipNumbers>& tips() const { return m_tips; }
    std::int32_t highest_probe() const { return m_description.highest_probe; }
    std::int32_t highest_tip() const { return m_description.highest_tip; }
    double seconds() const { return m_description.seconds; }

    TipId loaded() const { return m_loaded; }
    bool is_loaded() const { return m_loaded != TipId(); }
    void load(TipId id) { m_loaded = id; }
    void unload() { m_loaded = {}; }

    void define(TipId id, const TipNumbers& numbers);
    void remove(TipId id);  // tip 0: all tips of the probe

    // The defined tip that is meant: with tip 0 the first of the probe; `is_ambiguous` if that has others.
    TipId choose(TipId id, bool& is_ambiguous) const;

    // Of the loaded tip; 0, 1 and 2 are x, y and z.
    double& place(std::size_t coordinate) { return m_tips.at(m_loaded)[coordinate]; }

private:
    void check_numbers(TipId id, std::int32_t lowest_tip) const;
    void require_defined(TipId id) const;

    ProbesDescription m_description;
    std::map<TipId, TipNumbers> m_tips;
    TipId m_loaded;
    bool m_has_changer;
};

}  // namespace zendrix::sim
