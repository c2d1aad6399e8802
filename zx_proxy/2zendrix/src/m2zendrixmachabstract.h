// The driver: MMachAbstract for a machine behind a machine server.
//
// Everything the driver does with the machine goes through one client object; no client means no machine. It
// keeps a picture of the machine that the machine's events renew on the client's thread, and queues what the
// machine says until the host comes to fetch it. docs/threads.md tells which thread runs what, and
// docs/errors.md where each failure is reported.
//
// The sources are split by subject: _connection (Open to Close), _config (the ini file), _events (callbacks),
// _capabilities (the picture of the machine), _machine, _queries and _probes (what the host asks of it),
// _factories (the commands).
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cachedaxes.h"
#include "czendrixcom.h"
#include "keypadaxislist.h"
#include "menvironment.h"
#include "mmachabstract.h"
#include "os/environment.h"
#include "os/mutex.h"
#include "os/registry.h"

class MErrTraceContext;

class M2ZendrixMachAbstract : public MMachAbstract {
public:
    // No input or output: that is Open's.
    M2ZendrixMachAbstract(MOutputChannel* output, MMachNotifier* notifier, const std::string& name,
                          const std::string& directory);
    ~M2ZendrixMachAbstract() override;

    // Connection.
    bool Open() override;
    void Close() override;
    void PollAsyncErrors() override;

    // The machine and its axes.
    const char* GetMachineName() override;
    const char* GetMachineRevision() override;
    const char* GetSerialNumber() override;
    const MMachComponentInfo* GetComponentInfo(const std::string& name) override;
    const MMachComponentInfo* GetFirstComponentInfo() override;
    const MMachComponentInfo* GetNextComponentInfo() override;
    const MMachComponentInfo* GetFirstOptionInfo() override;
    const MMachComponentInfo* GetNextOptionInfo() override;
    const MMachAxisInfo* GetAxisInfo(const std::string& axis) override;
    const MMachAxisInfo* GetFirstAxisInfo() override;
    const MMachAxisInfo* GetNextAxisInfo() override;
    double GetAxisValue(const char* axis) override;

    // Which axes may go together.
    bool IsScanningPossibleWith(const AxisSet& axes) override;
    bool IsMovePossibleWith(const AxisSet& axes) override;
    bool IsLimitMovePossibleWith(const AxisSet& axes) override;
    bool IsZeroMovePossibleWith(const AxisSet& axes) override;

    // Keypad, spin axes, initialisation and wobble.
    bool HasKeypad() override;
    const char* GetFirstKeypadAxis() override;
    const char* GetNextKeypadAxis() override;
    const char* GetFirstActiveKeypadAxis() override;
    const char* GetNextActiveKeypadAxis() override;
    bool IsKeypadAxis(const std::string& axis) override;
    bool HasSpin() override;
    const char* GetFirstSpinAxis() override;
    const char* GetNextSpinAxis() override;
    const char* GetFirstActiveSpinAxis(double* value) override;
    const char* GetNextActiveSpinAxis(double* value) override;
    bool IsSpinAxis(const std::string& axis) override;
    bool Reserved42() override;
    bool HasInitList() override;
    bool IsInitialized() override;
    bool IsInInitList(const std::string& axis) override;
    bool IsAxisInitialized(const std::string& axis) override;
    void GetWobbleParameters(MMachWobbleParameters& parameters) override;

    // Autoinfo.
    bool StartAutoinfo(unsigned long long tag, unsigned interval,
                       const std::vector<std::string>& axes) override;
    void StopAutoinfo() override;
    bool GetAutoinfo(std::vector<double>& record) override;
    bool IsAutoinfoActive() override;

    // Probe systems and probes.
    bool HasProbesystems() override;
    bool IsProbesystemDefined(const std::string& name) override;
    const std::string* GetFirstSupportedProbesystem() override;
    const std::string* GetNextSupportedProbesystem() override;
    bool IsProbesystemIdDefined(const std::string& name, long id) override;
    std::vector<CProbesystemEntry> ListProbesystems(const std::string& name, long id) override;
    bool IsProbesystemLoaded() override;
    bool IsProbesystemSupported(const std::string& name) override;
    std::string GetActiveProbesystemName() override;
    long GetActiveProbesystemIdNum() override;
    MMachProbesystemType GetActiveProbesystemType() override;
    bool HasProbes() override;
    bool IsProbeDefined(long probe) override;
    bool IsTipDefined(long probe, long tip) override;
    std::vector<CProbe> ListProbes(long probe, long tip) override;
    int GetMaxProbeNum() override;
    int GetMinProbeNum() override;
    int GetActiveProbeNum() override;
    int GetActiveTipNum() override;

