// What the host asks about the machine, its components and its axes.
#include <bit>

#include "errtrace.h"
#include "m2zendrixmachabstract.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_machine.cpp";

// The interface's word for an unknown value.
constexpr double unknown_value = std::bit_cast<double>(std::uint64_t{0x7FF8000000000000});

constexpr std::int32_t state_option = 0;
constexpr std::int32_t state_own = 1;
constexpr std::int32_t state_component = 3;

// A receive command takes this name for a request for a backup.
constexpr const char* backup_component = "backup.m2zendrix_dll";

// A text of the machine. One for the whole process: the last answer stays when its machine is gone.
class KeptText {
public:
    const char* get() {
        os::LockGuard guard(m_lock);
        return m_text.c_str();
    }
    // The same text isn't written again: another driver's host may hold its characters.
    void put(const std::string& text) {
        os::LockGuard guard(m_lock);
        if (m_text != text) m_text = text;
    }

private:
    os::Mutex m_lock;
    std::string m_text OS_GUARDED_BY(m_lock);
};

const char* refreshed(KeptText& kept, CZendrixCOM* client, std::string (CZendrixCOM::*query)()) {
    if (client) kept.put((client->*query)());
    return kept.get();
}

// Takes one step of a walk: the record it stands on, or null at the end.
template <class Map>
const typename Map::mapped_type* step(const Map& map, typename Map::iterator& next) {
    return next == map.end() ? nullptr : &(next++)->second;
}

template <class Map>
void fill(Map& map, const std::map<std::string, std::string>& versions, std::int32_t state) {
    for (const auto& [name, version] : versions) map[name] = {name, version, state};
}

}  // namespace

const char* M2ZendrixMachAbstract::GetMachineName() {
    static KeptText name;
    return refreshed(name, client(), &CZendrixCOM::GetMachineName);
}

const char* M2ZendrixMachAbstract::GetMachineRevision() {
    static KeptText revision;
    return refreshed(revision, client(), &CZendrixCOM::GetMachineRevision);
}

const char* M2ZendrixMachAbstract::GetSerialNumber() {
    static KeptText number;
    return refreshed(number, client(), &CZendrixCOM::GetSerialNumber);
}

const MMachComponentInfo* M2ZendrixMachAbstract::GetComponentInfo(const std::string& name) {
    CZendrixCOM* const client = this->client();
    if (!client) return nullptr;
    auto known = m_components.find(name);
    if (known == m_components.end()) {
        const std::map<std::string, std::string> versions = client->GetComponentsMap();
        const auto version = versions.find(name);
        if (version != versions.end()) {
            m_components[name] = {name, version->second, state_component};
            known = m_components.find(name);
            if (known == m_components.end()) {
                MERRLOG_REPORT(source,
                               "GetComponentInfo(): Can't find added component \"%s\" in internal map",
                               name.c_str());
            }
        }
    }
    m_componentsNext = m_components.end();  // ends a walk that runs
    return known == m_components.end() ? nullptr : &known->second;
}

const MMachComponentInfo* M2ZendrixMachAbstract::GetFirstComponentInfo() {
    CZendrixCOM* const client = this->client();
    if (!client) return nullptr;
    const std::map<std::string, std::string> versions = client->GetComponentsMap();
    m_components.clear();
    m_components[backup_component] = {backup_component, "0.00-1", state_own};
    fill(m_components, versions, state_component);
    m_componentsNext = m_components.begin();
    return GetNextComponentInfo();
}

const MMachComponentInfo* M2ZendrixMachAbstract::GetNextComponentInfo() {
    return step(m_components, m_componentsNext);
}

const MMachComponentInfo* M2ZendrixMachAbstract::GetFirstOptionInfo() {
    CZendrixCOM* const client = this->client();
    if (!client) return nullptr;
    const std::map<std::string, std::string> versions = client->GetOptionsMap();
    m_options.clear();
    fill(m_options, versions, state_option);
    m_optionsNext = m_options.begin();
    return GetNextOptionInfo();
}

const MMachComponentInfo* M2ZendrixMachAbstract::GetNextOptionInfo() {
    return step(m_options, m_optionsNext);
}

const MMachAxisInfo* M2ZendrixMachAbstract::GetAxisInfo(const std::string& axis) {
    os::LockGuard guard(m_axesLock);
    const auto it = m_axes.find(axis);
    return it == m_axes.end() ? nullptr : &it->second;
}

const MMachAxisInfo* M2ZendrixMachAbstract::GetFirstAxisInfo() {
    {
        os::LockGuard guard(m_axesLock);
        m_axesNext = m_axes.begin();
    }
    return GetNextAxisInfo();
}

const MMachAxisInfo* M2ZendrixMachAbstract::GetNextAxisInfo() {
    os::LockGuard guard(m_axesLock);
    return step(m_axes, m_axesNext);
}

double M2ZendrixMachAbstract::GetAxisValue(const char* axis) {
    constexpr const char* function = "M2ZendrixMachAbstract::GetAxisValue";
    double value = unknown_value;
    if (m_cachedAxes.read(axis, value)) return value;
    CZendrixCOM* const client = this->client();
    if (!client) return unknown_value;
    try {
        if (client->Get(axis, &value)) return value;
        MERRLOG_REPORT(source, "%s(): Get(%s, ..) failed", function, axis);
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "%s(): Get(%s, ..) failed: %s", function, axis, error.m_text.c_str());
    }
    return unknown_value;
}
