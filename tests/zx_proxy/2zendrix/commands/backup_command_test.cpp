// The reserved name: an archive of the driver's own directory, made on a thread of its own.
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <new>
#include <thread>

#include "archive_reader.h"
#include "command_fixture.h"
#include "faulty_files.h"
#include "faulty_threads.h"
#include "held_threads.h"
#include "private_temporary.h"

namespace {

class BackupCommandTest : public CommandTest {
protected:
    BackupCommandTest() { m_driver->set_directory(m_directory.path()); }

    MMachReceiveCommand* create_backup() {
        return create(&MMachAbstract::NewMMachReceiveCommand, std::string("backup.m2zendrix_dll"));
    }
    MMachReceiveCommand* finished_backup() {
        auto* command = create_backup();
        m_threads.finish();
        EXPECT_TRUE(command->IsDone());
        return command;
    }
    // What a backup that brings nothing leaves.
    void expect_nothing_received() {
        EXPECT_EQ(finished_backup()->m_data, "");
        EXPECT_EQ(channel_lines(), Texts{"0007\terror \"no data received\""});
        m_log = {"M2ZendrixReceiveCommand::IsDone(): no data received"};
    }
    static bool was_traced(const std::string& text) {
        const Texts records = recording::error_trace();
        return std::find(records.begin(), records.end(), text) != records.end();
    }

    TemporaryDirectory m_directory;
    PrivateTemporary m_temporary;
    HeldThreads m_threads;
};

TEST_F(BackupCommandTest, ComesWithoutTheMachine) {
    m_directory.file("m2zendrix.ini", "[connection]\n");
    finished_backup();
    for (const char* operation : {"Receive", "GetMachine", "SetCommandCompleteCallback"})
        EXPECT_EQ(script().calls_of(operation), Texts()) << operation;
}

TEST_F(BackupCommandTest, HoldsTheFilesOfTheDirectory) {
    m_directory.file("m2zendrix.ini", "[connection]\nhost=1.2.3.4\n");
    m_directory.file("magazine.txt", std::string("\0\r\n\xff", 4));
    const auto entries = ArchiveReader(finished_backup()->m_data).entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_TRUE(entries[0].name.ends_with("/m2zendrix.ini"));
    EXPECT_EQ(entries[0].data, "[connection]\nhost=1.2.3.4\n");
    EXPECT_EQ(entries[1].data, std::string("\0\r\n\xff", 4));
    EXPECT_FALSE(std::filesystem::exists(m_temporary.path("backup_tmp.zip")));
}

TEST_F(BackupCommandTest, AnEmptyDirectoryIsAnArchiveWithoutEntries) {
    const std::string data = finished_backup()->m_data;
    EXPECT_FALSE(data.empty());
    EXPECT_EQ(ArchiveReader(data).entries().size(), 0u);
}

TEST_F(BackupCommandTest, IsNotDoneBeforeTheThreadIs) {
    auto* command = create_backup();
    EXPECT_FALSE(command->IsDone());
    EXPECT_FALSE(command->IsDone());
    EXPECT_EQ(command->m_data, "");
    EXPECT_EQ(m_notifier.m_count, 0);
    m_threads.finish();
    EXPECT_EQ(m_notifier.m_count, 1);
    EXPECT_TRUE(command->IsDone());
    EXPECT_NE(command->m_data, "");
}

TEST_F(BackupCommandTest, ThePollAfterTheEndGivesAllCallbacksBack) {
    auto* command = finished_backup();
    const std::string data = command->m_data;
    calls();
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(calls(),
              (Texts{"SetWarningMsgCallback(warnings, driver)", "SetErrorMsgCallback(errors, driver)",
                     "SetAsyncCallback(events, driver)", "SetCommandCompleteCallback(complete, driver)"}));
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, data);
}

TEST_F(BackupCommandTest, WhatTheMachineSaysMeanwhileComesWithThePollAfterTheEnd) {
    auto* command = create_backup();
    script().fire_async("keypad: changed");
    EXPECT_FALSE(command->IsDone());
    m_threads.finish();
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(channel_lines(), Texts());
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(channel_lines(), Texts{"0000\tevent \"keypad: changed\""});
}

