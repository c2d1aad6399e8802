// MMachAbstract: the machine as a host sees it.
//
// A host gets one from the plug-in's NewMMachAbstract, calls Open, and owns it until it deletes it through
// the virtual destructor. Queries answer at once, from the driver's picture of the machine or from the
// machine itself; without a machine they answer false, 0, null, an empty value or not-a-number, and never
// throw for it. Actions are command objects that the NewMMach...Command factories hand out (mmachcommand.h).
//
// All operations run on the host's threads, Open, Close and PollAsyncErrors on one at a time. Pointers that a
// query returns point into the driver; unless its comment says otherwise they stay valid until the next call
// of the same family.
//
// The order of the virtual operations is a contract between host and plug-in: none may be moved, dropped or
// put before another. Reserved<n> keeps slot n of those that this interface leaves open.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "mmachaxisinfo.h"
#include "mmachaxistargets.h"
#include "mmachcommands.h"
#include "mmachproberecords.h"
#include "os/mutex.h"

class MMachMagazineDB;
class MMachNotifier;
class MMachProbeSource;
class MMachProbesystemSource;
class MOutputChannel;

// The record of slot 78, whose use is open.
struct MMachReservedRecord {
    std::int32_t first = 0;
    std::int32_t second = 0;
    double third = 0.0;
};

class MMachAbstract {
public:
    // Borrows the channel and the notifier, which must outlive the object; copies the two texts.
    MMachAbstract(MOutputChannel* output, MMachNotifier* notifier, const std::string& name,
                  const std::string& directory);
    MMachAbstract(const MMachAbstract&) = delete;
    MMachAbstract& operator=(const MMachAbstract&) = delete;

    // Commands and connection.
    virtual void EnableCommand(const std::string& class_name);
    virtual void DisableCommand(const std::string& class_name);
    virtual ~MMachAbstract();
    virtual bool Open() = 0;
    virtual void Close() = 0;
    virtual bool Notify();
    virtual bool QueryNotifier();
    virtual void PollAsyncErrors() = 0;
    virtual bool IsCommandEnabled(const std::string& class_name);

    // The machine.
    virtual const char* GetMachineName() = 0;
    virtual const char* GetMachineRevision() = 0;
    virtual const char* GetSerialNumber() = 0;
    virtual const MMachComponentInfo* GetComponentInfo(const std::string& name);
    virtual const MMachComponentInfo* GetFirstComponentInfo();
    virtual const MMachComponentInfo* GetNextComponentInfo();
    virtual const MMachComponentInfo* GetFirstOptionInfo();
    virtual const MMachComponentInfo* GetNextOptionInfo();

    // Axes.
    virtual const MMachAxisInfo* GetAxisInfo(const std::string& axis) = 0;
    virtual const MMachAxisInfo* GetFirstAxisInfo() = 0;
    virtual const MMachAxisInfo* GetNextAxisInfo() = 0;
    virtual double GetAxisValue(const char* axis) = 0;
    virtual double GetDefaultConstant();

    // Which axes may go together.
    virtual bool IsScanningPossibleWith(const AxisSet& axes);
    virtual bool IsMovePossibleWith(const AxisSet& axes);
    virtual bool IsLimitMovePossibleWith(const AxisSet& axes);
    virtual bool IsZeroMovePossibleWith(const AxisSet& axes);
    virtual bool Reserved27();
    virtual bool Reserved28();
    virtual void* Reserved29();

    // Keypad.
    virtual bool HasKeypad();
    virtual const char* GetFirstKeypadAxis();
    virtual const char* GetNextKeypadAxis();
    virtual const char* GetFirstActiveKeypadAxis();
    virtual const char* GetNextActiveKeypadAxis();
    virtual bool IsKeypadAxis(const std::string& axis);

    // Spin axes.
    virtual bool HasSpin();
    virtual const char* GetFirstSpinAxis();
    virtual const char* GetNextSpinAxis();
    virtual const char* GetFirstActiveSpinAxis(double* value);
    virtual const char* GetNextActiveSpinAxis(double* value);
    virtual bool IsSpinAxis(const std::string& axis);
    virtual bool Reserved42();

