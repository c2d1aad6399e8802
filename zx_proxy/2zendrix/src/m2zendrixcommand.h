// M2ZendrixCommand: what all commands of this driver share.
//
// A concrete command's constructor sends its one request. From before that until the end of the command, the
// client's error, warning and asynchronous messages arrive here; they are queued on the client's thread and
// reach the command's channel on the host's thread, in IsDone and in the destructor. A command ends when its
// transaction id is among the driver's finished ids; one without an id ends at the first IsDone.
//
// The driver, its client and the channel are borrowed and must outlive the command. Commands save the
// callbacks that they find and put them back: they run one after the other or strictly nested.
// The static callbacks run on the client's thread, everything else on the host's.
#pragma once

#include <atomic>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "czendrixcom.h"
#include "m2zendrixcallreport.h"
#include "os/mutex.h"

class M2ZendrixMachAbstract;
class MOutputChannel;

class M2ZendrixCommand {
public:
    // Takes over the client's callbacks. The driver has a client.
    M2ZendrixCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output);

    // Gives the callbacks back, once more if IsDone has done so already, and hands on what is still queued.
    virtual ~M2ZendrixCommand();
    M2ZendrixCommand(const M2ZendrixCommand&) = delete;
    M2ZendrixCommand& operator=(const M2ZendrixCommand&) = delete;

    // True once the command has ended, and the callbacks are given back then. Every call hands on what is
    // queued.
    bool IsDone();

    // Asks the client to end the transaction, at most once in a command's life. The command goes on until its
    // completion arrives.
    void Abort();

    // A protocol line without the quote at its end, its keyword and the quote that follows:
    // `error "internal error"` gives `internal error`.
    static std::string strip_message(const std::string& text);

protected:
    using Lines = std::vector<std::string>;

    // Takes the machine for one request, and gives it back. Failures go to the error log and the channel.
    bool ZX_LockMachine();
    void ZX_ReleaseMachine();

    // Is the text part of a line of the channel, or of these lines where the caller has split it already?
    bool is_already_reported(const std::string& text, const Lines* lines = nullptr) const;

    // An error of the channel, unless the channel has its text already.
    void report_once(const std::string& text);

    // The id as any thread may read it.
    long command_id() { return std::atomic_ref(m_commandId).load(); }

    // Makes the command's client call, `bool call(CZendrixCOM&)`, and reports its failure.
    template <class Call>
    void call_client(const M2ZendrixCallReport& report, Call&& call) {
        try {
            if (!call(*m_pZendrixCom)) report_false(report.on_false);
        } catch (const CZendrixError& error) {
            report_thrown(report.on_thrown, error.m_text);
        }
    }

    // The same with the machine held during the call. If it can't be had, nothing is called.
    template <class Call>
    void call_client_with_machine(const M2ZendrixCallReport& report, Call&& call) {
        if (!lock_machine_or_log()) return;
        try {
            call_client(report, std::forward<Call>(call));
        } catch (...) {
            // Only to give the machine back: what isn't the client's error passes on to the host.
            ZX_ReleaseMachine();
            throw;
        }
        ZX_ReleaseMachine();
    }

private:
    static void error_msg_callback(void* user, long id, const char* text);
    static void warning_msg_callback(void* user, long id, const char* text);
    static void async_msg_callback(void* user, const char* text);

    bool lock_machine_or_log();
    void report_false(const M2ZendrixFalseReport& report);
    void report_thrown(const M2ZendrixThrownReport& report, const std::string& text);
    void take_callbacks();
    void restore_callbacks();
    void harvest_output();
    Lines channel_lines() const;

    os::Mutex m_errorLock;
    os::Mutex m_warningLock;
    os::Mutex m_eventLock;
    std::deque<std::string> m_errors OS_GUARDED_BY(m_errorLock);
    std::deque<std::string> m_warnings OS_GUARDED_BY(m_warningLock);
    std::deque<std::string> m_events OS_GUARDED_BY(m_eventLock);
    // The client's callbacks as they were before this command.
    ZXAsyncCallback m_prevAsync = nullptr;
    void* m_prevAsyncData = nullptr;
    ZXMessageCallback m_prevError = nullptr;
    void* m_prevErrorData = nullptr;
    ZXMessageCallback m_prevWarning = nullptr;
    void* m_prevWarningData = nullptr;
    bool m_aborted = false;  // Abort has been tried
    bool m_done = false;     // the end was seen and the callbacks are given back

protected:
    // The transaction's id, 0 while there is none. The client writes it before a callback can speak of it.
    alignas(std::atomic_ref<long>::required_alignment) long m_commandId = 0;
    CZendrixCOM* m_pZendrixCom;
    MOutputChannel* m_pOutput;
    M2ZendrixMachAbstract* m_pMach;
};
