// The machine's probe systems: which it supports, which ids of them are defined, and which is loaded.
//
// A request that can't be carried out throws Refused and changes nothing.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "machine/description.h"

namespace zendrix::sim {

class ProbesystemStore {
public:
    explicit ProbesystemStore(const ProbesystemsDescription& description);

    bool exists() const { return !m_supported.empty(); }
    const std::map<std::string, ProbesystemDescription>& supported() const { return m_supported; }
    double seconds() const { return m_seconds; }

    bool is_loaded() const { return m_loaded_id != 0; }
    const std::string& loaded_name() const { return m_loaded; }  // empty: none
    std::int32_t loaded_id() const { return m_loaded_id; }       // 0: none
    void load(const std::string& name, std::int32_t id);
    void unload() { load({}, 0); }

    void define(const std::string& name, std::int32_t id, const ProbesystemNumbers& numbers);
    void remove(const std::string& name, std::int32_t id);
    void require_defined(const std::string& name, std::int32_t id) const;

private:
    std::map<std::string, ProbesystemDescription> m_supported;
    double m_seconds;
    std::string m_loaded;
    std::int32_t m_loaded_id;
};

}  // namespace zendrix::sim
