// The axes whose value the driver keeps: names to their last value, in the order of the names.
//
// Axes are added while no other thread looks; values are stored and read from any thread at any time. Reading
// is the host's way to watch a machine that moves, so it goes through a hash table and takes no lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class CachedAxes {
public:
    // Adds the axis with the value 0.0; one that is there already goes back to 0.0.
    void add(const std::string& name);

    bool empty() const { return m_axes.empty(); }
    std::size_t size() const { return m_axes.size(); }

    // The name at this place, in order.
    const std::string& name(std::size_t place) const { return m_axes[place].name; }
    void store(std::size_t place, double value);

    // False, and `value` as it was, for an axis that isn't kept.
    bool read(const char* name, double& value) const;

private:
    struct Axis {
        std::string name;
        mutable double value;  // through atomic references only
    };

    void rebuild_table();

    std::vector<Axis> m_axes;
    // Open addressing: places in m_axes plus one, 0 for free. A power of two, at most half full.
    std::vector<std::uint32_t> m_table;
};
