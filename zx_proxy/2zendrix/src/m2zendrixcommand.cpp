#include "m2zendrixcommand.h"

#include <algorithm>
#include <string_view>

#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "messagecatalogue.h"
#include "messagetext.h"
#include "moutputchannel.h"
#include "stl_utilities.h"

namespace {
constexpr const char* source = "m2zendrixcommand.cpp";
}

M2ZendrixCommand::M2ZendrixCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output)
    : m_pZendrixCom(mach->client()), m_pOutput(output), m_pMach(mach) {
    take_callbacks();
}

M2ZendrixCommand::~M2ZendrixCommand() {
    restore_callbacks();
    harvest_output();
}

void M2ZendrixCommand::take_callbacks() {
    m_pZendrixCom->GetAsyncCallback(m_prevAsync, m_prevAsyncData);
    m_pZendrixCom->GetErrorMsgCallback(m_prevError, m_prevErrorData);
    m_pZendrixCom->GetWarningMsgCallback(m_prevWarning, m_prevWarningData);
    m_pZendrixCom->SetErrorMsgCallback(error_msg_callback, this);
    m_pZendrixCom->SetWarningMsgCallback(warning_msg_callback, this);
    m_pZendrixCom->SetAsyncCallback(async_msg_callback, this);
}

void M2ZendrixCommand::restore_callbacks() {
    if (!m_pZendrixCom) return;
    m_pZendrixCom->SetWarningMsgCallback(m_prevWarning, m_prevWarningData);
    m_pZendrixCom->SetErrorMsgCallback(m_prevError, m_prevErrorData);
    m_pZendrixCom->SetAsyncCallback(m_prevAsync, m_prevAsyncData);
}

bool M2ZendrixCommand::IsDone() {
    if (!m_done) {
        const long id = command_id();
        const bool done = id == 0 || m_pMach->take_finished_id(id);
        if (done) restore_callbacks();
        m_done = done;
    }
    harvest_output();
    return m_done;
}

void M2ZendrixCommand::Abort() {
    if (!m_pZendrixCom || m_aborted) return;
    m_aborted = true;
    try {
        if (m_pZendrixCom->Abort(command_id())) return;
        MERRLOG_REPORT(source, "m_pZendrixCom->Abort() failed");
        m_pOutput->errorf("M2ZendrixCommand::Abort(): m_pZendrixCom->Abort() failed");
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "m_pZendrixCom->Abort() failed: '%s'\n", error.m_text.c_str());
        m_pOutput->errorf("%s", error.m_text.c_str());
    }
}

bool M2ZendrixCommand::ZX_LockMachine() {
    try {
        return m_pZendrixCom->GetMachine(false);
    } catch (const CZendrixError& error) {
        MERRLOG_REPORT(source, "ZX_LockMachine() GetMachine()failed: '%s'\n", error.m_text.c_str());
        m_pOutput->errorf("%s", error.m_text.c_str());
        return false;
    }
}

void M2ZendrixCommand::ZX_ReleaseMachine() {
    try {
        m_pZendrixCom->ReleaseMachine(false);
    } catch (const CZendrixError& error) {
        // The same words as for the lock: readers of the log know them.
        MERRLOG_REPORT(source, "ZX_LockMachine() GetMachine()failed: '%s'\n", error.m_text.c_str());
        m_pOutput->errorf("%s", error.m_text.c_str());
    }
}

bool M2ZendrixCommand::lock_machine_or_log() {
    if (ZX_LockMachine()) return true;
    MERRLOG_REPORT(source, "ZX_LockMachine() machine failed, can't start the command");
    return false;
}

void M2ZendrixCommand::report_false(const M2ZendrixFalseReport& report) {
    if (report.log) MERRLOG_REPORT(source, "%s", report.log);
    switch (report.way) {
        case M2ZendrixFalseReport::LineOnce:
            return report_once(error_text(report.number));
        case M2ZendrixFalseReport::Number:
            return m_pOutput->error(report.number);
        case M2ZendrixFalseReport::Text:
            return m_pOutput->errorf("%s", report.text);
    }
}

void M2ZendrixCommand::report_thrown(const M2ZendrixThrownReport& report, const std::string& text) {
    const bool bare = report.way == M2ZendrixThrownReport::BareOnce;
    MERRLOG_REPORT(source, "%s failed: '%s'%s", report.operation, text.c_str(), bare ? "" : "\n");
    switch (report.way) {
        case M2ZendrixThrownReport::Once:
            return report_once(text);
        case M2ZendrixThrownReport::BareOnce:
            return report_once(strip_message(text));
        case M2ZendrixThrownReport::Always:
            return m_pOutput->errorf("%s", text.c_str());
    }
}

void M2ZendrixCommand::report_once(const std::string& text) {
    if (!is_already_reported(text)) m_pOutput->error(text);
}

M2ZendrixCommand::Lines M2ZendrixCommand::channel_lines() const {
    Lines lines;
    stl_string_tokenize(m_pOutput->get_text(), "\r\n", lines);
    return lines;
}

bool M2ZendrixCommand::is_already_reported(const std::string& text, const Lines* lines) const {
    if (!lines) {
        const Lines now = channel_lines();
        return is_already_reported(text, &now);
    }
    return std::any_of(lines->begin(), lines->end(),
                       [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

void M2ZendrixCommand::harvest_output() {
    // Split once for the whole harvest: texts that are equal and arrived together are all reported.
    const Lines lines = channel_lines();
    {
        os::LockGuard guard(m_errorLock);
        for (; !m_errors.empty(); m_errors.pop_front())
            if (!is_already_reported(m_errors.front(), &lines)) m_pOutput->error(m_errors.front());
    }
    {
        os::LockGuard guard(m_warningLock);
        for (; !m_warnings.empty(); m_warnings.pop_front())
            if (!is_already_reported(m_warnings.front(), &lines)) m_pOutput->warning(m_warnings.front());
    }
    os::LockGuard guard(m_eventLock);
    for (; !m_events.empty(); m_events.pop_front()) m_pOutput->event(m_events.front());
}

void M2ZendrixCommand::error_msg_callback(void* user, long id, const char* text) {
    auto* command = static_cast<M2ZendrixCommand*>(user);
    if (text == std::string_view("aborted")) return;
    if (id == 0) {
        if (command->m_prevError) command->m_prevError(command->m_prevErrorData, id, text);
        return;
    }
    os::LockGuard guard(command->m_errorLock);
    command->m_errors.emplace_back(text);
}

void M2ZendrixCommand::warning_msg_callback(void* user, long id, const char* text) {
    auto* command = static_cast<M2ZendrixCommand*>(user);
    if (id == 0) {
        if (command->m_prevWarning) command->m_prevWarning(command->m_prevWarningData, id, text);
        return;
    }
    os::LockGuard guard(command->m_warningLock);
    command->m_warnings.emplace_back(text);
}

void M2ZendrixCommand::async_msg_callback(void* user, const char* text) {
    auto* command = static_cast<M2ZendrixCommand*>(user);
    command->m_pMach->handle_async_event(text);
    os::LockGuard guard(command->m_eventLock);
    command->m_events.emplace_back(text);
}

std::string M2ZendrixCommand::strip_message(const std::string& text) { return bare_message(text); }
