// The host's questions about probe systems and probes. Each asks the machine at that very moment; what fails
// goes to the error log and gives the neutral answer.
#include <algorithm>
#include <limits>

#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "messagetext.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_probes.cpp";

constexpr auto probesystems = &MMachAbstract::HasProbesystems;
constexpr auto probes = &MMachAbstract::HasProbes;

// The integer part; 0 for what no int can hold.
int to_number(double value) {
    const double lowest = std::numeric_limits<int>::min();
    const double highest = std::numeric_limits<int>::max();
    return value > lowest - 1.0 && value < highest + 1.0 ? static_cast<int>(value) : 0;
}

// Calls `end` however its scope is left.
template <class End>
class AtEnd {
public:
    explicit AtEnd(End end) : m_end(end) {}
    ~AtEnd() { m_end(); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

private:
    End m_end;
};

}  // namespace

// True if the client's call succeeded, and what it filled is the answer.
template <class Call>
bool M2ZendrixMachAbstract::ask_probes(const ProbeQuery& query, Call call) {
    CZendrixCOM* const client = this->client();
    if (!client || !(this->*query.available)()) return false;
    try {
        if (call(*client)) return true;
        MERRLOG_REPORT(source, "%s(): %s() failed", query.name, query.operation);
    } catch (const CZendrixError& error) {
        const std::string text = query.bare_errors ? bare_message(error.m_text) : error.m_text;
        if (!query.bare_errors || !text.empty()) {
            MERRLOG_REPORT(source, "%s(): ZendrixCOM error: %s", query.name, text.c_str());
        }
    }
    return false;
}

bool M2ZendrixMachAbstract::HasProbesystems() { return m_hasProbesystems; }

std::vector<CProbesystemList> M2ZendrixMachAbstract::ask_probesystems(const char* query,
                                                                      const std::string& name) {
    std::vector<CProbesystemList> records;
    if (!ask_probes({query, "GetProbesystemList", probesystems},
                    [&](CZendrixCOM& c) { return c.GetProbesystemList(records, name.c_str()); })) {
        return {};
    }
    return records;
}

bool M2ZendrixMachAbstract::IsProbesystemDefined(const std::string& name) {
    return !ask_probesystems("IsProbesystemDefined", name).empty();
}

// The first record alone counts.
bool M2ZendrixMachAbstract::IsProbesystemIdDefined(const std::string& name, long id) {
    const auto records = ask_probesystems("IsProbesystemIdDefined", name);
    return !records.empty() && std::any_of(records.front().entries.begin(), records.front().entries.end(),
                                           [id](const CProbesystemEntry& entry) { return entry.id == id; });
}

bool M2ZendrixMachAbstract::IsProbesystemSupported(const std::string& name) {
    const auto records = ask_probesystems("IsProbesystemSupported", "");
    return std::any_of(records.begin(), records.end(),
                       [&name](const CProbesystemList& record) { return record.name == name; });
}

std::vector<CProbesystemEntry> M2ZendrixMachAbstract::ListProbesystems(const std::string& name, long id) {
    std::vector<CProbesystemEntry> found;
    for (const CProbesystemList& record : ask_probesystems("ListProbesystems", name)) {
        std::copy_if(record.entries.begin(), record.entries.end(), std::back_inserter(found),
                     [id](const CProbesystemEntry& entry) { return id == 0 || entry.id == id; });
    }
    return found;
}

const std::string* M2ZendrixMachAbstract::GetFirstSupportedProbesystem() {
    std::vector<std::string> names;
    if (!ask_probes({"GetFirstSupportedProbesystem", "GetProbesystem", probesystems},
                    [&](CZendrixCOM& c) { return c.GetProbesystemList(names, ""); })) {
        return nullptr;
    }
    m_supportedProbesystems.clear();
    for (const std::string& name : names) m_supportedProbesystems.emplace(name, 0);
    m_supportedProbesystemsAt = m_supportedProbesystems.begin();
    return m_supportedProbesystems.empty() ? nullptr : &m_supportedProbesystemsAt->first;
}

const std::string* M2ZendrixMachAbstract::GetNextSupportedProbesystem() {
    if (!client() || !HasProbesystems()) return nullptr;
    const auto end = m_supportedProbesystems.end();
    if (m_supportedProbesystemsAt == end || ++m_supportedProbesystemsAt == end) return nullptr;
    return &m_supportedProbesystemsAt->first;
}

