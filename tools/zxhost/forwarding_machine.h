// A machine whose questions another one answers. It passes no action on: its factories make no commands.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "mmachabstract.h"

namespace zxhost {

// Borrows the other one, which must outlive it. Opening, closing and polling stay with the other one's owner.
class ForwardingMachine : public MMachAbstract {
public:
    explicit ForwardingMachine(MMachAbstract& real) : MMachAbstract(nullptr, nullptr, "", ""), m_real(real) {}

    bool Open() override { return true; }
    void Close() override {}
    void PollAsyncErrors() override {}
    bool IsCommandEnabled(const std::string& name) override { return m_real.IsCommandEnabled(name); }

    const char* GetMachineName() override { return m_real.GetMachineName(); }
    const char* GetMachineRevision() override { return m_real.GetMachineRevision(); }
    const char* GetSerialNumber() override { return m_real.GetSerialNumber(); }
    const MMachComponentInfo* GetComponentInfo(const std::string& name) override {
        return m_real.GetComponentInfo(name);
    }
    const MMachComponentInfo* GetFirstComponentInfo() override { return m_real.GetFirstComponentInfo(); }
    const MMachComponentInfo* GetNextComponentInfo() override { return m_real.GetNextComponentInfo(); }
    const MMachComponentInfo* GetFirstOptionInfo() override { return m_real.GetFirstOptionInfo(); }
    const MMachComponentInfo* GetNextOptionInfo() override { return m_real.GetNextOptionInfo(); }

    const MMachAxisInfo* GetAxisInfo(const std::string& axis) override { return m_real.GetAxisInfo(axis); }
    const MMachAxisInfo* GetFirstAxisInfo() override { return m_real.GetFirstAxisInfo(); }
    const MMachAxisInfo* GetNextAxisInfo() override { return m_real.GetNextAxisInfo(); }
    double GetAxisValue(const char* axis) override { return m_real.GetAxisValue(axis); }
    double GetDefaultConstant() override { return m_real.GetDefaultConstant(); }

    bool IsScanningPossibleWith(const AxisSet& axes) override { return m_real.IsScanningPossibleWith(axes); }
    bool IsMovePossibleWith(const AxisSet& axes) override { return m_real.IsMovePossibleWith(axes); }
    bool IsLimitMovePossibleWith(const AxisSet& axes) override {
        return m_real.IsLimitMovePossibleWith(axes);
    }
    bool IsZeroMovePossibleWith(const AxisSet& axes) override { return m_real.IsZeroMovePossibleWith(axes); }

    bool HasKeypad() override { return m_real.HasKeypad(); }
    const char* GetFirstKeypadAxis() override { return m_real.GetFirstKeypadAxis(); }
    const char* GetNextKeypadAxis() override { return m_real.GetNextKeypadAxis(); }
    const char* GetFirstActiveKeypadAxis() override { return m_real.GetFirstActiveKeypadAxis(); }
    const char* GetNextActiveKeypadAxis() override { return m_real.GetNextActiveKeypadAxis(); }
    bool IsKeypadAxis(const std::string& axis) override { return m_real.IsKeypadAxis(axis); }

    bool HasSpin() override { return m_real.HasSpin(); }
    const char* GetFirstSpinAxis() override { return m_real.GetFirstSpinAxis(); }
    const char* GetNextSpinAxis() override { return m_real.GetNextSpinAxis(); }
    const char* GetFirstActiveSpinAxis(double* value) override {
        return m_real.GetFirstActiveSpinAxis(value);
    }
    const char* GetNextActiveSpinAxis(double* value) override { return m_real.GetNextActiveSpinAxis(value); }
    bool IsSpinAxis(const std::string& axis) override { return m_real.IsSpinAxis(axis); }

    bool HasProbesystems() override { return m_real.HasProbesystems(); }
    bool IsProbesystemDefined(const std::string& name) override { return m_real.IsProbesystemDefined(name); }
    const std::string* GetFirstSupportedProbesystem() override {
        return m_real.GetFirstSupportedProbesystem();
    }
    const std::string* GetNextSupportedProbesystem() override { return m_real.GetNextSupportedProbesystem(); }
    bool IsProbesystemIdDefined(const std::string& name, long id) override {
        return m_real.IsProbesystemIdDefined(name, id);
    }
    std::vector<CProbesystemEntry> ListProbesystems(const std::string& name, long id) override {
        return m_real.ListProbesystems(name, id);
    }
    bool IsProbesystemLoaded() override { return m_real.IsProbesystemLoaded(); }
    bool IsProbesystemSupported(const std::string& name) override {
        return m_real.IsProbesystemSupported(name);
    }
    std::string GetActiveProbesystemName() override { return m_real.GetActiveProbesystemName(); }
    long GetActiveProbesystemIdNum() override { return m_real.GetActiveProbesystemIdNum(); }
    MMachProbesystemType GetActiveProbesystemType() override { return m_real.GetActiveProbesystemType(); }

    bool HasProbes() override { return m_real.HasProbes(); }
    bool IsProbeDefined(long probe) override { return m_real.IsProbeDefined(probe); }
    bool IsTipDefined(long probe, long tip) override { return m_real.IsTipDefined(probe, tip); }
    std::vector<CProbe> ListProbes(long probe, long tip) override { return m_real.ListProbes(probe, tip); }
    int GetMaxProbeNum() override { return m_real.GetMaxProbeNum(); }
    int GetMinProbeNum() override { return m_real.GetMinProbeNum(); }
    int GetActiveProbeNum() override { return m_real.GetActiveProbeNum(); }
    int GetActiveTipNum() override { return m_real.GetActiveTipNum(); }

    void GetWobbleParameters(MMachWobbleParameters& parameters) override {
        m_real.GetWobbleParameters(parameters);
    }
    bool HasInitList() override { return m_real.HasInitList(); }
    bool IsInitialized() override { return m_real.IsInitialized(); }
    bool IsInInitList(const std::string& axis) override { return m_real.IsInInitList(axis); }
    bool IsAxisInitialized(const std::string& axis) override { return m_real.IsAxisInitialized(axis); }

protected:
    MMachAbstract& real() { return m_real; }

private:
    MMachAbstract& m_real;
};

}  // namespace zxhost
