// Operations that act: each sends one line, and those with an id begin a transaction.
#include "czendrixcom.h"
#include "operations.h"

using serverdll::bad_argument;
using serverdll::RequestKind;
using serverdll::operator<<;

bool CZendrixCOM::Execute(const char* command, std::vector<std::string>& reply, long* tid) {
    const std::string_view words = command == nullptr ? "" : command;
    if (words.empty() || words.find_first_of("\r\n") != std::string_view::npos)
        return m_client->refuse(bad_argument);
    wire::RequestWriter request = m_client->request(words);
    if (tid != nullptr) return m_client->transaction(request, tid);
    std::vector<std::string> lines;
    const bool done = m_client->query_lines(request, [&lines](std::string_view line) {
        lines.emplace_back(line);
        return true;
    });
    if (done) reply = std::move(lines);
    return done;
}

bool CZendrixCOM::Init(long* tid) { return m_client->begin("init", tid); }

bool CZendrixCOM::InitAxes(std::vector<std::string>& axes, long* tid) {
    wire::RequestWriter request = m_client->request("init");
    return m_client->transaction(request << axes, tid);
}

bool CZendrixCOM::Reset() { return m_client->ask("reset"); }

bool CZendrixCOM::Set(std::vector<Position> positions, long* tid) {
    return m_client->begin("set", {}, positions.size(), positions.data(), tid);
}

bool CZendrixCOM::Modulo(std::vector<std::string>& axes) { return m_client->ask("modulo", axes); }

bool CZendrixCOM::Move(std::size_t count, Position* targets, long* tid) {
    return m_client->begin("move", {}, count, targets, tid);
}

bool CZendrixCOM::MoveZero(std::size_t count, Position* targets, long* tid) {
    return m_client->begin("movezero", {}, count, targets, tid);
}

bool CZendrixCOM::MovePoly(std::size_t points, std::size_t count, Position* targets, long* tid) {
    return m_client->begin("movepoly", {static_cast<double>(points)}, count, targets, tid);
}

bool CZendrixCOM::MoveCircle(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                             std::size_t count, Position* targets, long* tid) {
    return m_client->begin("movecircle", {p1, p2, p3, p4, p5, p6, p7}, count, targets, tid);
}

bool CZendrixCOM::MoveCone(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                           double p8, double p9, std::size_t count, Position* targets, long* tid) {
    return m_client->begin("movecone", {p1, p2, p3, p4, p5, p6, p7, p8, p9}, count, targets, tid);
}

bool CZendrixCOM::SetMoveBase(std::vector<std::string>& axes) { return m_client->ask("movebase", axes); }

bool CZendrixCOM::Scan(std::size_t count, Position* targets, long* tid) {
    return m_client->begin("scan", {}, count, targets, tid, RequestKind::scan);
}

bool CZendrixCOM::ScanPoint(std::size_t count, Position* targets, long* tid) {
    return m_client->begin("scanpoint", {}, count, targets, tid, RequestKind::scan);
}

bool CZendrixCOM::ScanPoly(std::size_t points, std::size_t count, Position* targets, long* tid) {
    return m_client->begin("scanpoly", {static_cast<double>(points)}, count, targets, tid, RequestKind::scan);
}

bool CZendrixCOM::ScanCircle(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                             std::size_t count, Position* targets, long* tid) {
    return m_client->begin("scancircle", {p1, p2, p3, p4, p5, p6, p7}, count, targets, tid,
                           RequestKind::scan);
}

bool CZendrixCOM::ScanCone(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                           double p8, double p9, std::size_t count, Position* targets, long* tid) {
    return m_client->begin("scancone", {p1, p2, p3, p4, p5, p6, p7, p8, p9}, count, targets, tid,
                           RequestKind::scan);
}

bool CZendrixCOM::ScanData(std::vector<std::string>& names, long* tid) {
    wire::RequestWriter request = m_client->request("scandata");
    return m_client->transaction(request << names, tid);
}

bool CZendrixCOM::SetScanBase(std::vector<std::string>& axes) { return m_client->ask("scanbase", axes); }

bool CZendrixCOM::ProbeLoad(long probe, long tip, long* tid) {
    wire::RequestWriter request = m_client->request("probe load");
    return m_client->transaction(request.integer(probe).integer(tip), tid);
}

bool CZendrixCOM::ProbeChange(long probe, long tip, long* tid) {
    wire::RequestWriter request = m_client->request("probe change");
    return m_client->transaction(request.integer(probe).integer(tip), tid);
}

bool CZendrixCOM::ProbeUnload(long* tid) { return m_client->begin("probe unload", tid); }

bool CZendrixCOM::ProbeOffset(std::size_t count, Position* offsets, long* tid) {
    return m_client->begin("probe offset", {}, count, offsets, tid);
}

bool CZendrixCOM::ProbeDefine(long probe, long tip, double x1, double x2, double x3, double x4) {
    wire::RequestWriter request = m_client->request("probe define");
    return m_client->query(request.integer(probe).integer(tip)
                           << std::initializer_list<double>{x1, x2, x3, x4});
}

bool CZendrixCOM::ProbeDelete(long probe, long tip) {
    wire::RequestWriter request = m_client->request("probe delete");
    return m_client->query(request.integer(probe).integer(tip));
}

bool CZendrixCOM::ProbesystemLoad(const char* name, long id, long* tid) {
    wire::RequestWriter request = m_client->request("probesystem load");
    return m_client->transaction(request.text(name == nullptr ? "" : name).integer(id), tid);
}

bool CZendrixCOM::ProbesystemDefine(const char* name, long id, double x1, double x2, double x3, double x4,
                                    double x5, double x6) {
    wire::RequestWriter request = m_client->request("probesystem define");
    request.text(name == nullptr ? "" : name).integer(id);
    return m_client->query(request << std::initializer_list<double>{x1, x2, x3, x4, x5, x6});
}

bool CZendrixCOM::ProbesystemDelete(const char* name, long id) {
    wire::RequestWriter request = m_client->request("probesystem delete");
    return m_client->query(request.text(name == nullptr ? "" : name).integer(id));
}

bool CZendrixCOM::KeyPad(bool enable, std::vector<std::string>& axes, long* tid) {
    wire::RequestWriter request = m_client->request(enable ? "keypad enable" : "keypad disable");
    return m_client->transaction(request << axes, tid);
}

bool CZendrixCOM::SpinEnable(std::vector<std::string>& axes) { return m_client->ask("spin enable", axes); }

bool CZendrixCOM::SpinDisable(std::vector<std::string>& axes) { return m_client->ask("spin disable", axes); }

bool CZendrixCOM::SetWobble(double p1, double p2, double p3, double p4, double p5, double p6) {
    wire::RequestWriter request = m_client->request("wobble");
    return m_client->query(request << std::initializer_list<double>{p1, p2, p3, p4, p5, p6});
}

bool CZendrixCOM::Send(std::string name, std::string data) {
    return m_client->send_block(name, data);
}

bool CZendrixCOM::Receive(std::string name, std::string& data, long* tid) {
    wire::RequestWriter request = m_client->request("receive");
    const bool waits = m_client->mode == ZX_SYNC;
    if (!m_client->transaction(request.text(name), tid, RequestKind::receive)) return false;
    if (waits) data = m_client->replies.joined(static_cast<long>(request.id()));
    return true;
}
