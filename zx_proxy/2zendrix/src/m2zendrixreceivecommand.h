// M2ZendrixReceiveCommand: fetches a named block from the machine or, under one reserved name, an archive of
// the driver's own directory.
//
// A block is a transaction. While the command lives, every completion of the client comes by here; the one of
// its own makes `m_data` of the reply lines on the client's thread, before IsDone can find it. Only IsDone
// gives the driver its completion callback back, not the destructor: the host polls to the end.
//
// The archive is made on a thread of its own, which asks nothing of the machine, shares its work with the
// command and touches neither command nor driver: either may go before it. The host's notifier is called
// at its end, unless the command is gone by then; keep it alive. Nothing ends the thread early.
#pragma once

#include <cstdint>
#include <memory>

#include "m2zendrixconcretecommand.h"
#include "mmachreceivecommand.h"

class M2ZendrixReceiveCommand : public M2ZendrixConcreteCommand<MMachReceiveCommand> {
public:
    // `directory` is what the reserved name packs.
    M2ZendrixReceiveCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output, const std::string& name,
                            const std::string& directory);
    ~M2ZendrixReceiveCommand() override;

    // As always; true only when `m_data` is whole.
    bool IsDone() override;

    // Neither a transfer nor a backup can be stopped.
    void Abort() override {}

private:
    struct Backup;

    static void ReceiveCompleteCallback(void* user, long id);
    static unsigned ZipThread(void* backup);

    void start_backup(const std::string& directory);
    void start_transfer();
    void collect_reply(long id);
    void reserve_reply(std::size_t lines);
    bool is_transfer_done();
    bool is_backup_done();
    void restore_complete_callback();

    std::int32_t m_zipThread = -1;  // id of the thread; -1 while none is awaited
    std::shared_ptr<Backup> m_backup;
    bool m_base64 = false;  // the first line of the reply said so
};