    // Autoinfo: axis values at an interval.
    virtual bool StartAutoinfo(unsigned long long tag, unsigned interval,
                               const std::vector<std::string>& axes);
    virtual void StopAutoinfo();
    virtual bool GetAutoinfo(std::vector<double>& record);
    virtual bool IsAutoinfoActive();
    virtual bool Reserved47();
    virtual bool Reserved48();
    virtual void Reserved49();
    virtual bool Reserved50();
    virtual bool Reserved51();
    virtual bool Reserved52();
    virtual bool Reserved53();
    virtual bool Reserved54();
    virtual bool Reserved55();
    virtual bool Reserved56();
    virtual bool Reserved57();
    virtual bool Reserved58();
    virtual bool Reserved59();
    virtual bool Reserved60();
    virtual bool Reserved61();

    // Probe systems.
    virtual bool HasProbesystems();
    virtual bool IsProbesystemDefined(const std::string& name);
    virtual const std::string* GetFirstSupportedProbesystem();
    virtual const std::string* GetNextSupportedProbesystem();
    virtual bool IsProbesystemIdDefined(const std::string& name, long id);
    virtual std::vector<CProbesystemEntry> ListProbesystems(const std::string& name, long id);
    virtual bool IsProbesystemLoaded();
    virtual bool IsProbesystemSupported(const std::string& name);
    virtual std::string GetActiveProbesystemName();
    virtual long GetActiveProbesystemIdNum();
    virtual MMachProbesystemType GetActiveProbesystemType();
    virtual bool Reserved73();
    virtual void* Reserved74();
    virtual void* Reserved75();
    virtual void* Reserved76();
    virtual void* Reserved77();
    virtual MMachReservedRecord Reserved78();

    // Probes.
    virtual bool HasProbes();
    virtual bool IsProbeDefined(long probe);
    virtual bool IsTipDefined(long probe, long tip);
    virtual std::vector<CProbe> ListProbes(long probe, long tip);
    virtual int GetMaxProbeNum();
    virtual int GetMinProbeNum();
    virtual int GetActiveProbeNum();
    virtual int GetActiveTipNum();

    // Magazine.
    virtual bool HasMagazine();
    virtual std::uint32_t GetSlotOfProbe(std::uint32_t probe);
    virtual bool IsSlotDefined(std::uint32_t slot);
    virtual bool SetSlot(std::uint32_t slot, std::uint32_t probe);
    virtual bool GetLoadProgram(std::string& out, std::uint32_t slot);
    virtual bool GetUnloadProgram(std::string& out, std::uint32_t slot);
    virtual bool GetChangeProgram(std::string& out, std::uint32_t from, std::uint32_t to);
    virtual std::map<std::uint32_t, std::uint32_t> GetSlots(const std::string& name, std::uint32_t id);
    virtual std::string Reserved95();

    // Wobble and initialisation.
    virtual void GetWobbleParameters(MMachWobbleParameters& parameters);
    virtual bool HasInitList();
    virtual bool IsInitialized() = 0;
    virtual bool IsInInitList(const std::string& axis);
    virtual bool IsAxisInitialized(const std::string& axis);
    virtual bool Reserved101();
    virtual bool Reserved102();
    virtual bool Reserved103();
    virtual bool Reserved104();

