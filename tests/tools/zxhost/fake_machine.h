// A driver without a machine, and a command that a test plays, behind the host's real interface.
#pragma once

#include <functional>
#include <string>

#include "mmachabstract.h"
#include "moutputchannel.h"

// Each poll does what the test says.
class FakeMachine : public MMachAbstract {
public:
    FakeMachine(MOutputChannel& channel, MMachNotifier& notifier)
        : MMachAbstract(&channel, &notifier, "fake", "") {}

    bool Open() override { return true; }
    void Close() override {}
    void PollAsyncErrors() override {
        if (on_poll) on_poll(*m_pOutput);
    }
    const char* GetMachineName() override { return "Fake"; }
    const char* GetMachineRevision() override { return "1.0"; }
    const char* GetSerialNumber() override { return "0"; }
    const MMachAxisInfo* GetAxisInfo(const std::string&) override { return nullptr; }
    const MMachAxisInfo* GetFirstAxisInfo() override { return nullptr; }
    const MMachAxisInfo* GetNextAxisInfo() override { return nullptr; }
    double GetAxisValue(const char*) override { return 0.0; }
    bool IsInitialized() override { return true; }

    std::function<void(MOutputChannel&)> on_poll;
};

// Done after some polls, or once it was aborted.
class FakeCommand : public MMachCommand {
public:
    struct Story {
        int polls = 3;
        std::function<void(int poll, MOutputChannel& channel)> on_poll = nullptr;
        std::function<void(MOutputChannel& channel)> on_delete = nullptr;
        int aborts = 0;
        int deleted = 0;
    };

    FakeCommand(MOutputChannel* channel, Story& story) : MMachCommand(channel), m_story(story) {}
    ~FakeCommand() override {
        ++m_story.deleted;
        if (m_story.on_delete) m_story.on_delete(*m_pOutput);
    }

    bool IsDone() override {
        ++m_poll;
        if (m_story.on_poll) m_story.on_poll(m_poll, *m_pOutput);
        return m_poll >= m_story.polls || m_story.aborts > 0;
    }
    void Abort() override { ++m_story.aborts; }
    const char* GetCommandName() override { return "fake"; }

private:
    Story& m_story;
    int m_poll = 0;
};
