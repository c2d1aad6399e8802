// The least machine that can exist: MMachAbstract with what it leaves open, and nothing else.
#pragma once

#include <string>

#include "mmachabstract.h"
#include "mmachnotifier.h"
#include "moutputchannel.h"

class CountingNotifier : public MMachNotifier {
public:
    int HasNotification() override { return m_waiting; }
    bool Notify() override {
        ++m_notified;
        return m_result;
    }

    int m_waiting = 0;
    int m_notified = 0;
    bool m_result = true;
};

class BareMachine : public MMachAbstract {
public:
    BareMachine(MOutputChannel* output, MMachNotifier* notifier)
        : MMachAbstract(output, notifier, "four axes", "C:\\machines") {}

    bool Open() override { return true; }
    void Close() override {}
    void PollAsyncErrors() override {}
    const char* GetMachineName() override { return "bare"; }
    const char* GetMachineRevision() override { return "1"; }
    const char* GetSerialNumber() override { return "2"; }
    const MMachAxisInfo* GetAxisInfo(const std::string& axis) override {
        return axis == m_axis.name ? &m_axis : nullptr;
    }
    const MMachAxisInfo* GetFirstAxisInfo() override { return nullptr; }
    const MMachAxisInfo* GetNextAxisInfo() override { return nullptr; }
    double GetAxisValue(const char*) override { return 0.0; }
    bool IsInitialized() override { return true; }

    using MMachAbstract::m_commands;
    using MMachAbstract::m_directory;
    using MMachAbstract::m_name;
    using MMachAbstract::m_pMagazine;
    using MMachAbstract::m_pNotifier;
    using MMachAbstract::m_pOutput;
    using MMachAbstract::m_pProbeSource;
    using MMachAbstract::m_pProbesystemSource;

    MMachAxisInfo m_axis;  // the one axis, "x"
};
