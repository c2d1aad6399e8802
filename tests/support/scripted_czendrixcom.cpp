#include "scripted_czendrixcom.h"

#include <algorithm>
#include <atomic>
#include <concepts>
#include <cstdio>
#include <tuple>

using scripted::script;

namespace scripted {

Script& script() {
    static Script the_script;
    return the_script;
}

void Script::reset() {
    std::lock_guard guard(m_mutex);
    answers = Answers();
    m_calls.clear();
    m_operations.clear();
    m_counts.clear();
    m_orders.clear();
    m_actions.clear();
    m_functionNames.clear();
    m_userNames.clear();
    m_lastId = 0;
}

void Script::add_order(const std::string& operation, Order order) {
    std::lock_guard guard(m_mutex);
    order.nth = order.nth ? order.nth + m_counts[operation] : 0;
    m_orders[operation].push_back(std::move(order));
}

void Script::answer_false(const std::string& operation, int nth) {
    add_order(operation, {nth, Result::answer_false, ""});
}
void Script::throw_error(const std::string& operation, const std::string& text, int nth) {
    add_order(operation, {nth, Result::throw_error, text});
}
void Script::throw_foreign(const std::string& operation, int nth) {
    add_order(operation, {nth, Result::throw_foreign, ""});
}
void Script::succeed(const std::string& operation) {
    std::lock_guard guard(m_mutex);
    m_orders.erase(operation);
}

void Script::on_call(const std::string& operation, std::function<void()> action) {
    std::lock_guard guard(m_mutex);
    m_actions[operation] = std::move(action);
}

void Script::name_function(void (*function)(), const std::string& name) {
    std::lock_guard guard(m_mutex);
    m_functionNames[reinterpret_cast<const void*>(function)] = name;
}
void Script::name_user(const void* user, const std::string& name) {
    std::lock_guard guard(m_mutex);
    m_userNames[user] = name;
}

std::string Script::number_of(std::map<const void*, std::string>& names, const void* pointer, char prefix) {
    if (!pointer) return "null";
    const std::string next = prefix + std::to_string(names.size() + 1);
    return names.try_emplace(pointer, next).first->second;
}

std::string Script::label(void (*function)(), const void* user) {
    std::lock_guard guard(m_mutex);
    return number_of(m_functionNames, reinterpret_cast<const void*>(function), 'f') + ", " +
           number_of(m_userNames, user, 'u');
}

std::vector<std::string> Script::calls() {
    std::lock_guard guard(m_mutex);
    return m_calls;
}
std::vector<std::string> Script::take_calls() {
    std::lock_guard guard(m_mutex);
    m_operations.clear();
    return std::exchange(m_calls, {});
}
std::vector<std::string> Script::calls_of(const std::string& operation) {
    std::lock_guard guard(m_mutex);
    std::vector<std::string> found;
    for (std::size_t i = 0; i < m_calls.size(); ++i) {
        if (m_operations[i] == operation) found.push_back(m_calls[i]);
    }
    return found;
}
long Script::last_id() {
    std::lock_guard guard(m_mutex);
    return m_lastId;
}

std::vector<CZendrixCOM*> Script::clients() {
    std::lock_guard guard(m_mutex);
    std::vector<CZendrixCOM*> living;
    for (const auto& client : m_clients) living.push_back(client.first);
    return living;
}
CZendrixCOM* Script::live() {
    std::lock_guard guard(m_mutex);
    return m_clients.empty() ? nullptr : m_clients.back().first;
}

Script::Slots Script::slots(CZendrixCOM* client) {
    std::lock_guard guard(m_mutex);
    for (auto it = m_clients.rbegin(); it != m_clients.rend(); ++it) {
        if (!client || it->first == client) return it->second;
    }
    return {};
}

void Script::change_slots(CZendrixCOM* client, const std::function<void(Slots&)>& change) {
    std::lock_guard guard(m_mutex);
    for (auto& entry : m_clients) {
        if (entry.first == client) change(entry.second);
    }
}

void Script::enter(CZendrixCOM* client) {
    std::lock_guard guard(m_mutex);
    m_clients.emplace_back(client, Slots());
}
void Script::leave(CZendrixCOM* client) {
    std::lock_guard guard(m_mutex);
    std::erase_if(m_clients, [client](const auto& entry) { return entry.first == client; });
}

bool Script::outcome(const std::string& operation, const std::string& arguments) {
    std::function<void()> action;
    std::vector<Order> orders;
    int count = 0;
    {
        std::lock_guard guard(m_mutex);
        m_calls.push_back(operation + "(" + arguments + ")");
        m_operations.push_back(operation);
        count = ++m_counts[operation];
        if (const auto it = m_actions.find(operation); it != m_actions.end()) action = it->second;
        if (const auto it = m_orders.find(operation); it != m_orders.end()) orders = it->second;
    }
    if (action) action();
    for (const Order& order : orders) {
        if (order.nth != 0 && order.nth != count) continue;
        if (order.result == Result::throw_error) throw CZendrixError(order.text);
        if (order.result == Result::throw_foreign) throw Foreign();
        return false;
    }
    return true;
}

bool Script::transaction(const std::string& operation, const std::string& arguments, long* tid) {
    long id = 0;
    {
        std::lock_guard guard(m_mutex);
        id = m_lastId = answers.next_id++;
    }
    std::atomic_ref<long> written(*tid);
    written = id;  // before the request leaves
    try {
        if (outcome(operation, arguments)) return true;
        written = answers.id_on_failure;
        return false;
    } catch (...) {
        written = answers.id_on_failure;
        throw;
    }
}

namespace {

template <class Slot, class... Arguments>
bool fire(const Slot& slot, Arguments... arguments) {
    if (!slot.first) return false;
    slot.first(slot.second, arguments...);
    return true;
}

}  // namespace

bool Script::fire_async(const std::string& text, CZendrixCOM* client) {
    return fire(slots(client).async, text.c_str());
}
bool Script::fire_error(long tid, const std::string& text, CZendrixCOM* client) {
    return fire(slots(client).error, tid, text.c_str());
}
bool Script::fire_warning(long tid, const std::string& text, CZendrixCOM* client) {
    return fire(slots(client).warning, tid, text.c_str());
}
bool Script::fire_complete(long tid, CZendrixCOM* client) { return fire(slots(client).complete, tid); }
bool Script::fire_scan(std::vector<double> values, CZendrixCOM* client) {
    return fire(slots(client).scan, static_cast<unsigned>(values.size()), values.data());
}
bool Script::fire_watch(std::vector<double> values, CZendrixCOM* client) {
    return fire(slots(client).watch, static_cast<unsigned>(values.size()), values.data());
}

}  // namespace scripted