// That no probe system is loaded is an answer, and the error that the machine sends with it is none.
std::string M2ZendrixMachAbstract::ask_active_probesystem(const char* query, bool bare_errors) {
    std::string name;
    const auto call = [&](CZendrixCOM& client) {
        begin_ignore_not_loaded_error();
        const AtEnd end([this] { end_ignore_not_loaded_error(); });
        long id = 0;
        return client.ProbesystemInfo(name, id);
    };
    return ask_probes({query, "ProbesystemInfo", probesystems, bare_errors}, call) ? name : std::string();
}

bool M2ZendrixMachAbstract::IsProbesystemLoaded() {
    return !ask_active_probesystem("IsProbesystemLoaded", false).empty();
}

// Alone among the queries it keeps silent on an error that says nothing.
std::string M2ZendrixMachAbstract::GetActiveProbesystemName() {
    return ask_active_probesystem("GetActiveProbesystemName", true);
}

// Here "not loaded" is an error like any other.
long M2ZendrixMachAbstract::GetActiveProbesystemIdNum() {
    std::string name;
    long id = 0;
    const auto call = [&](CZendrixCOM& c) { return c.ProbesystemInfo(name, id); };
    return ask_probes({"GetActiveProbesystemIdNum", "ProbesystemInfo", probesystems}, call) ? id : 0;
}

MMachProbesystemType M2ZendrixMachAbstract::GetActiveProbesystemType() {
    Probesystemtype from;
    if (!ask_probes({"GetActiveProbesystemType", "ProbesystemType", probesystems},
                    [&](CZendrixCOM& c) { return c.ProbesystemType(from); })) {
        return {};
    }
    switch (from.kind) {
        case 0:
            return {.type = 1};
        case 1:
            return {.type = 2, .a = from.a, .c = from.c};
        case 2:
            return {.type = 3, .a = from.a, .b = from.b, .c = from.c, .d = from.d};
        default:
            return {};
    }
}

bool M2ZendrixMachAbstract::HasProbes() { return m_hasProbes; }

std::vector<CProbe> M2ZendrixMachAbstract::ask_probe_list(const char* query, long probe, long tip) {
    std::vector<CProbe> list;
    if (!ask_probes({query, "ProbeList", probes},
                    [&](CZendrixCOM& c) { return c.ProbeList(list, probe, tip); })) {
        return {};
    }
    return list;
}

bool M2ZendrixMachAbstract::IsProbeDefined(long probe) {
    const std::vector<CProbe> list = ask_probe_list("IsProbeDefined", 0, 0);
    return std::any_of(list.begin(), list.end(), [=](const CProbe& p) { return p.probe == probe; });
}

bool M2ZendrixMachAbstract::IsTipDefined(long probe, long tip) {
    const std::vector<CProbe> list = ask_probe_list("IsTipDefined", 0, 0);
    return std::any_of(list.begin(), list.end(),
                       [=](const CProbe& p) { return p.probe == probe && p.tip == tip; });
}

std::vector<CProbe> M2ZendrixMachAbstract::ListProbes(long probe, long tip) {
    return ask_probe_list("M2ZendrixMachAbstract::ListProbes", probe, tip);
}

// The second number of a pseudo-axis is the highest number in use.
int M2ZendrixMachAbstract::ask_highest_number(const char* query, const char* axis) {
    std::map<std::string, CAxis> axes = {{axis, CAxis()}};
    return ask_probes({query, "Capabilities", probes},
                      [&](CZendrixCOM& c) { return c.Capabilities(axes, true); })
               ? to_number(axes[axis].number2)
               : 0;
}

int M2ZendrixMachAbstract::ask_active_number(const char* query, const char* axis) {
    double value = 0.0;
    return ask_probes({query, "Get", probes}, [&](CZendrixCOM& c) { return c.Get(axis, &value); })
               ? to_number(value)
               : 0;
}

int M2ZendrixMachAbstract::GetMaxProbeNum() { return ask_highest_number("GetMaxProbeNum", "probe"); }

// In spite of its name this is the highest number of a tip.
int M2ZendrixMachAbstract::GetMinProbeNum() { return ask_highest_number("GetMinProbeNum", "tip"); }

int M2ZendrixMachAbstract::GetActiveProbeNum() { return ask_active_number("GetActiveProbeNum", "probe"); }

int M2ZendrixMachAbstract::GetActiveTipNum() { return ask_active_number("GetActiveTipNum", "tip"); }
