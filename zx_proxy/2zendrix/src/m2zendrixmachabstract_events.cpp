// What the client's thread brings: completions, events, errors, warnings and autoinfo values. Each callback
// does what has to happen at once, queues, and wakes the host.
#include "drivertrace.h"
#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "messagecatalogue.h"
#include "messagetext.h"
#include "mmachnotifier.h"

namespace {

constexpr const char* source = "m2zendrixmachabstract_events.cpp";
constexpr int error_probesystem_not_loaded = 22;

M2ZendrixMachAbstract& driver_of(void* user) { return *static_cast<M2ZendrixMachAbstract*>(user); }

// "probesystem not loaded", as the client delivers it.
const std::string& not_loaded_text() {
    static const std::string text = bare_message(error_text(error_probesystem_not_loaded));
    return text;
}

}  // namespace

void M2ZendrixMachAbstract::notify(const char* callback) {
    MErrTraceContext context(source);
    if (!m_pNotifier->Notify()) context.DumpToMErrLog(__LINE__, "%s(): Notify() failed", callback);
}

void M2ZendrixMachAbstract::command_complete_callback(void* user, long id) {
    constexpr const char* function = "M2ZendrixMachAbstract::command_complete_callback";
    M2ZendrixMachAbstract& driver = driver_of(user);
    driver.update_cached_axes_values();
    if (id != 0) driver.add_finished_id(function, id);
    driver.notify(function);
}

void M2ZendrixMachAbstract::add_finished_id(const char* function, long id) {
    bool inserted = false;
    {
        os::LockGuard guard(m_finishedIdsLock);
        inserted = m_finishedIds.insert(id).second;
    }
    if (inserted) {
        DRIVER_TRACE(source, 5, "%s(): cmd id %ld done", function, id);
    } else {
        MERRLOG_REPORT(source,
                       "%s(): command with id %ld finished, but old command was not harvested, yet. "
                       "Deadlock possible!",
                       function, id);
    }
}

bool M2ZendrixMachAbstract::take_finished_id(long id) {
    os::LockGuard guard(m_finishedIdsLock);
    return m_finishedIds.erase(id) != 0;
}

void M2ZendrixMachAbstract::async_events_callback(void* user, const char* text) {
    M2ZendrixMachAbstract& driver = driver_of(user);
    driver.handle_async_event(text);
    {
        os::LockGuard guard(driver.m_eventsLock);
        driver.m_events.emplace_back(text);
    }
    driver.notify("M2ZendrixMachAbstract::async_events_callback");
}

void M2ZendrixMachAbstract::handle_async_event(const std::string& text) {
    if (text == "capabilities changed") {
        m_keypadList.dirty = true;
        enable_supported_commands();
        update_capabilities();
        update_spin_lists();
        update_init_list();
        update_cached_axes_values();
    } else if (text == "keypad: enabled" || text == "keypad: disabled" || text == "keypad: changed") {
        m_keypadActiveList.dirty = true;
    } else if (text == "spin: changed") {
        update_spin_lists();
    }
}

void M2ZendrixMachAbstract::async_errors_callback(void* user, long tid, const char* text) {
    constexpr const char* function = "M2ZendrixMachAbstract::async_errors_callback";
    M2ZendrixMachAbstract& driver = driver_of(user);
    if (driver.is_ignored_error(text)) return;
    driver.update_cached_axes_values();
    if (tid != 0) {
        MERRLOG_REPORT(source, "%s(): error \"%s\" for tid %ld arrived after \"ready\"", function, text, tid);
        if (text == std::string("aborted")) return;
    }
    {
        os::LockGuard guard(driver.m_errorsLock);
        driver.m_errors.emplace_back(text);
    }
    driver.notify(function);
}

void M2ZendrixMachAbstract::async_warnings_callback(void* user, long tid, const char* text) {
    constexpr const char* function = "M2ZendrixMachAbstract::async_warnings_callback";
    M2ZendrixMachAbstract& driver = driver_of(user);
    if (tid != 0) {
        MERRLOG_REPORT(source, "%s(): warning \"%s\" for tid %ld arrived after \"ready\"", function, text,
                       tid);
    }
    {
        os::LockGuard guard(driver.m_warningsLock);
        driver.m_warnings.emplace_back(text);
    }
    driver.notify(function);
}

void M2ZendrixMachAbstract::autoinfo_callback(void* user, unsigned count, double* const values) {
    M2ZendrixMachAbstract& driver = driver_of(user);
    {
        os::LockGuard guard(driver.m_autoinfoLock);
        const std::size_t axes = driver.m_autoinfoAxes.size();
        if (axes == 0 || count == 0) return;
        // Whole records only: there is nothing to read behind the last value.
        for (std::size_t next = 0; next + axes <= count; next += axes) {
            driver.m_autoinfo.emplace_back(values + next, values + next + axes);
        }
    }
    driver.notify("M2ZendrixMachAbstract::autoinfo_callback");
}

bool M2ZendrixMachAbstract::is_ignored_error(const std::string& text) {
    os::LockGuard guard(m_ignoredErrorsLock);
    return m_ignoredErrors.contains(text);
}

void M2ZendrixMachAbstract::begin_ignore_not_loaded_error() {
    os::LockGuard guard(m_ignoredErrorsLock);
    m_ignoredErrors.insert(not_loaded_text());
}

void M2ZendrixMachAbstract::end_ignore_not_loaded_error() {
    os::LockGuard guard(m_ignoredErrorsLock);
    m_ignoredErrors.erase(not_loaded_text());
}

void execute_cmd_and_wait(CZendrixCOM* client, const std::string& command, std::vector<std::string>& reply) {
    if (!client) return;
    SyncType mode = ZX_ASYNC;
    client->GetSync3(&mode);
    client->SetSync3(ZX_SYNC);
    try {
        client->Execute(command.c_str(), reply, nullptr);
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "%s(): Execute(%s) failed: %s", "execute_cmd_and_wait", command.c_str(),
                       error.m_text.c_str());
    } catch (...) {
        client->SetSync3(mode);
        throw;
    }
    client->SetSync3(mode);
}
