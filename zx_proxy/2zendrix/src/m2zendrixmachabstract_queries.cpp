// The host's questions about axes: which may go together, keypad, spin, initialisation, wobble and autoinfo.
#include <algorithm>

#include "drivertrace.h"
#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "os/thread_text.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_queries.cpp";

// What the driver passes beside the interval of an autoinfo, and the interval for none.
constexpr long watch_second = 50;
constexpr long watch_no_interval = -1;

// Each axis with a blank behind it.
std::string axes_to_string(const AxisSet& axes) {
    std::string text;
    for (const std::string& axis : axes) text += axis + " ";
    return text;
}

// The name that a thread was handed last; a longer one is cut.
using KeptName = os::ThreadText<4096>;

// Takes one step of a walk: copies the name it stands on, null at the end.
const char* take_name(const std::set<std::string>& names, std::set<std::string>::iterator& next,
                      KeptName& kept) {
    return next == names.end() ? nullptr : kept.keep(*next++);
}

const char* take_name(const std::map<std::string, double>& axes,
                      std::map<std::string, double>::iterator& next, KeptName& kept, double* value) {
    if (next == axes.end()) return nullptr;
    const auto& [name, mapped] = *next++;
    *value = mapped;
    return kept.keep(name);
}

const char* next_keypad_axis(KeypadAxisList& list) {
    return list.next == list.names.end() ? nullptr : (list.next++)->c_str();
}

}  // namespace

bool M2ZendrixMachAbstract::IsScanningPossibleWith(const AxisSet& axes) {
    if (axes.empty()) return true;
    CZendrixCOM* const client = this->client();
    if (!client) return false;
    std::vector<const char*> names;
    for (const std::string& axis : axes) names.push_back(axis.c_str());
    try {
        return client->ScanAxis(names.size(), names.data());
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "IsScanningPossibleWith(): ScanAxis() failed: %s", error.m_text.c_str());
        return false;
    }
}

bool M2ZendrixMachAbstract::IsMovePossibleWith(const AxisSet& axes) {
    return axes.empty() || is_possible_with("moveaxis ", axes);
}

bool M2ZendrixMachAbstract::IsLimitMovePossibleWith(const AxisSet& axes) {
    return axes.empty() ? m_hasMoveLimit.load() : is_possible_with("movelimitaxis ", axes);
}

bool M2ZendrixMachAbstract::IsZeroMovePossibleWith(const AxisSet& axes) {
    return axes.empty() || is_possible_with("movezeroaxis ", axes);
}

bool M2ZendrixMachAbstract::is_possible_with(const char* word, const AxisSet& axes) {
    std::vector<std::string> reply;
    execute_cmd_and_wait(client(), word + axes_to_string(axes), reply);
    return !reply.empty() && reply.front() == "1";
}

bool M2ZendrixMachAbstract::HasKeypad() { return m_hasKeypad; }

const char* M2ZendrixMachAbstract::GetFirstKeypadAxis() { return GetFirstKeypadAxisByList(m_keypadList); }

const char* M2ZendrixMachAbstract::GetNextKeypadAxis() { return next_keypad_axis(m_keypadList); }

const char* M2ZendrixMachAbstract::GetFirstActiveKeypadAxis() {
    return GetFirstKeypadAxisByList(m_keypadActiveList);
}

const char* M2ZendrixMachAbstract::GetNextActiveKeypadAxis() { return next_keypad_axis(m_keypadActiveList); }

const char* M2ZendrixMachAbstract::GetFirstKeypadAxisByList(KeypadAxisList& list) {
    CZendrixCOM* const client = this->client();
    if (!client) return nullptr;
    // Clean before the machine is asked: an event that comes meanwhile makes the list dirty again.
    if (list.dirty.exchange(false)) {
        try {
            if (!rebuild_keypad_list(list, *client)) {
                list.dirty = true;
                return nullptr;
            }
        } catch (...) {
            list.dirty = true;
            throw;
        }
    }
    list.next = list.names.begin();
    return next_keypad_axis(list);
}

bool M2ZendrixMachAbstract::rebuild_keypad_list(KeypadAxisList& list, CZendrixCOM& client) {
    list.names.clear();
    list.next = list.names.end();
    std::vector<std::string> names;
    if (&list == &m_keypadList) {
        DRIVER_TRACE(source, 4, "GetFirstKeypadAxisByList(): rebuild keypad list");
        if (!client.KeyPadList(names, m_keypadListInactive)) {
            MERRLOG_REPORT(source, "%s(); m_pZendrixCom->KeyPadList(true) failed",
                           "M2ZendrixMachAbstract::GetFirstKeypadAxisByList");
            return false;
        }
    } else if (&list == &m_keypadActiveList) {
        DRIVER_TRACE(source, 4, "GetFirstKeypadAxisByList(): rebuild keypad active list");
        if (!client.KeyPadActive(names)) {
            MERRLOG_REPORT(source, "GetFirstKeypadAxis(); m_pZendrixCom->KeyPadList() failed");
            return false;
        }
    } else {
        MERRLOG_REPORT(source, "GetFirstKeypadAxis(): invalid pointer");
        return false;
    }
    list.names.insert(names.begin(), names.end());
    return true;
}

