#include "operations.h"

#include <algorithm>

namespace serverdll {

namespace {

// The protocol's form of a position; false if its flag is none of ours.
bool form_of(const Position& position, wire::TargetForm& form) {
    switch (position.flag) {
        case ZX_POSITION_PLAIN:
            form = wire::TargetForm::absolute;
            return true;
        case ZX_POSITION_FLAGGED:
            form = *position.axis == '\0' ? wire::TargetForm::end_of_point : wire::TargetForm::relative;
            return true;
        case ZX_POSITION_NO_TARGET:
            form = wire::TargetForm::none;
            return true;
        case ZX_POSITION_LOWEST:
            form = wire::TargetForm::lowest;
            return true;
        case ZX_POSITION_HIGHEST:
            form = wire::TargetForm::highest;
            return true;
        default:
            return false;
    }
}

}  // namespace

bool add_positions(wire::RequestWriter& request, std::size_t count, const Position* positions) {
    if (count > 0 && positions == nullptr) return false;
    for (std::size_t i = 0; i < count; ++i) {
        wire::TargetForm form = wire::TargetForm::absolute;
        if (positions[i].axis == nullptr || !form_of(positions[i], form)) return false;
        request.target(positions[i].axis, form, positions[i].value);
    }
    return true;
}

bool add_names(wire::RequestWriter& request, std::size_t count, const char* const* names) {
    if (count > 0 && names == nullptr) return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (names[i] == nullptr) return false;
        request.text(names[i]);
    }
    return true;
}

}  // namespace serverdll

using serverdll::operator<<;

bool CZendrixCOM::Client::ask(std::string_view words) {
    wire::RequestWriter line = request(words);
    return query(line);
}

bool CZendrixCOM::Client::ask(std::string_view words, const std::vector<std::string>& axes) {
    wire::RequestWriter line = request(words);
    return query(line << axes);
}

std::string CZendrixCOM::Client::ask_text(std::string_view words) {
    wire::RequestWriter line = request(words);
    std::string text;
    return query_line(line, [&](std::string_view body) { return serverdll::read_name(body, text); }) ? text
                                                                                                     : "";
}

std::map<std::string, std::string> CZendrixCOM::Client::ask_versions(std::string_view words) {
    wire::RequestWriter line = request(words);
    std::map<std::string, std::string> versions;
    const bool done = query_lines(line, [&](std::string_view body) {
        std::string name;
        std::string version;
        if (!serverdll::read_name_and_text(body, name, version)) return false;
        versions.insert_or_assign(std::move(name), std::move(version));
        return true;
    });
    return done ? versions : std::map<std::string, std::string>();
}

bool CZendrixCOM::Client::ask_names(std::string_view words, std::vector<std::string>& names) {
    wire::RequestWriter line = request(words);
    return query_names(line, names);
}

bool CZendrixCOM::Client::query_names(wire::RequestWriter& line, std::vector<std::string>& names) {
    std::vector<std::string> read;
    const bool done = query_lines(
        line, [&](std::string_view body) { return serverdll::read_name(body, read.emplace_back()); });
    if (done) names = std::move(read);
    return done;
}

bool CZendrixCOM::Client::query_numbers(wire::RequestWriter& line, double* values, std::size_t count) {
    return query_line(line,
                      [&](std::string_view body) { return serverdll::read_numbers(body, values, count); });
}

bool CZendrixCOM::Client::begin(std::string_view words, long* tid) {
    wire::RequestWriter line = request(words);
    return transaction(line, tid);
}

bool CZendrixCOM::Client::begin(std::string_view words, std::initializer_list<double> numbers,
                                std::size_t count, const Position* positions, long* tid,
                                serverdll::RequestKind kind) {
    wire::RequestWriter line = request(words);
    line << numbers;
    if (serverdll::add_positions(line, count, positions)) return transaction(line, tid, kind);
    if (tid != nullptr) *tid = 0;
    return refuse(serverdll::bad_argument);
}

bool CZendrixCOM::Client::send_block(std::string_view name, std::string_view data) {
    const serverdll::GatePass pass(m_gate);
    const std::size_t part = m_connection == nullptr ? data.size() : m_connection->block_part();
    if (data.size() > part) return send_parts(name, data, part);
    wire::RequestWriter line = request("send");
    return query_inside(line.text(name).text(data), nullptr);
}

bool CZendrixCOM::Client::send_parts(std::string_view name, std::string_view data, std::size_t part) {
    wire::RequestWriter begin = request("send begin");
    begin.text(name).integer(static_cast<std::int64_t>(data.size()));
    bool is_taken = query_inside(begin, nullptr);
    for (; is_taken && !data.empty(); data.remove_prefix(std::min(part, data.size()))) {
        wire::RequestWriter line = request("send part");
        is_taken = query_inside(line.integer(begin.id()).text(data.substr(0, part)), nullptr);
    }
    return is_taken;
}
