// The picture of the machine that the driver keeps: command set, axes, init and spin lists, cached values.
#include <algorithm>
#include <bit>

#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "supportedcommands.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_capabilities.cpp";

bool holds(const std::vector<std::string>& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// The host may be reading the record: what stays the same isn't written.
void put(double& field, double value) {
    if (std::bit_cast<std::uint64_t>(field) != std::bit_cast<std::uint64_t>(value)) field = value;
}

bool has_rotary_name(const std::string& name) {
    static const std::set<std::string> names = {"c", "ha", "hb", "hc", "ka", "kb"};
    return names.contains(name);
}

std::uint32_t axis_flags(const CAxis& axis, const std::vector<std::string>& keypad) {
    const bool both_zero = axis.number4 == 0.0 && axis.number5 == 0.0;
    const bool bounded = axis.number4 != 0.0 && axis.number5 != 0.0;
    std::uint32_t flags = 0;
    if (axis.kind == 3) flags |= MMACH_AXIS_KIND_3;
    if (axis.kind == 0 || axis.kind == 2) flags |= MMACH_AXIS_KIND_0_2;
    if (both_zero && (axis.kind == 1 || axis.kind == 2)) flags |= MMACH_AXIS_UNBOUNDED;
    if (bounded) flags |= MMACH_AXIS_BOUNDED;
    if (axis.kind == 4) flags |= MMACH_AXIS_INACTIVE;
    if (has_rotary_name(axis.name)) flags |= MMACH_AXIS_ROTARY_NAME;
    if (bounded && holds(keypad, axis.name)) flags |= MMACH_AXIS_ON_KEYPAD;
    return flags;
}

// Clears the flag of update_cached_axes_values however that is left.
struct FlagGuard {
    std::atomic_flag& flag;
    ~FlagGuard() { flag.clear(std::memory_order_release); }
};

}  // namespace

void M2ZendrixMachAbstract::enable_supported_commands() {
    constexpr const char* function = "M2ZendrixMachAbstract::enable_supported_commands";
    CZendrixCOM* const client = this->client();
    if (!client) return;
    try {
        std::vector<std::string> words;
        if (!client->CommandSet(words, nullptr)) {
            MERRLOG_REPORT(source, "%s(): CommandSet() failed", function);
            return;
        }
        for (const SupportedCommand& command : supported_commands) {
            holds(words, command.word) ? EnableCommand(command.class_name)
                                       : DisableCommand(command.class_name);
        }
        raise_flags(words);
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "%s(): CommandSet() failed: '%s'", function, error.m_text.c_str());
    }
}

void M2ZendrixMachAbstract::raise_flags(const std::vector<std::string>& words) {
    const std::pair<const char*, std::atomic<bool>&> flags[] = {
        {"probesystem info", m_hasProbesystems},
        {"probe info", m_hasProbes},
        {"spin list", m_hasSpin},
        {"init list", m_hasInitList},
        {"movelimitaxis", m_hasMoveLimit},
        {"keypad list", m_hasKeypad},
    };
    for (const auto& [word, flag] : flags) {
        if (holds(words, word)) flag = true;
    }
}

void M2ZendrixMachAbstract::update_capabilities() {
    CZendrixCOM* const client = this->client();
    if (!client) return;
    std::map<std::string, CAxis> axes;
    client->Capabilities(axes, false);
    std::vector<std::string> keypad;
    if (HasKeypad()) client->KeyPadList(keypad, m_keypadListInactive);
    for (const auto& entry : axes) convert_capabilities(entry.second, keypad);
}

MMachAxisInfo* M2ZendrixMachAbstract::convert_capabilities(const CAxis& axis,
                                                           const std::vector<std::string>& keypad) {
    const std::uint32_t flags = axis_flags(axis, keypad);
    os::LockGuard guard(m_axesLock);
    MMachAxisInfo& info = m_axes[axis.name];
    if (info.name != axis.name) info.name = axis.name;
    put(info.number1, axis.number1);
    put(info.number2, axis.number2);
    put(info.number3, axis.number3);
    put(info.number4, axis.number5);  // crosswise
    put(info.number5, axis.number4);
    put(info.step, axis.step);
    if (info.flags != flags) info.flags = flags;
    if (axis.step == 0.0) info.values.insert(axis.values.begin(), axis.values.end());
    return &info;
}

void M2ZendrixMachAbstract::update_init_list() {
    CZendrixCOM* const client = this->client();
    if (!HasInitList() || !client) return;
    os::LockGuard guard(m_initListLock);
    m_initList.clear();
    std::vector<std::string> axes;
    if (!client->InitList(axes)) {
        MERRLOG_REPORT(source, "%s(): InitList() failed", "M2ZendrixMachAbstract::update_init_list");
        return;
    }
    m_initList.insert(axes.begin(), axes.end());
}

void M2ZendrixMachAbstract::update_spin_lists() {
    constexpr const char* function = "M2ZendrixMachAbstract::update_spin_lists";
    CZendrixCOM* const client = this->client();
    if (!HasSpin() || !client) return;
    std::vector<std::string> names;
    if (!client->SpinList(names)) MERRLOG_REPORT(source, "%s(): SpinList() failed", function);
    std::vector<std::string> active;
    std::vector<double> values;
    if (!client->SpinActive(active, values)) MERRLOG_REPORT(source, "%s(): SpinActive() failed", function);
    {
        os::LockGuard guard(m_spinListLock);
        m_spinList = std::set<std::string>(names.begin(), names.end());
        m_spinListNext = m_spinList.end();
    }
    values.resize(active.size());
    os::LockGuard guard(m_spinActiveLock);
    m_spinActive.clear();
    for (std::size_t i = 0; i < active.size(); ++i) insert_active_spin_axis(active[i], values[i]);
    m_spinActiveNext = m_spinActive.end();
}

void M2ZendrixMachAbstract::insert_active_spin_axis(std::string axis, double value) {
    const bool negative = axis.starts_with('-');
    if (negative || axis.starts_with('+')) axis.erase(0, 1);
    m_spinActive.emplace(std::move(axis), negative ? value * -1.0 : value);
}

void M2ZendrixMachAbstract::update_cached_axes_values() {
    constexpr const char* function = "M2ZendrixMachAbstract::update_cached_axes_values";
    CZendrixCOM* const client = this->client();
    if (!client || m_cachedAxesLock.test_and_set(std::memory_order_acquire)) return;
    const FlagGuard guard{m_cachedAxesLock};
    if (m_cachedAxes.empty()) return;
    std::vector<Position> positions;
    for (std::size_t i = 0; i < m_cachedAxes.size(); ++i) {
        positions.push_back({m_cachedAxes.name(i).c_str(), 0.0, ZX_POSITION_PLAIN});
    }
    try {
        if (!client->Get(positions)) {
            MERRLOG_REPORT(source, "%s(): Get() failed", function);
            return;
        }
        const std::size_t count = std::min(positions.size(), m_cachedAxes.size());
        for (std::size_t i = 0; i < count; ++i) m_cachedAxes.store(i, positions[i].value);
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "%s(): Get() failed: %s", function, error.m_text.c_str());
    }
}