namespace {

// How arguments are printed.
std::string show(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.12g", value);
    return text;
}
template <std::integral Number>
std::string show(Number value) {
    return std::to_string(value);
}
std::string show(const std::string& text) { return "\"" + text + "\""; }
std::string show(const char* text) { return text ? show(std::string(text)) : "null"; }

std::string show(const Position& position) {
    std::string text = position.axis;
    if (position.flag != ZX_POSITION_NO_TARGET) text += "=" + show(position.value);
    return text + " flag " + show(position.flag);
}

template <class T>
std::string show_all(const T* items, std::size_t count) {
    if (!items) return "null";
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += (i ? ", " : "") + show(items[i]);
    return text;
}
template <class T>
std::string show(const std::vector<T>& items) {
    return "{" + show_all(items.data(), items.size()) + "}";
}

template <class First, class... Rest>
std::string args(const First& first, const Rest&... rest) {
    std::string text = show(first);
    ((text += ", " + show(rest)), ...);
    return text;
}

std::string with_positions(std::string before, const Position* positions, std::size_t count) {
    if (positions && count == 0) return before + ", none";
    return before + ", " + show_all(positions, count);
}

template <class Function>
std::string label(Function function, void* user) {
    return script().label(reinterpret_cast<void (*)()>(function), user);
}

bool told(const char* operation, const std::string& arguments = "") {
    return script().outcome(operation, arguments);
}

// A list query: true and the list, or false.
template <class List>
bool fill(const char* operation, const std::string& arguments, List& out, const List& answer) {
    if (!told(operation, arguments)) return false;
    out = answer;
    return true;
}

template <class Value>
Value ask(const char* operation, const Value& answer) {
    return told(operation) ? answer : Value();
}

bool start(const char* operation, const std::string& arguments, long* tid) {
    return script().transaction(operation, arguments, tid);
}

scripted::Answers& answers() { return script().answers; }

}  // namespace

CZendrixCOM::CZendrixCOM(void (*progress)(void*, const char*), void* user, const char* server,
                         CZXConnection* connection)
    : m_client(nullptr) {
    (void)m_client;
    told("CZendrixCOM",
         label(progress, user) + ", " + show(server) + ", " + (connection ? "shared" : "null"));
    script().enter(this);
}
CZendrixCOM::~CZendrixCOM() {
    script().leave(this);
    told("~CZendrixCOM");
}

