// The axes whose value the driver keeps: names to their last value, in the order of the names.
//
// Names are added while nobody else looks; values are stored and read from any thread at any time.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class CachedAxes {
public:
    // Adds the axis with the value 0.0; an axis that is there already goes back to 0.0.
    void add(const std::string& name);

    bool empty() const { return m_values.empty(); }
    std::size_t size() const { return m_values.size(); }

    // The names, in order; position i of names() is position i of store().
    std::vector<const char*> names() const;

    // Stores one value per axis, in the order of names().
    void store(std::size_t position, double value);

    // False, and `value` as it was, for an axis that isn't kept.
    bool read(std::string_view name, double& value) const;

private:
    std::map<std::string, double, std::less<>> m_values;
};