bool M2ZendrixMachAbstract::IsKeypadAxis(const std::string& axis) {
    for (const char* name = GetFirstKeypadAxis(); name; name = GetNextKeypadAxis()) {
        if (axis == name) return true;
    }
    return false;
}

bool M2ZendrixMachAbstract::HasSpin() { return m_hasSpin; }

const char* M2ZendrixMachAbstract::GetFirstSpinAxis() {
    static thread_local KeptName kept;
    os::LockGuard guard(m_spinListLock);
    m_spinListNext = m_spinList.begin();
    return take_name(m_spinList, m_spinListNext, kept);
}

const char* M2ZendrixMachAbstract::GetNextSpinAxis() {
    static thread_local KeptName kept;
    os::LockGuard guard(m_spinListLock);
    return take_name(m_spinList, m_spinListNext, kept);
}

const char* M2ZendrixMachAbstract::GetFirstActiveSpinAxis(double* value) {
    static thread_local KeptName kept;
    os::LockGuard guard(m_spinActiveLock);
    m_spinActiveNext = m_spinActive.begin();
    return take_name(m_spinActive, m_spinActiveNext, kept, value);
}

const char* M2ZendrixMachAbstract::GetNextActiveSpinAxis(double* value) {
    static thread_local KeptName kept;
    os::LockGuard guard(m_spinActiveLock);
    return take_name(m_spinActive, m_spinActiveNext, kept, value);
}

bool M2ZendrixMachAbstract::IsSpinAxis(const std::string& axis) {
    os::LockGuard guard(m_spinListLock);
    return m_spinList.contains(axis);
}

bool M2ZendrixMachAbstract::Reserved42() { return false; }

bool M2ZendrixMachAbstract::HasInitList() { return m_hasInitList; }

bool M2ZendrixMachAbstract::IsInitialized() { return GetAxisValue("init") != 0.0; }

bool M2ZendrixMachAbstract::IsInInitList(const std::string& axis) {
    os::LockGuard guard(m_initListLock);
    return m_initList.contains(axis);
}

bool M2ZendrixMachAbstract::IsAxisInitialized(const std::string& axis) {
    CZendrixCOM* const client = this->client();
    if (!client) return false;
    std::vector<std::string> names;
    if (!client->InitActive(names)) {
        MERRLOG_REPORT(source, "%s(): InitActive() failed", "M2ZendrixMachAbstract::IsAxisInitialized");
    }
    return std::find(names.begin(), names.end(), axis) != names.end();
}

void M2ZendrixMachAbstract::GetWobbleParameters(MMachWobbleParameters& parameters) {
    constexpr const char* function = "M2ZendrixMachAbstract::GetWobbleParameters";
    CZendrixCOM* const client = this->client();
    if (!client) return;
    double* const v = parameters.values;
    try {
        if (!client->GetWobble(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5])) {
            MERRLOG_REPORT(source, "%s(): GetWobble() failed", function);
        }
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "%s(): ZendrixCOM error: %s", function, error.m_text.c_str());
    }
}

bool M2ZendrixMachAbstract::StartAutoinfo(unsigned long long tag, unsigned interval,
                                          const std::vector<std::string>& axes) {
    {
        os::LockGuard guard(m_autoinfoLock);
        m_autoinfoTag = tag;
        m_autoinfoAxes = axes;
    }
    CZendrixCOM* const client = this->client();
    if (!client) return false;
    try {
        std::vector<std::string> names = axes;
        client->SetWatchAxisCallback(autoinfo_callback, this);
        if (client->WatchAxisRT(interval == 0 ? watch_no_interval : static_cast<long>(interval), watch_second,
                                names)) {
            return true;
        }
        MERRTRACE_REPORT(source, "StartAutoinfo(): WatchAxisRT() failed");
    } catch (const CZendrixError& error) {
        MERRTRACE_REPORT(source, "StartAutoinfo: WatchAxisRT() failed: %s", error.m_text.c_str());
    }
    return false;
}

void M2ZendrixMachAbstract::StopAutoinfo() {
    CZendrixCOM* const client = this->client();
    if (!client) return;
    MErrTraceContext context(source);
    try {
        if (!client->WatchAxisRT(0, 0, 0, nullptr)) {
            context.DumpToMErrLog(__LINE__, "StopAutoinfo(): WatchAxisRT() failed");
        }
    } catch (const CZendrixError& error) {
        context.DumpToMErrLog(__LINE__, "StopAutoinfo: WatchAxisRT() failed: %s", error.m_text.c_str());
    }
    client->SetWatchAxisCallback(nullptr, nullptr);
    os::LockGuard guard(m_autoinfoLock);
    m_autoinfoAxes.clear();
    m_autoinfoTag = 0;
    m_autoinfo.clear();
}

bool M2ZendrixMachAbstract::GetAutoinfo(std::vector<double>& record) {
    os::LockGuard guard(m_autoinfoLock);
    if (m_autoinfo.empty()) return false;
    record.swap(m_autoinfo.front());
    m_autoinfo.pop_front();
    return true;
}

bool M2ZendrixMachAbstract::IsAutoinfoActive() {
    os::LockGuard guard(m_autoinfoLock);
    return m_autoinfoTag != 0;
}