    // Factories: the command is on its way when one returns. The host deletes the result; null means no
    // machine.
    virtual MMachGetCommand* NewMMachGetCommand(MOutputChannel* channel,
                                                const std::vector<std::string>& axes);
    virtual MMachInitCommand* NewMMachInitCommand(MOutputChannel* channel, const AxisSet& axes);
    virtual MMachKeypadDisableCommand* NewMMachKeypadDisableCommand(MOutputChannel* channel,
                                                                    const AxisSet& axes);
    virtual MMachKeypadEnableCommand* NewMMachKeypadEnableCommand(MOutputChannel* channel,
                                                                  const AxisSet& axes);
    virtual MMachCommand* Reserved109(MOutputChannel* channel);
    virtual MMachModuloCommand* NewMMachModuloCommand(MOutputChannel* channel, const AxisSet& axes);
    virtual MMachMovebaseCommand* NewMMachMovebaseCommand(MOutputChannel* channel, const AxisSet& axes);
    virtual MMachMoveCommand* NewMMachMoveCommand(MOutputChannel* channel, const MMachAxisTargets& targets);
    virtual MMachMovecircleCommand* NewMMachMovecircleCommand(MOutputChannel* channel,
                                                              const MMachCircle& circle);
    virtual MMachMoveconeCommand* NewMMachMoveconeCommand(MOutputChannel* channel, const MMachCone& cone);
    virtual MMachMovehomeCommand* NewMMachMovehomeCommand(MOutputChannel* channel);
    virtual MMachMovezeroCommand* NewMMachMovezeroCommand(MOutputChannel* channel,
                                                          const MMachAxisTargets& targets);
    virtual MMachReceiveCommand* NewMMachReceiveCommand(MOutputChannel* channel, const std::string& name);
    virtual MMachSendCommand* NewMMachSendCommand(MOutputChannel* channel, const std::string& name,
                                                  const std::string& data);
    virtual MMachSetCommand* NewMMachSetCommand(MOutputChannel* channel,
                                                const std::map<std::string, double>& values);
    virtual MMachScanCommand* NewMMachScanCommand(MOutputChannel* channel, const MMachAxisTargets& targets);
    virtual MMachSpinDisableCommand* NewMMachSpinDisableCommand(MOutputChannel* channel, const AxisSet& axes);
    virtual MMachSpinEnableCommand* NewMMachSpinEnableCommand(MOutputChannel* channel,
                                                              const std::map<std::string, bool>& axes);
    virtual MMachCommand* Reserved123();
    virtual MMachProbesystemLoadCommand* NewMMachProbesystemLoadCommand(MOutputChannel* channel,
                                                                        const std::string& name, long id);
    virtual MMachProbesystemUnloadCommand* NewMMachProbesystemUnloadCommand(MOutputChannel* channel);
    virtual MMachProbesystemDefineCommand* NewMMachProbesystemDefineCommand(
        MOutputChannel* channel, const MMachProbesystemDefinition& definition);
    virtual MMachProbesystemDeleteCommand* NewMMachProbesystemDeleteCommand(MOutputChannel* channel,
                                                                            const std::string& name, long id);
    virtual MMachProbeLoadCommand* NewMMachProbeLoadCommand(MOutputChannel* channel, long probe, long tip);
    virtual MMachProbeDeleteCommand* NewMMachProbeDeleteCommand(MOutputChannel* channel, long probe,
                                                                long tip);
    virtual MMachProbeDefineCommand* NewMMachProbeDefineCommand(MOutputChannel* channel, long probe, long tip,
                                                                const std::map<std::string, double>& values);
    virtual MMachProbeUnloadCommand* NewMMachProbeUnloadCommand(MOutputChannel* channel);
    virtual MMachProbeChangeCommand* NewMMachProbeChangeCommand(MOutputChannel* channel, long probe,
                                                                long tip);
    virtual MMachProbeOffsetCommand* NewMMachProbeOffsetCommand(MOutputChannel* channel,
                                                                const AxisTargetMap& offsets);
    virtual MMachResetCommand* NewMMachResetCommand(MOutputChannel* channel);
    virtual MMachScanbaseCommand* NewMMachScanbaseCommand(MOutputChannel* channel, const AxisSet& axes);
    virtual MMachScancircleCommand* NewMMachScancircleCommand(MOutputChannel* channel,
                                                              const MMachCircle& circle);
    virtual MMachScanconeCommand* NewMMachScanconeCommand(MOutputChannel* channel, const MMachCone& cone);
    virtual MMachScandataCommand* NewMMachScandataCommand(MOutputChannel* channel,
                                                          const std::vector<std::string>& names);
    virtual MMachCommand* Reserved139(MOutputChannel* channel);
    virtual MMachScanpointCommand* NewMMachScanpointCommand(MOutputChannel* channel,
                                                            const MMachAxisTargets& targets);
    virtual MMachMovepolyCommand* NewMMachMovepolyCommand(MOutputChannel* channel,
                                                          const std::vector<AxisTargetMap>& points);
    virtual MMachScanpolyCommand* NewMMachScanpolyCommand(MOutputChannel* channel,
                                                          const std::vector<AxisTargetMap>& points);
    virtual MMachCommand* Reserved143(MOutputChannel* channel);
    virtual MMachCommand* Reserved144(MOutputChannel* channel);
    virtual MMachCommand* Reserved145(MOutputChannel* channel);
    virtual MMachCommand* Reserved146(MOutputChannel* channel);
    virtual MMachWobbleCommand* NewMMachWobbleCommand(MOutputChannel* channel,
                                                      const MMachWobbleParameters& parameters);

