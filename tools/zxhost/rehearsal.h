// A script played without the machine: what each of its lines asks for is held against what the machine can.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "forwarding_machine.h"

namespace zxhost {

struct Action;

// Thrown where a verb waits for what a rehearsal doesn't bring: the verb's part is over, and was good.
struct RehearsalIsOver {};

struct Remark {
    bool is_wrong = true;  // else it can't be known before the machine does it
    std::string text;
    std::string way_out;  // may be empty
};

// Takes the place of the machine: questions reach the real one, actions are examined and go no further. It
// follows where the axes would stand and which probes would be defined, as far as that can be told.
class Rehearsal : public ForwardingMachine {
public:
    using ForwardingMachine::ForwardingMachine;

    MMachAbstract& machine() { return *this; }
    void examine(const Action& action);

    // An action was examined since the remarks were taken: what a verb says from then on is about results
    // that no machine gave.
    bool has_examined() const { return m_has_examined; }
    std::vector<Remark> take_remarks();
    void add(Remark remark) { m_remarks.push_back(std::move(remark)); }

    // What the factories' arguments ask for. No command is made: each of these returns null.
    MMachGetCommand* NewMMachGetCommand(MOutputChannel*, const std::vector<std::string>& axes) override;
    MMachInitCommand* NewMMachInitCommand(MOutputChannel*, const AxisSet& axes) override;
    MMachKeypadDisableCommand* NewMMachKeypadDisableCommand(MOutputChannel*, const AxisSet& axes) override;
    MMachKeypadEnableCommand* NewMMachKeypadEnableCommand(MOutputChannel*, const AxisSet& axes) override;
    MMachMoveCommand* NewMMachMoveCommand(MOutputChannel*, const MMachAxisTargets& targets) override;
    MMachMovecircleCommand* NewMMachMovecircleCommand(MOutputChannel*, const MMachCircle& circle) override;
    MMachMovehomeCommand* NewMMachMovehomeCommand(MOutputChannel*) override;
    MMachMovezeroCommand* NewMMachMovezeroCommand(MOutputChannel*, const MMachAxisTargets& targets) override;
    MMachSetCommand* NewMMachSetCommand(MOutputChannel*,
                                        const std::map<std::string, double>& values) override;
    MMachScanCommand* NewMMachScanCommand(MOutputChannel*, const MMachAxisTargets& targets) override;
    MMachScancircleCommand* NewMMachScancircleCommand(MOutputChannel*, const MMachCircle& circle) override;
    MMachScandataCommand* NewMMachScandataCommand(MOutputChannel*,
                                                  const std::vector<std::string>& names) override;
    MMachSpinDisableCommand* NewMMachSpinDisableCommand(MOutputChannel*, const AxisSet& axes) override;
    MMachSpinEnableCommand* NewMMachSpinEnableCommand(MOutputChannel*,
                                                      const std::map<std::string, bool>& axes) override;
    MMachProbesystemLoadCommand* NewMMachProbesystemLoadCommand(MOutputChannel*, const std::string& name,
                                                                long id) override;
    MMachProbesystemUnloadCommand* NewMMachProbesystemUnloadCommand(MOutputChannel*) override;
    MMachProbesystemDefineCommand* NewMMachProbesystemDefineCommand(
        MOutputChannel*, const MMachProbesystemDefinition& definition) override;
    MMachProbesystemDeleteCommand* NewMMachProbesystemDeleteCommand(MOutputChannel*, const std::string& name,
                                                                    long id) override;
    MMachProbeLoadCommand* NewMMachProbeLoadCommand(MOutputChannel*, long probe, long tip) override;
    MMachProbeChangeCommand* NewMMachProbeChangeCommand(MOutputChannel*, long probe, long tip) override;
    MMachProbeDefineCommand* NewMMachProbeDefineCommand(MOutputChannel*, long probe, long tip,
                                                        const std::map<std::string, double>& values) override;
    MMachProbeDeleteCommand* NewMMachProbeDeleteCommand(MOutputChannel*, long probe, long tip) override;
    MMachProbeUnloadCommand* NewMMachProbeUnloadCommand(MOutputChannel*) override;
    MMachProbeOffsetCommand* NewMMachProbeOffsetCommand(MOutputChannel*, const AxisTargetMap&) override;
    MMachWobbleCommand* NewMMachWobbleCommand(MOutputChannel*, const MMachWobbleParameters&) override;

    bool StartAutoinfo(unsigned long long tag, unsigned interval,
                       const std::vector<std::string>& axes) override;

private:
    using Tip = std::pair<long, long>;              // probe, tip
    using SystemId = std::pair<std::string, long>;  // probe system, id
    using Together = bool (MMachAbstract::*)(const AxisSet&);

    void wrong(const std::string& text, const std::string& way_out = "");
    void cannot_know(const std::string& text);

    void readable(const std::string& name);
    bool defined(const std::string& axis);
    bool travels(const std::string& axis);
    void each_of(const AxisSet& axes, bool (MMachAbstract::*belongs)(const std::string&),
                 const std::string& where);
    void together(const AxisSet& axes, Together possible, const std::string& what);
    void within_travel(const std::string& axis, double value);
    void target(const std::string& axis, const MMachAxisTarget& target);
    void drive(const MMachAxisTargets& targets, Together possible, const std::string& what);
    void arc(const MMachCircle& circle);
    std::optional<double> position(const std::string& axis);
    void needs_initialized();
    void lose_positions();

    bool is_defined(long probe, long tip);
    void known_probe(long probe, long tip);
    void known_probesystem(const std::string& name, long id);

    std::vector<Remark> m_remarks;
    bool m_has_examined = false;
    bool m_initializes = false;  // a line before did, or the gap has been told
    bool m_may_stand_anywhere = false;
    std::map<std::string, std::optional<double>> m_positions;  // of the axes that a line has driven
    bool m_knows_probes = true;
    std::map<Tip, bool> m_tips;          // defined or deleted by lines
    std::map<SystemId, bool> m_systems;  // the same
};

}  // namespace zxhost