TEST_F(BackupCommandTest, WhatTheMachineSaidComesWithTheEndOfTheObjectToo) {
    finished_backup();
    script().fire_async("keypad: changed");
    m_command.reset();
    EXPECT_EQ(channel_lines(), Texts{"0000\tevent \"keypad: changed\""});
}

TEST_F(BackupCommandTest, CompletionsOfOthersGoToTheDriverAllTheTime) {
    create_backup();
    script().fire_complete(4);
    EXPECT_TRUE(m_driver->take_finished_id(4));
}

TEST_F(BackupCommandTest, IsNotStopped) {
    auto* command = create_backup();
    command->Abort();
    EXPECT_EQ(script().calls_of("Abort"), Texts());
    m_threads.finish();
    EXPECT_TRUE(command->IsDone());
    EXPECT_NE(command->m_data, "");
}

TEST_F(BackupCommandTest, WhatCantBePackedIsReportedOnce) {
    m_driver->set_directory(m_directory.path("missing"));
    expect_nothing_received();
    EXPECT_TRUE(m_command->IsDone());
    EXPECT_EQ(channel_lines(), Texts());
    EXPECT_TRUE(was_traced("CreateZipArchive(): Files to zip archive failed"));
}

TEST_F(BackupCommandTest, WhatCantBePackedIsNotReportedTwiceOnOneChannel) {
    m_channel.error("no data received");
    m_driver->set_directory(m_directory.path("missing"));
    finished_backup();
    EXPECT_EQ(channel_lines().size(), 1u);
    m_log = {"M2ZendrixReceiveCommand::IsDone(): no data received"};
}

TEST_F(BackupCommandTest, WithoutMemoryThereIsNoArchiveAndTheProcessLivesOn) {
    m_directory.file("a", "text");
    FaultyFiles files;
    files.before("open", 1, [] { throw std::bad_alloc(); });
    expect_nothing_received();
}

TEST_F(BackupCommandTest, AThreadThatCantBeMadeIsReported) {
    FaultyThreads threads;
    threads.fail("start", EAGAIN);
    auto* command = create_backup();
    m_log = {"M2ZendrixReceiveCommand: MThread_Create() failed"};
    EXPECT_TRUE(was_traced("MThread_Create(): failed to create thread: " + std::to_string(EAGAIN)));
    EXPECT_EQ(channel_lines(), Texts{"0007\terror \"failed to create zip thread\""});
    calls();
    EXPECT_TRUE(command->IsDone());
    EXPECT_EQ(command->m_data, "");
    EXPECT_EQ(calls().back(), "SetCommandCompleteCallback(complete, driver)");
    EXPECT_EQ(channel_lines(), Texts());
}

TEST_F(BackupCommandTest, AThreadThatCantBeMadeIsNotReportedTwiceOnOneChannel) {
    m_channel.error("failed to create zip thread");
    FaultyThreads threads;
    threads.fail("start", EAGAIN);
    create_backup();
    EXPECT_EQ(channel_lines().size(), 1u);
    m_log = {"M2ZendrixReceiveCommand: MThread_Create() failed"};
}

TEST_F(BackupCommandTest, ANotifierThatFailsIsLeftToTheContextOfTheThread) {
    m_notifier.m_answer = false;
    finished_backup();
    EXPECT_EQ(recording::error_trace(), Texts{"M2ZendrixReceiveCommand::ZipThread(): Notify() failed"});
}

TEST_F(BackupCommandTest, ACommandThatIsGoneLeavesItsThreadToEndAlone) {
    m_directory.file("a", "text");
    create_backup();
    m_command.reset();
    m_threads.finish();
    EXPECT_EQ(m_notifier.m_count, 0);
    EXPECT_FALSE(std::filesystem::exists(m_temporary.path("backup_tmp.zip")));
}

TEST_F(BackupCommandTest, WithoutThreadsHeldTheHostWaitsForTheNotice) {
    m_directory.file("a", std::string(100000, 'x'));
    os::replace_threads(nullptr);
    for (int round = 1; round <= 20; ++round) {
        auto* command = create_backup();
        while (!command->IsDone()) std::this_thread::yield();
        EXPECT_EQ(ArchiveReader(command->m_data).entries().size(), 1u);
        // The notice is the last that the thread does; the next backup would use the same file.
        while (m_notifier.m_count < round) std::this_thread::yield();
    }
}

}  // namespace