    // Tests of a component's state and an axis's flags, each built on the virtual look-ups above; false for
    // an unknown name. The bits are those of mmachaxisinfo.h.
    bool TestComponentA(const std::string& name);  // state has bit 0 set and bit 3 clear
    bool TestComponentB(const std::string& name);  // state has bit 1 set and bit 3 clear
    bool IsAxisDefined(const std::string& axis);
    bool IsAxisActive(const std::string& axis);
    bool TestAxisA(const std::string& axis);  // active, and kind 3 or unbounded
    bool TestAxisB(const std::string& axis);  // active and bounded
    bool TestAxisC(const std::string& axis);  // active, and kind 0, 2 or 3
    bool TestAxisD(const std::string& axis);  // has the name of a rotary axis
    bool TestAxisE(const std::string& axis);  // bounded and on the keypad

    // Which axes take the roles of a raster: first, second and third axis, and rotary axis. Null leaves a role
    // empty, also where its axis is inactive; all four may stay empty. False, with the results as they were
    // and an error on the channel, for a request that is none or mixes groups of axes. The results are
    // constant texts but for a request of one axis outside the groups: that is its key in `axes`.
    // No state; the caller's thread.
    bool GetRasterAxes(MOutputChannel& channel, const AxisTargetMap& axes, const char*& raster1,
                       const char*& raster2, const char*& raster3, const char*& rotary);
    // A circle moves in x, y and z by nature; the axes with a target in the record join them.
    bool GetRasterAxes(MOutputChannel& channel, const MMachCircle& circle, const char*& raster1,
                       const char*& raster2, const char*& raster3, const char*& rotary);
    // A polygon: the axes of all its points.
    bool GetRasterAxes(MOutputChannel& channel, const std::vector<AxisTargetMap>& groups,
                       const char*& raster1, const char*& raster2, const char*& raster3,
                       const char*& rotary);
    // The same for a scan base: one active axis of any name, or some of x, y, z and c. After an error the
    // roles filled so far stay. A result for a single axis is its key in `axes`.
    bool GetScanbaseAxes(MOutputChannel& channel, const AxisSet& axes, const char*& raster1,
                         const char*& raster2, const char*& raster3, const char*& rotary);

protected:
    MOutputChannel* m_pOutput;
    MMachNotifier* m_pNotifier;
    // Command class name to enabled. Written on the client's thread when the machine's capabilities change.
    std::map<std::string, bool> m_commands OS_GUARDED_BY(m_commandsLock);
    MMachProbesystemSource* m_pProbesystemSource;  // this and the next two: null unless a driver sets them
    MMachProbeSource* m_pProbeSource;
    MMachMagazineDB* m_pMagazine;
    std::string m_name;       // configuration name
    std::string m_directory;  // configuration directory
    std::map<std::string, MMachReservedRecord> m_baseMap;
    os::Mutex m_commandsLock;  // behind the fields that a host knows, so that those keep their places
};