    // Factories.
    MMachGetCommand* NewMMachGetCommand(MOutputChannel* channel,
                                        const std::vector<std::string>& axes) override;
    MMachInitCommand* NewMMachInitCommand(MOutputChannel* channel, const AxisSet& axes) override;
    MMachModuloCommand* NewMMachModuloCommand(MOutputChannel* channel, const AxisSet& axes) override;
    MMachMovebaseCommand* NewMMachMovebaseCommand(MOutputChannel* channel, const AxisSet& axes) override;
    MMachMoveCommand* NewMMachMoveCommand(MOutputChannel* channel, const MMachAxisTargets& targets) override;
    MMachMovecircleCommand* NewMMachMovecircleCommand(MOutputChannel* channel,
                                                      const MMachCircle& circle) override;
    MMachMoveconeCommand* NewMMachMoveconeCommand(MOutputChannel* channel, const MMachCone& cone) override;
    MMachMovehomeCommand* NewMMachMovehomeCommand(MOutputChannel* channel) override;
    MMachMovezeroCommand* NewMMachMovezeroCommand(MOutputChannel* channel,
                                                  const MMachAxisTargets& targets) override;
    MMachSetCommand* NewMMachSetCommand(MOutputChannel* channel,
                                        const std::map<std::string, double>& values) override;
    MMachScanCommand* NewMMachScanCommand(MOutputChannel* channel, const MMachAxisTargets& targets) override;
    MMachResetCommand* NewMMachResetCommand(MOutputChannel* channel) override;
    MMachScanbaseCommand* NewMMachScanbaseCommand(MOutputChannel* channel, const AxisSet& axes) override;
    MMachScancircleCommand* NewMMachScancircleCommand(MOutputChannel* channel,
                                                      const MMachCircle& circle) override;
    MMachScanconeCommand* NewMMachScanconeCommand(MOutputChannel* channel, const MMachCone& cone) override;
    MMachScandataCommand* NewMMachScandataCommand(MOutputChannel* channel,
                                                  const std::vector<std::string>& names) override;
    MMachScanpointCommand* NewMMachScanpointCommand(MOutputChannel* channel,
                                                    const MMachAxisTargets& targets) override;
    MMachMovepolyCommand* NewMMachMovepolyCommand(MOutputChannel* channel,
                                                  const std::vector<AxisTargetMap>& points) override;
    MMachScanpolyCommand* NewMMachScanpolyCommand(MOutputChannel* channel,
                                                  const std::vector<AxisTargetMap>& points) override;
    MMachKeypadDisableCommand* NewMMachKeypadDisableCommand(MOutputChannel* channel,
                                                            const AxisSet& axes) override;
    MMachKeypadEnableCommand* NewMMachKeypadEnableCommand(MOutputChannel* channel,
                                                          const AxisSet& axes) override;
    MMachSpinDisableCommand* NewMMachSpinDisableCommand(MOutputChannel* channel,
                                                        const AxisSet& axes) override;
    MMachSpinEnableCommand* NewMMachSpinEnableCommand(MOutputChannel* channel,
                                                      const std::map<std::string, bool>& axes) override;
    MMachProbesystemLoadCommand* NewMMachProbesystemLoadCommand(MOutputChannel* channel,
                                                                const std::string& name, long id) override;
    MMachProbesystemUnloadCommand* NewMMachProbesystemUnloadCommand(MOutputChannel* channel) override;
    MMachProbesystemDefineCommand* NewMMachProbesystemDefineCommand(
        MOutputChannel* channel, const MMachProbesystemDefinition& definition) override;
    MMachProbesystemDeleteCommand* NewMMachProbesystemDeleteCommand(MOutputChannel* channel,
                                                                    const std::string& name,
                                                                    long id) override;
    MMachProbeLoadCommand* NewMMachProbeLoadCommand(MOutputChannel* channel, long probe, long tip) override;
    MMachProbeDeleteCommand* NewMMachProbeDeleteCommand(MOutputChannel* channel, long probe,
                                                        long tip) override;
    MMachProbeDefineCommand* NewMMachProbeDefineCommand(MOutputChannel* channel, long probe, long tip,
                                                        const std::map<std::string, double>& values) override;
    MMachProbeUnloadCommand* NewMMachProbeUnloadCommand(MOutputChannel* channel) override;
    MMachProbeChangeCommand* NewMMachProbeChangeCommand(MOutputChannel* channel, long probe,
                                                        long tip) override;
    MMachProbeOffsetCommand* NewMMachProbeOffsetCommand(MOutputChannel* channel,
                                                        const AxisTargetMap& offsets) override;
    MMachWobbleCommand* NewMMachWobbleCommand(MOutputChannel* channel,
                                              const MMachWobbleParameters& parameters) override;
    // A firmware configuration makes the driver expect to lose the machine, from here on.
    MMachSendCommand* NewMMachSendCommand(MOutputChannel* channel, const std::string& name,
                                          const std::string& data) override;
    // The name "backup.m2zendrix_dll" fetches an archive of the driver's own directory.
    MMachReceiveCommand* NewMMachReceiveCommand(MOutputChannel* channel, const std::string& name) override;

