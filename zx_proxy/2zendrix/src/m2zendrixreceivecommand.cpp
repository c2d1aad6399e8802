#include "m2zendrixreceivecommand.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <string_view>

#include "errtrace.h"
#include "m2zendrixmachabstract.h"
#include "mmachnotifier.h"
#include "mthread.h"
#include "stl_utilities.h"
#include "zipper.h"

namespace {

constexpr const char* source = "m2zendrixreceivecommand.cpp";
constexpr M2ZendrixCallReport report{call_report::line_once(16),
                                     call_report::once("m_pZendrixCom->Receive()")};
constexpr const char* backup_name = "backup.m2zendrix_dll";
constexpr std::string_view base64_word = "base64";
constexpr std::size_t base64_opening = 8;  // of the line: base64 "
constexpr std::size_t plain_opening = 1;   // of the line: "

// More than that only as it comes: the figure is the machine's, and one long line raises it for good.
constexpr std::size_t most_reserved = std::size_t{256} << 20;

// Without the line's opening and its closing quote. A line that is shorter than its opening throws.
void append_content(std::string& data, const std::string& line, std::size_t opening) {
    data.append(line, opening, line.size() - opening - 1);
}

// What can't be made for want of memory is no archive either: an exception would end the process here.
std::string archive_or_nothing(const std::string& directory) {
    try {
        return CreateZipArchive(directory);
    } catch (const std::exception& error) {
        MERRTRACE_REPORT(source, "CreateZipArchive() failed: %s", error.what());
        return {};
    }
}

}  // namespace

// What command and thread share.
struct M2ZendrixReceiveCommand::Backup {
    const std::string m_backupDirectory;
    MMachNotifier* const m_notifier;
    std::string m_archive{};               // the thread's until it is done, then the command's
    std::atomic<bool> m_zipDone{false};    // the archive is stored
    std::atomic<bool> m_abandoned{false};  // the command is gone
};

M2ZendrixReceiveCommand::M2ZendrixReceiveCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                                                 const std::string& name, const std::string& directory)
    : M2ZendrixConcreteCommand(mach, output, name) {
    if (m_name == backup_name)
        start_backup(directory);
    else
        start_transfer();
}

M2ZendrixReceiveCommand::~M2ZendrixReceiveCommand() {
    if (m_backup) m_backup->m_abandoned.store(true);
}

void M2ZendrixReceiveCommand::start_backup(const std::string& directory) {
    m_backup.reset(new Backup{directory, m_pMach->notifier()});
    auto share = std::make_unique<std::shared_ptr<Backup>>(m_backup);
    m_zipThread = MThread_Create(ZipThread, share.get());
    if (m_zipThread != -1) {
        static_cast<void>(share.release());  // it is the thread's now
        return;
    }
    MERRLOG_REPORT(source, "M2ZendrixReceiveCommand: MThread_Create() failed");
    report_once("failed to create zip thread");
}

unsigned M2ZendrixReceiveCommand::ZipThread(void* share) {
    const std::unique_ptr<std::shared_ptr<Backup>> owner(static_cast<std::shared_ptr<Backup>*>(share));
    Backup& backup = **owner;
    backup.m_archive = archive_or_nothing(backup.m_backupDirectory);
    backup.m_zipDone.store(true, std::memory_order_release);
    MErrTraceContext context(source);
    if (!backup.m_abandoned.load() && !backup.m_notifier->Notify())
        MERRTRACE_REPORT(source, "%s(): Notify() failed", "M2ZendrixReceiveCommand::ZipThread");
    return 0;
}

void M2ZendrixReceiveCommand::start_transfer() {
    m_pZendrixCom->SetCommandCompleteCallback(ReceiveCompleteCallback, this);
    try {
        call_client(report,
                    [this](CZendrixCOM& client) { return client.Receive(m_name, m_data, &m_commandId); });
    } catch (...) {
        // There will be no command that the host could poll to its end.
        restore_complete_callback();
        throw;
    }
}

void M2ZendrixReceiveCommand::ReceiveCompleteCallback(void* user, long id) {
    auto* command = static_cast<M2ZendrixReceiveCommand*>(user);
    if (id == command->command_id()) {
        if (!command->m_pZendrixCom->HasReceiver(id)) {
            MERRLOG_REPORT(source, "%s(): no receiver for %ld, but we received a ready for it",
                           "M2ZendrixReceiveCommand::ReceiveCompleteCallback", id);
            return;
        }
        command->collect_reply(id);
    }
    M2ZendrixMachAbstract::command_complete_callback(command->m_pMach, id);
}

void M2ZendrixReceiveCommand::collect_reply(long id) {
    reserve_reply(m_pZendrixCom->ReplyLineCount(id));
    std::string line;
    if (!m_pZendrixCom->TakeReplyLine(id, line)) return;
    m_base64 = line.starts_with(base64_word);
    append_content(m_data, line, m_base64 ? base64_opening : plain_opening);
    while (m_pZendrixCom->TakeReplyLine(id, line)) append_content(m_data, line, plain_opening);
}

void M2ZendrixReceiveCommand::reserve_reply(std::size_t lines) {
    const std::size_t line = std::max(m_pZendrixCom->PerLineSize(), std::size_t{1});
    m_data.reserve(std::min(lines, most_reserved / line) * line);
}

bool M2ZendrixReceiveCommand::IsDone() { return m_zipThread == -1 ? is_transfer_done() : is_backup_done(); }

bool M2ZendrixReceiveCommand::is_transfer_done() {
    if (!M2ZendrixCommand::IsDone()) return false;
    MErrTraceContext context(source);
    if (m_base64 && !stl_decode_base64(m_data)) {
        MERRTRACE_REPORT(source, "%s(): stl_decode_base64() failed", "M2ZendrixReceiveCommand::IsDone");
        report_once("base64 decode failed");
    }
    m_base64 = false;
    restore_complete_callback();
    return true;
}

bool M2ZendrixReceiveCommand::is_backup_done() {
    if (!m_backup->m_zipDone.load(std::memory_order_acquire)) return false;
    m_data = std::move(m_backup->m_archive);
    if (m_data.empty()) {
        MERRLOG_REPORT(source, "M2ZendrixReceiveCommand::IsDone(): no data received");
        report_once("no data received");
    }
    m_zipThread = -1;
    return true;
}

void M2ZendrixReceiveCommand::restore_complete_callback() {
    m_pZendrixCom->SetCommandCompleteCallback(M2ZendrixMachAbstract::command_complete_callback, m_pMach);
}