bool CZendrixCOM::ThrowExceptions(bool on) { return told("ThrowExceptions", show(on)); }
bool CZendrixCOM::HasConnection() const { return told("HasConnection") && answers().connected; }
bool CZendrixCOM::SetSync3(SyncType mode) {
    if (!told("SetSync3", show(static_cast<int>(mode)))) return false;
    script().change_slots(this, [mode](auto& slots) { slots.mode = mode; });
    return true;
}
bool CZendrixCOM::GetSync3(SyncType* mode) { return fill("GetSync3", "", *mode, script().slots(this).mode); }
bool CZendrixCOM::Master() { return told("Master"); }
bool CZendrixCOM::GetMachine(bool at_once) { return told("GetMachine", show(at_once)); }
bool CZendrixCOM::ReleaseMachine(bool at_once) { return told("ReleaseMachine", show(at_once)); }
bool CZendrixCOM::Abort(long tid) { return told("Abort", show(tid)); }
long CZendrixCOM::GetMajorRevision() { return ask("GetMajorRevision", answers().major_revision); }
long CZendrixCOM::GetMinorRevision() { return ask("GetMinorRevision", answers().minor_revision); }
long CZendrixCOM::GetLatency() { return ask("GetLatency", answers().latency); }

void CZendrixCOM::SetAsyncCallback(ZXAsyncCallback callback, void* user) {
    told("SetAsyncCallback", label(callback, user));
    script().change_slots(this, [=](auto& slots) { slots.async = {callback, user}; });
}
void CZendrixCOM::GetAsyncCallback(ZXAsyncCallback& callback, void*& user) {
    told("GetAsyncCallback");
    std::tie(callback, user) = script().slots(this).async;
}
void CZendrixCOM::SetErrorMsgCallback(ZXMessageCallback callback, void* user) {
    told("SetErrorMsgCallback", label(callback, user));
    script().change_slots(this, [=](auto& slots) { slots.error = {callback, user}; });
}
void CZendrixCOM::GetErrorMsgCallback(ZXMessageCallback& callback, void*& user) {
    told("GetErrorMsgCallback");
    std::tie(callback, user) = script().slots(this).error;
}
void CZendrixCOM::SetWarningMsgCallback(ZXMessageCallback callback, void* user) {
    told("SetWarningMsgCallback", label(callback, user));
    script().change_slots(this, [=](auto& slots) { slots.warning = {callback, user}; });
}
void CZendrixCOM::GetWarningMsgCallback(ZXMessageCallback& callback, void*& user) {
    told("GetWarningMsgCallback");
    std::tie(callback, user) = script().slots(this).warning;
}
void CZendrixCOM::SetCommandCompleteCallback(ZXCompleteCallback callback, void* user) {
    told("SetCommandCompleteCallback", label(callback, user));
    script().change_slots(this, [=](auto& slots) { slots.complete = {callback, user}; });
}
void CZendrixCOM::SetScanCallback(ZXDataCallback callback, void* user) {
    told("SetScanCallback", label(callback, user));
    script().change_slots(this, [=](auto& slots) { slots.scan = {callback, user}; });
}
void CZendrixCOM::SetWatchAxisCallback(ZXDataCallback callback, void* user) {
    told("SetWatchAxisCallback", label(callback, user));
    script().change_slots(this, [=](auto& slots) { slots.watch = {callback, user}; });
}

std::string CZendrixCOM::GetMachineName() { return ask("GetMachineName", answers().machine_name); }
std::string CZendrixCOM::GetMachineRevision() {
    return ask("GetMachineRevision", answers().machine_revision);
}
std::string CZendrixCOM::GetSerialNumber() { return ask("GetSerialNumber", answers().serial_number); }
std::map<std::string, std::string> CZendrixCOM::GetComponentsMap() {
    return ask("GetComponentsMap", answers().components);
}
std::map<std::string, std::string> CZendrixCOM::GetOptionsMap() {
    return ask("GetOptionsMap", answers().options);
}
bool CZendrixCOM::CommandSet(std::vector<std::string>& words, const char* filter) {
    return fill("CommandSet", show(filter), words, answers().command_words);
}
bool CZendrixCOM::Capabilities(std::map<std::string, CAxis>& axes, bool all) {
    if (!fill("Capabilities", show(all), axes, answers().capabilities)) return false;
    if (all) axes.insert(answers().pseudo_capabilities.begin(), answers().pseudo_capabilities.end());
    return true;
}
bool CZendrixCOM::InitList(std::vector<std::string>& axes) {
    return fill("InitList", "", axes, answers().init_list);
}
bool CZendrixCOM::InitActive(std::vector<std::string>& axes) {
    return fill("InitActive", "", axes, answers().init_active);
}
bool CZendrixCOM::KeyPadList(std::vector<std::string>& axes, bool inactive_too) {
    return fill("KeyPadList", show(inactive_too), axes, answers().keypad_list);
}
bool CZendrixCOM::KeyPadActive(std::vector<std::string>& axes) {
    return fill("KeyPadActive", "", axes, answers().keypad_active);
}
bool CZendrixCOM::SpinList(std::vector<std::string>& axes) {
    return fill("SpinList", "", axes, answers().spin_list);
}
bool CZendrixCOM::SpinActive(std::vector<std::string>& axes, std::vector<double>& values) {
    if (!fill("SpinActive", "", axes, answers().spin_active)) return false;
    values = answers().spin_values;
    return true;
}