    // These serve the commands.
    // The live client or null. Load it once per function: it goes away when a loss was expected.
    CZendrixCOM* client() { return m_pZendrixCom.load(); }
    MMachNotifier* notifier() { return m_pNotifier; }
    // Renews what the event speaks of; client's thread, before the event is queued anywhere.
    void handle_async_event(const std::string& text);
    // Has the transaction finished? Its id is removed then: a completion is found only once.
    bool take_finished_id(long id);
    static void command_complete_callback(void* user, long id);

protected:
    void read_app_ini_file();
    void take_host(MErrTraceContext& context, std::string value);
    void take_cached_axes(const std::string& value);
    bool connect();
    void check_adapter();
    bool prepare_client(CZendrixCOM& client);
    void set_up_picture();
    void test_keypad_list_inactive(CZendrixCOM& client);
    void poll_connection();
    void delete_clients();

    static void async_events_callback(void* user, const char* text);
    static void async_errors_callback(void* user, long tid, const char* text);
    static void async_warnings_callback(void* user, long tid, const char* text);
    static void autoinfo_callback(void* user, unsigned count, double* const values);
    void notify(const char* callback);
    void add_finished_id(const char* function, long id);
    bool is_ignored_error(const std::string& text);
    bool is_possible_with(const char* word, const AxisSet& axes);
    const char* GetFirstKeypadAxisByList(KeypadAxisList& list);
    bool rebuild_keypad_list(KeypadAxisList& list, CZendrixCOM& client);

    // What a query of probes asks, and how it speaks in the error log.
    struct ProbeQuery {
        const char* name;
        const char* operation;
        bool (MMachAbstract::*available)();
        bool bare_errors = false;  // strip the client's text, and keep silent if nothing is left of it
    };
    template <class Call>
    bool ask_probes(const ProbeQuery& query, Call call);
    std::vector<CProbesystemList> ask_probesystems(const char* query, const std::string& name);
    std::string ask_active_probesystem(const char* query, bool bare_errors);
    std::vector<CProbe> ask_probe_list(const char* query, long probe, long tip);
    int ask_highest_number(const char* query, const char* axis);
    int ask_active_number(const char* query, const char* axis);
    void begin_ignore_not_loaded_error();
    void end_ignore_not_loaded_error();

    void enable_supported_commands();
    void raise_flags(const std::vector<std::string>& words);
    void update_capabilities();
    MMachAxisInfo* convert_capabilities(const CAxis& axis, const std::vector<std::string>& keypad);
    void update_init_list();
    void update_spin_lists();
    void insert_active_spin_axis(std::string axis, double value) OS_REQUIRES(m_spinActiveLock);
    void update_cached_axes_values();

