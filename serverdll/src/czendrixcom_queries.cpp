// Operations that ask: each sends one line and reads the data lines of its answer.
#include <limits>

#include "czendrixcom.h"
#include "operations.h"

using serverdll::bad_argument;
using serverdll::operator<<;

std::string CZendrixCOM::GetMachineName() { return m_client->ask_text("machine name"); }

std::string CZendrixCOM::GetMachineRevision() { return m_client->ask_text("machine revision"); }

std::string CZendrixCOM::GetSerialNumber() { return m_client->ask_text("machine serial"); }

std::map<std::string, std::string> CZendrixCOM::GetComponentsMap() {
    return m_client->ask_versions("components");
}

std::map<std::string, std::string> CZendrixCOM::GetOptionsMap() { return m_client->ask_versions("options"); }

bool CZendrixCOM::CommandSet(std::vector<std::string>& words, const char* filter) {
    if (!m_client->ask_names("commands", words)) return false;
    const std::string_view begin = filter == nullptr ? "" : filter;
    std::erase_if(words, [begin](const std::string& word) { return !word.starts_with(begin); });
    return true;
}

bool CZendrixCOM::Capabilities(std::map<std::string, CAxis>& axes, bool all) {
    wire::RequestWriter request = m_client->request(all ? "capabilities all" : "capabilities");
    std::map<std::string, CAxis> read;
    const bool done = m_client->query_lines(request, [&read](std::string_view line) {
        CAxis axis;
        if (!serverdll::read_axis(line, axis)) return false;
        read.insert_or_assign(axis.name, std::move(axis));
        return true;
    });
    if (done) axes = std::move(read);
    return done;
}

bool CZendrixCOM::InitList(std::vector<std::string>& axes) { return m_client->ask_names("init list", axes); }

bool CZendrixCOM::InitActive(std::vector<std::string>& axes) {
    return m_client->ask_names("init active", axes);
}

bool CZendrixCOM::KeyPadList(std::vector<std::string>& axes, bool inactive_too) {
    return m_client->ask_names(inactive_too ? "keypad list +inactive" : "keypad list", axes);
}

bool CZendrixCOM::KeyPadActive(std::vector<std::string>& axes) {
    return m_client->ask_names("keypad active", axes);
}

bool CZendrixCOM::SpinList(std::vector<std::string>& axes) { return m_client->ask_names("spin list", axes); }

bool CZendrixCOM::SpinActive(std::vector<std::string>& axes, std::vector<double>& values) {
    wire::RequestWriter request = m_client->request("spin active");
    std::vector<std::string> names;
    std::vector<double> read;
    const bool done = m_client->query_lines(request, [&](std::string_view line) {
        return serverdll::read_name_and_value(line, names.emplace_back(), read.emplace_back());
    });
    if (!done) return false;
    axes = std::move(names);
    values = std::move(read);
    return true;
}

bool CZendrixCOM::Get(const char* axis, double* value) {
    if (axis == nullptr || value == nullptr) return m_client->refuse(bad_argument);
    wire::RequestWriter request = m_client->request("get");
    double read = 0.0;
    const bool done = m_client->query_numbers(request.text(axis), &read, 1);
    if (done) *value = read;
    return done;
}

bool CZendrixCOM::Get(std::vector<Position>& positions) {
    wire::RequestWriter request = m_client->request("get");
    for (const Position& position : positions) {
        if (position.axis == nullptr) return m_client->refuse(bad_argument);
        request.text(position.axis);
    }
    std::vector<double> values(positions.size());
    if (!m_client->query_numbers(request, values.data(), values.size())) return false;
    for (std::size_t i = 0; i < values.size(); ++i) positions[i].value = values[i];
    return true;
}

bool CZendrixCOM::ScanAxis(std::size_t count, const char** axes) {
    wire::RequestWriter request = m_client->request("scanaxis");
    if (!serverdll::add_names(request, count, axes)) return m_client->refuse(bad_argument);
    bool together = false;
    return m_client->query_line(request, [&](std::string_view line) {
        return serverdll::read_flag(line, together);
    }) && together;
}

bool CZendrixCOM::GetWobble(double* p1, double* p2, double* p3, double* p4, double* p5, double* p6) {
    double* const targets[] = {p1, p2, p3, p4, p5, p6};
    double values[6] = {};
    wire::RequestWriter request = m_client->request("wobble get");
    if (!m_client->query_numbers(request, values, 6)) return false;
    for (std::size_t i = 0; i < 6; ++i) {
        if (targets[i] != nullptr) *targets[i] = values[i];
    }
    return true;
}

bool CZendrixCOM::WatchAxisRT(long interval, long second, std::vector<std::string>& axes) {
    wire::RequestWriter request = m_client->request("watch");
    request.integer(interval).integer(second) << axes;
    return m_client->watch(request, axes.size());
}

bool CZendrixCOM::WatchAxisRT(long interval, long second, std::size_t count, const char** axes) {
    wire::RequestWriter request = m_client->request("watch");
    request.integer(interval).integer(second);
    if (!serverdll::add_names(request, count, axes)) return m_client->refuse(bad_argument);
    return m_client->watch(request, count);
}

bool CZendrixCOM::GetProbesystemList(std::vector<std::string>& names, const char* name) {
    wire::RequestWriter request = m_client->request("probesystem list");
    return m_client->query_names(request.text(name == nullptr ? "" : name), names);
}

bool CZendrixCOM::GetProbesystemList(std::vector<CProbesystemList>& records, const char* name) {
    wire::RequestWriter request = m_client->request("probesystem records");
    request.text(name == nullptr ? "" : name);
    std::vector<CProbesystemList> read;
    const bool done = m_client->query_lines(request, [&read](std::string_view line) {
        CProbesystemEntry entry;
        // A name alone stands for a system without ids.
        const bool is_name = serverdll::read_name(line, entry.name);
        if (!is_name && !serverdll::read_probesystem(line, entry)) return false;
        if (read.empty() || read.back().name != entry.name) read.push_back({entry.name, {}});
        if (!is_name) read.back().entries.push_back(std::move(entry));
        return true;
    });
    if (done) records = std::move(read);
    return done;
}

bool CZendrixCOM::ProbesystemInfo(std::string& name, long& id) {
    wire::RequestWriter request = m_client->request("probesystem info");
    return m_client->query_line(
        request, [&](std::string_view line) { return serverdll::read_name_and_id(line, name, id); });
}

bool CZendrixCOM::ProbesystemType(Probesystemtype& type) {
    wire::RequestWriter request = m_client->request("probesystem type");
    return m_client->query_line(
        request, [&](std::string_view line) { return serverdll::read_probesystem_type(line, type); });
}

bool CZendrixCOM::ProbeList(std::vector<CProbe>& probes, long probe, long tip) {
    wire::RequestWriter request = m_client->request("probe list");
    std::vector<CProbe> read;
    const bool done = m_client->query_lines(
        request.integer(probe).integer(tip),
        [&read](std::string_view line) { return serverdll::read_probe(line, read.emplace_back()); });
    if (done) probes = std::move(read);
    return done;
}