bool CZendrixCOM::Get(const char* axis, double* value) {
    if (!told("Get", show(axis))) return false;
    if (const auto it = answers().values.find(axis); it != answers().values.end()) *value = it->second;
    return true;
}
bool CZendrixCOM::Get(std::vector<Position>& positions) {
    if (!told("Get", show(positions))) return false;
    for (Position& position : positions) {
        const auto it = answers().values.find(position.axis);
        if (it != answers().values.end()) position.value = it->second;
    }
    return true;
}
bool CZendrixCOM::ScanAxis(std::size_t count, const char** axes) {
    return told("ScanAxis", show(count) + ", " + show_all(axes, count)) && answers().scan_axis;
}
bool CZendrixCOM::GetWobble(double* p1, double* p2, double* p3, double* p4, double* p5, double* p6) {
    if (!told("GetWobble")) return false;
    const double* wobble = answers().wobble;
    for (double* p : {p1, p2, p3, p4, p5, p6}) *p = *wobble++;
    return true;
}
bool CZendrixCOM::WatchAxisRT(long interval, long second, std::vector<std::string>& axes) {
    return told("WatchAxisRT", args(interval, second, axes));
}
bool CZendrixCOM::WatchAxisRT(long interval, long second, std::size_t count, const char** axes) {
    return told("WatchAxisRT", args(interval, second, count) + ", " + show_all(axes, count));
}
bool CZendrixCOM::GetProbesystemList(std::vector<std::string>& names, const char* name) {
    return fill("GetProbesystemList", "names, " + show(name), names, answers().probesystem_names);
}
bool CZendrixCOM::GetProbesystemList(std::vector<CProbesystemList>& records, const char* name) {
    return fill("GetProbesystemList", "records, " + show(name), records, answers().probesystem_records);
}
bool CZendrixCOM::ProbesystemInfo(std::string& name, long& id) {
    if (!told("ProbesystemInfo")) return false;
    name = answers().probesystem_name;
    id = answers().probesystem_id;
    return true;
}
bool CZendrixCOM::ProbesystemType(Probesystemtype& type) {
    return fill("ProbesystemType", "", type, answers().probesystem_type);
}
bool CZendrixCOM::ProbeList(std::vector<CProbe>& probes, long probe, long tip) {
    return fill("ProbeList", args(probe, tip), probes, answers().probes);
}
bool CZendrixCOM::Execute(const char* command, std::vector<std::string>& reply, long* tid) {
    if (tid) return start("Execute", show(command) + ", tid", tid);
    return fill("Execute", show(command) + ", null", reply, answers().execute_reply);
}

