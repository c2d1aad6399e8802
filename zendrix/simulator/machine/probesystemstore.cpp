#include "machine/probesystemstore.h"

#include <algorithm>
#include <cmath>

#include "machine/error.h"

namespace zendrix::sim {

namespace {

constexpr std::size_t max_ids = 1000;  // of one system

}  // namespace

ProbesystemStore::ProbesystemStore(const ProbesystemsDescription& description)
    : m_supported(description.supported),
      m_seconds(description.seconds),
      m_loaded(description.loaded),
      m_loaded_id(description.loaded_id) {}

void ProbesystemStore::load(const std::string& name, std::int32_t id) {
    m_loaded = name;
    m_loaded_id = id;
}

void ProbesystemStore::define(const std::string& name, std::int32_t id, const ProbesystemNumbers& numbers) {
    const auto system = m_supported.find(name);
    if (system == m_supported.end()) throw Refused{Error::probesystem_not_supported};
    if (id < 1) throw Refused{Error::argument_out_of_range};
    const bool is_finite =
        std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
    if (!is_finite) throw Refused{Error::invalid_argument};
    auto& ids = system->second.ids;
    if (ids.contains(id)) throw Refused{Error::probesystem_already_defined};
    if (ids.size() == max_ids) throw Refused{Error::buffer_overrun};
    ids.emplace(id, numbers);
}

void ProbesystemStore::remove(const std::string& name, std::int32_t id) {
    require_defined(name, id);
    if (name == m_loaded && id == m_loaded_id) throw Refused{Error::wrong_state};
    m_supported.at(name).ids.erase(id);
}

void ProbesystemStore::require_defined(const std::string& name, std::int32_t id) const {
    const auto system = m_supported.find(name);
    if (system == m_supported.end()) throw Refused{Error::unknown_probesystem};
    if (system->second.ids.empty()) throw Refused{Error::undefined_probesystem};
    if (!system->second.ids.contains(id)) throw Refused{Error::undefined_probesystem_id};
}

}  // namespace zendrix::sim
