// What MMachAbstract asks when a driver has given it a source of probe systems or of probes. Each operation
// has the meaning of the operation of the same name in mmachabstract.h.
#pragma once

#include <string>
#include <vector>

#include "mmachproberecords.h"

class MMachProbesystemSource {
public:
    virtual ~MMachProbesystemSource() = default;
    virtual bool IsProbesystemDefined(const std::string& name) = 0;
    virtual const std::string* GetFirstSupportedProbesystem() = 0;
    virtual const std::string* GetNextSupportedProbesystem() = 0;
    virtual bool IsProbesystemIdDefined(const std::string& name, long id) = 0;
    virtual std::vector<CProbesystemEntry> ListProbesystems(const std::string& name, long id) = 0;
    virtual bool IsProbesystemLoaded() = 0;
    virtual bool IsProbesystemSupported(const std::string& name) = 0;
    virtual std::string GetActiveProbesystemName() = 0;
    virtual long GetActiveProbesystemIdNum() = 0;
    virtual MMachProbesystemType GetActiveProbesystemType() = 0;
};

class MMachProbeSource {
public:
    virtual ~MMachProbeSource() = default;
    virtual bool IsProbeDefined(long probe) = 0;
    virtual bool IsTipDefined(long probe, long tip) = 0;
    virtual std::vector<CProbe> ListProbes(long probe, long tip) = 0;
    virtual int GetMaxProbeNum() = 0;
    virtual int GetMinProbeNum() = 0;
    virtual int GetActiveProbeNum() = 0;
    virtual int GetActiveTipNum() = 0;
};