bool CZendrixCOM::Init(long* tid) { return start("Init", "", tid); }
bool CZendrixCOM::InitAxes(std::vector<std::string>& axes, long* tid) {
    return start("InitAxes", show(axes), tid);
}
bool CZendrixCOM::Reset() { return told("Reset"); }
bool CZendrixCOM::Set(std::vector<Position> positions, long* tid) {
    return start("Set", show(positions), tid);
}
bool CZendrixCOM::Modulo(std::vector<std::string>& axes) { return told("Modulo", show(axes)); }
bool CZendrixCOM::Move(std::size_t count, Position* targets, long* tid) {
    return start("Move", with_positions(show(count), targets, count), tid);
}
bool CZendrixCOM::MoveZero(std::size_t count, Position* targets, long* tid) {
    return start("MoveZero", with_positions(show(count), targets, count), tid);
}
bool CZendrixCOM::MovePoly(std::size_t points, std::size_t count, Position* targets, long* tid) {
    return start("MovePoly", with_positions(args(points, count), targets, count), tid);
}
bool CZendrixCOM::MoveCircle(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                             std::size_t count, Position* targets, long* tid) {
    return start("MoveCircle", with_positions(args(p1, p2, p3, p4, p5, p6, p7, count), targets, count), tid);
}
bool CZendrixCOM::MoveCone(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                           double p8, double p9, std::size_t count, Position* targets, long* tid) {
    return start("MoveCone", with_positions(args(p1, p2, p3, p4, p5, p6, p7, p8, p9, count), targets, count),
                 tid);
}
bool CZendrixCOM::SetMoveBase(std::vector<std::string>& axes) { return told("SetMoveBase", show(axes)); }
bool CZendrixCOM::Scan(std::size_t count, Position* targets, long* tid) {
    return start("Scan", with_positions(show(count), targets, count), tid);
}
bool CZendrixCOM::ScanPoint(std::size_t count, Position* targets, long* tid) {
    return start("ScanPoint", with_positions(show(count), targets, count), tid);
}
bool CZendrixCOM::ScanPoly(std::size_t points, std::size_t count, Position* targets, long* tid) {
    return start("ScanPoly", with_positions(args(points, count), targets, count), tid);
}
bool CZendrixCOM::ScanCircle(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                             std::size_t count, Position* targets, long* tid) {
    return start("ScanCircle", with_positions(args(p1, p2, p3, p4, p5, p6, p7, count), targets, count), tid);
}
bool CZendrixCOM::ScanCone(double p1, double p2, double p3, double p4, double p5, double p6, double p7,
                           double p8, double p9, std::size_t count, Position* targets, long* tid) {
    return start("ScanCone", with_positions(args(p1, p2, p3, p4, p5, p6, p7, p8, p9, count), targets, count),
                 tid);
}
bool CZendrixCOM::ScanData(std::vector<std::string>& names, long* tid) {
    return start("ScanData", show(names), tid);
}
bool CZendrixCOM::SetScanBase(std::vector<std::string>& axes) { return told("SetScanBase", show(axes)); }
bool CZendrixCOM::ProbeLoad(long probe, long tip, long* tid) {
    return start("ProbeLoad", args(probe, tip), tid);
}
bool CZendrixCOM::ProbeChange(long probe, long tip, long* tid) {
    return start("ProbeChange", args(probe, tip), tid);
}
bool CZendrixCOM::ProbeUnload(long* tid) { return start("ProbeUnload", "", tid); }
bool CZendrixCOM::ProbeOffset(std::size_t count, Position* offsets, long* tid) {
    return start("ProbeOffset", with_positions(show(count), offsets, count), tid);
}
bool CZendrixCOM::ProbeDefine(long probe, long tip, double x1, double x2, double x3, double x4) {
    return told("ProbeDefine", args(probe, tip, x1, x2, x3, x4));
}
bool CZendrixCOM::ProbeDelete(long probe, long tip) { return told("ProbeDelete", args(probe, tip)); }
bool CZendrixCOM::ProbesystemLoad(const char* name, long id, long* tid) {
    return start("ProbesystemLoad", args(name, id), tid);
}
bool CZendrixCOM::ProbesystemDefine(const char* name, long id, double x1, double x2, double x3, double x4,
                                    double x5, double x6) {
    return told("ProbesystemDefine", args(name, id, x1, x2, x3, x4, x5, x6));
}
bool CZendrixCOM::ProbesystemDelete(const char* name, long id) {
    return told("ProbesystemDelete", args(name, id));
}
bool CZendrixCOM::KeyPad(bool enable, std::vector<std::string>& axes, long* tid) {
    return start("KeyPad", args(enable, axes), tid);
}
bool CZendrixCOM::SpinEnable(std::vector<std::string>& axes) { return told("SpinEnable", show(axes)); }
bool CZendrixCOM::SpinDisable(std::vector<std::string>& axes) { return told("SpinDisable", show(axes)); }
bool CZendrixCOM::SetWobble(double p1, double p2, double p3, double p4, double p5, double p6) {
    return told("SetWobble", args(p1, p2, p3, p4, p5, p6));
}
bool CZendrixCOM::Send(std::string name, std::string data) { return told("Send", args(name, data)); }
bool CZendrixCOM::Receive(std::string name, std::string&, long* tid) {
    return start("Receive", show(name), tid);
}

bool CZendrixCOM::HasReceiver(long id) { return answers().reply_lines.contains(id); }
std::size_t CZendrixCOM::ReplyLineCount(long id) { return answers().reply_lines[id].size(); }
bool CZendrixCOM::TakeReplyLine(long id, std::string& line) {
    std::vector<std::string>& lines = answers().reply_lines[id];
    if (lines.empty()) return false;
    line = std::move(lines.front());
    lines.erase(lines.begin());
    return true;
}
std::size_t CZendrixCOM::PerLineSize() { return answers().per_line_size; }