    // Texts that the callbacks queue and PollAsyncErrors hands on.
    os::Mutex m_eventsLock;
    std::deque<std::string> m_events OS_GUARDED_BY(m_eventsLock);
    os::Mutex m_errorsLock;
    std::deque<std::string> m_errors OS_GUARDED_BY(m_errorsLock);
    os::Mutex m_warningsLock;
    std::deque<std::string> m_warnings OS_GUARDED_BY(m_warningsLock);

    // Autoinfo: one value per watched axis and record.
    os::Mutex m_autoinfoLock;
    std::deque<std::vector<double>> m_autoinfo OS_GUARDED_BY(m_autoinfoLock);
    std::uint64_t m_autoinfoTag OS_GUARDED_BY(m_autoinfoLock) = 0;
    std::vector<std::string> m_autoinfoAxes OS_GUARDED_BY(m_autoinfoLock);

    // A try-lock that the same thread may meet again; its names change only in Open.
    std::atomic_flag m_cachedAxesLock;
    CachedAxes m_cachedAxes;

    std::set<long> m_finishedIds OS_GUARDED_BY(m_finishedIdsLock);
    os::Mutex m_finishedIdsLock;

    std::string m_host;
    std::string m_port;
    // The system, as Open looks at it.
    os::Registry* m_registry = &os::system_registry();
    MExpandFunction m_expandVariables = os::expand_variables;
    std::atomic<CZendrixCOM*> m_pZendrixCom{nullptr};
    // The client after an expected loss: callbacks may still be inside it, so it goes only in Close.
    CZendrixCOM* m_pZendrixComRetired = nullptr;
    std::vector<CZendrixCOM*> m_retiredEarlier;  // those that a second expected loss displaced

    using ComponentMap = std::map<std::string, MMachComponentInfo>;
    ComponentMap m_components;
    ComponentMap::iterator m_componentsNext = m_components.end();
    ComponentMap m_options;
    ComponentMap::iterator m_optionsNext = m_options.end();
    KeypadAxisList m_keypadList;
    KeypadAxisList m_keypadActiveList;

    std::set<std::string> m_spinList OS_GUARDED_BY(m_spinListLock);
    std::set<std::string>::iterator m_spinListNext OS_GUARDED_BY(m_spinListLock) = m_spinList.end();
    os::Mutex m_spinListLock;
    std::map<std::string, double> m_spinActive OS_GUARDED_BY(m_spinActiveLock);
    std::map<std::string, double>::iterator m_spinActiveNext OS_GUARDED_BY(m_spinActiveLock) =
        m_spinActive.end();
    os::Mutex m_spinActiveLock;

    // Held for one look-up, insert or step. Records never move and are never removed.
    os::Mutex m_axesLock;
    std::map<std::string, MMachAxisInfo> m_axes OS_GUARDED_BY(m_axesLock);
    std::map<std::string, MMachAxisInfo>::iterator m_axesNext OS_GUARDED_BY(m_axesLock) = m_axes.end();

    os::Mutex m_initListLock;
    std::set<std::string> m_initList OS_GUARDED_BY(m_initListLock);
    std::map<std::string, int> m_supportedProbesystems;
    std::map<std::string, int>::iterator m_supportedProbesystemsAt = m_supportedProbesystems.end();
    os::Mutex m_ignoredErrorsLock;
    std::set<std::string> m_ignoredErrors OS_GUARDED_BY(m_ignoredErrorsLock);

    // Only ever raised: what the machine once had stays up while the driver lives.
    std::atomic<bool> m_hasProbesystems{false};
    std::atomic<bool> m_hasProbes{false};
    std::atomic<bool> m_hasSpin{false};
    std::atomic<bool> m_hasInitList{false};
    std::atomic<bool> m_hasMoveLimit{false};
    std::atomic<bool> m_hasKeypad{false};
    std::atomic<bool> m_expectConnectionLoss{false};  // a firmware configuration was sent
    std::atomic<bool> m_keypadListInactive{false};    // the machine knows "keypad list +inactive"
};

// Runs one command line in the waiting mode and puts the mode back; without a client `reply` stays as it was.
void execute_cmd_and_wait(CZendrixCOM* client, const std::string& command, std::vector<std::string>& reply);
