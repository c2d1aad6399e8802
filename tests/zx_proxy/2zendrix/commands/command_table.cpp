#include "command_table.h"

#include "mmachabstract.h"

namespace {

const MMachAxisTargets targets{{{"c", {-2.5, true}}, {"x", {1.5, false}}}, {"y"}, "t1", "t2", "t3", 9};
const MMachCircle circle{{1, 2, 3, 4, 5, 6, 7}, targets};
const MMachCone cone{{1, 2, 3, 4, 5, 6, 7}, targets, {8, 9}};
const std::vector<AxisTargetMap> points{{{"x", {1, false}}, {"z", {2, true}}}, {{"x", {3, false}}}};
const AxisSet axes{"x", "c"};
const std::map<std::string, bool> spins{{"a", true}, {"b", false}};
const std::map<std::string, double> tip_values{{"x", 1}, {"y", 2}, {"z", 3}, {"d", 4}, {"e", 5}};
const MMachProbesystemDefinition definition{"touch", 7, {1, 2, 3, 4, 5, 6}};
const std::string get_log = "m_pZendrixCom->Get() failed: '%s'";
const std::string internal_error = "error \"internal error\"";

#define CREATE(face, ...)                                                        \
    [](MMachAbstract& mach, MOutputChannel* channel) -> MMachCommand* {          \
        return mach.NewMMach##face##Command(channel __VA_OPT__(, ) __VA_ARGS__); \
    }

// What most rows have in common: the machine is taken, an id comes, the catalogue's line on false.
CommandRow common(const char* name, const char* command_name,
                  MMachCommand* (*create)(MMachAbstract&, MOutputChannel*), const char* call) {
    CommandRow row{name, command_name, create,           call, true, true, true, false, false, internal_error,
                   true, "",           CommandRow::once, ""};
    row.thrown_log = "m_pZendrixCom->" + row.operation() + "() failed: '%s'\n";
    return row;
}
CommandRow without_id(CommandRow row) {
    row.has_id = false;
    return row;
}
CommandRow without_abort(CommandRow row) {
    row.aborts = false;
    return row;
}
CommandRow without_machine(CommandRow row) {
    row.takes_machine = false;
    return row;
}
CommandRow scanning(CommandRow row) {
    row.scans = true;
    return row;
}
CommandRow receiving(CommandRow row) {
    row.receives = true;
    return row;
}
CommandRow on_false_text(CommandRow row, const std::string& text) {
    row.false_text = text;
    row.false_once = false;
    return row;
}
CommandRow on_false_number(CommandRow row, const std::string& log) {
    row.false_text = "internal error";
    row.false_once = false;
    row.false_log = log;
    return row;
}
CommandRow on_false_log(CommandRow row, const std::string& log) {
    row.false_log = log;
    return row;
}
CommandRow thrown(CommandRow row, CommandRow::Thrown way) {
    row.thrown = way;
    return row;
}
CommandRow line_once(CommandRow row, const std::string& line) {
    row.false_text = line;
    return row;
}
CommandRow logged_as(CommandRow row, const std::string& log) {
    row.thrown_log = log;
    return row;
}

// Probe commands: thrown texts without keyword and quotes, no end of line in the log.
CommandRow probe(CommandRow row) {
    row.thrown_log.pop_back();
    return thrown(row, CommandRow::bare_once);
}
CommandRow spin(const std::string& which, CommandRow row) {
    const std::string name = "M2ZendrixSpin" + which + "Command";
    row = without_abort(without_machine(without_id(thrown(row, CommandRow::always))));
    row = logged_as(row, name + "::" + name + "(): Spin" + which + "() failed: '%s'\n");
    return on_false_text(row, "Spin" + which + " failed");
}

}  // namespace

const std::vector<CommandRow>& command_table() {
    static const std::vector<CommandRow> rows{
        on_false_text(thrown(without_machine(without_id(common("Get", "get", CREATE(Get, {"x", "c"}),
                                                               "Get({x=0 flag -1, c=0 flag -1})"))),
                             CommandRow::always),
                      "M2ZendrixGetCommand(): unknown channel"),
        on_false_text(logged_as(thrown(common("Init", "init", CREATE(Init, axes), "InitAxes({\"c\", \"x\"})"),
                                       CommandRow::always),
                                "m_pZendrixCom->Init() failed: '%s'\n"),
                      "M2ZendrixInitCommand(): unknown channel"),
        on_false_number(
            without_id(thrown(common("Reset", "reset", CREATE(Reset), "Reset()"), CommandRow::always)),
            "M2ZendrixResetCommand(): Reset() failed"),
        common("Set", "set", CREATE(Set, {{"x", 1.5}, {"c", -90}}), "Set({c=-90 flag -1, x=1.5 flag -1})"),
        without_abort(without_id(common("Modulo", "modulo", CREATE(Modulo, axes), "Modulo({\"c\", \"x\"})"))),

        common("Move", "move", CREATE(Move, targets), "Move(2, c=-2.5 flag 0, x=1.5 flag -1)"),
        on_false_text(logged_as(without_id(common("Movebase", "movebase", CREATE(Movebase, axes),
                                                  "SetMoveBase({\"c\", \"x\"})")),
                                "m_pZendrixCom->Move() failed: '%s'\n"),
                      "M2ZendrixInitCommand(): unknown channel"),
        common("MoveCircle", "movecircle", CREATE(Movecircle, circle),
               "MoveCircle(1, 2, 3, 4, 5, 6, 7, 2, c=-2.5 flag 0, x=1.5 flag -1)"),
        common("MoveCone", "movecone", CREATE(Movecone, cone),
               "MoveCone(1, 2, 3, 4, 5, 6, 7, 8, 9, 2, c=-2.5 flag 0, x=1.5 flag -1)"),
        logged_as(thrown(common("Movehome", "movehome", CREATE(Movehome), "Execute(\"movehome\", tid)"),
                         CommandRow::bare_once),
                  "m_pZendrixCom->Execute(\"movehome\") failed: '%s'"),
        common("Movepoly", "movepoly", CREATE(Movepoly, points),
               "MovePoly(2, 5, x=1 flag -1, z=2 flag 0, =0 flag 0, x=3 flag -1, =0 flag 0)"),
        common("Movezero", "movezero", CREATE(Movezero, targets),
               "MoveZero(2, c=-2.5 flag 0, x=1.5 flag -1)"),

        on_false_log(scanning(common("Scan", "scan", CREATE(Scan, targets),
                                     "Scan(3, c=-2.5 flag 0, x=1.5 flag -1, y flag 1)")),
                     "M2ZendrixScanCommand(): Scan() failed"),
        on_false_text(logged_as(without_id(common("Scanbase", "scanbase", CREATE(Scanbase, axes),
                                                  "SetScanBase({\"c\", \"x\"})")),
                                "m_pZendrixCom->Scan() failed: '%s'\n"),
                      "M2ZendrixInitCommand(): unknown channel"),
        scanning(common("Scancircle", "scancircle", CREATE(Scancircle, circle),
                        "ScanCircle(1, 2, 3, 4, 5, 6, 7, 2, c=-2.5 flag 0, x=1.5 flag -1)")),
        logged_as(scanning(common("Scancone", "scancone", CREATE(Scancone, cone),
                                  "ScanCone(1, 2, 3, 4, 5, 6, 7, 8, 9, 2, c=-2.5 flag 0, x=1.5 flag -1)")),
                  "m_pZendrixCom->Scancone() failed: '%s'\n"),
        on_false_log(logged_as(common("Scandata", "scandata", CREATE(Scandata, {"z", "a"}),
                                      "ScanData({\"z\", \"a\"})"),
                               "m_pZendrixCom->Scan() failed: '%s'\n"),
                     "M2ZendrixScanCommand(): Scan() failed"),
        on_false_number(
            logged_as(thrown(scanning(common("Scanpoint", "scanpoint", CREATE(Scanpoint, targets),
                                             "ScanPoint(3, c=-2.5 flag 0, x=1.5 flag -1, y flag 1)")),
                             CommandRow::always),
                      "m_pZendrixCom->Scanpoint() failed: '%s'\n"),
            "M2ZendrixScanpointCommand(): Scanpoint() failed"),
        scanning(common("Scanpoly", "scanpoly", CREATE(Scanpoly, points),
                        "ScanPoly(2, 5, x=1 flag -1, z=2 flag 0, =0 flag 0, x=3 flag -1, =0 flag 0)")),

        probe(common("ProbeChange", "probe change", CREATE(ProbeChange, 2, 3), "ProbeChange(2, 3)")),
        probe(without_machine(
            without_id(common("ProbeDefine", "probe define", CREATE(ProbeDefine, 2, 3, tip_values),
                              "ProbeDefine(2, 3, 1, 2, 3, 4)")))),
        probe(without_machine(without_id(
            common("ProbeDelete", "probe delete", CREATE(ProbeDelete, 2, 3), "ProbeDelete(2, 3)")))),
        probe(common("ProbeLoad", "probe load", CREATE(ProbeLoad, 2, 3), "ProbeLoad(2, 3)")),
        probe(without_machine(common("ProbeOffset", "probe offset", CREATE(ProbeOffset, targets.m_targets),
                                     "ProbeOffset(2, c=-2.5 flag 0, x=1.5 flag -1)"))),
        probe(common("ProbeUnload", "probe unload", CREATE(ProbeUnload), "ProbeUnload()")),
        line_once(
            logged_as(probe(without_machine(without_id(common(
                          "ProbesystemDefine", "probesystem define", CREATE(ProbesystemDefine, definition),
                          "ProbesystemDefine(\"touch\", 7, 1, 2, 3, 4, 5, 6)")))),
                      get_log),
            "error \"probesystem already defined\""),
        line_once(logged_as(probe(without_machine(without_id(common("ProbesystemDelete", "probesystem delete",
                                                                    CREATE(ProbesystemDelete, "touch", 7),
                                                                    "ProbesystemDelete(\"touch\", 7)")))),
                            get_log),
                  "error \"undefined probesystem\""),
        line_once(logged_as(probe(without_machine(common("ProbesystemLoad", "probesystem load",
                                                         CREATE(ProbesystemLoad, "touch", 7),
                                                         "ProbesystemLoad(\"touch\", 7)"))),
                            get_log),
                  "error \"undefined probesystem\""),
        line_once(logged_as(probe(without_machine(common("ProbesystemUnload", "probesystem unload",
                                                         CREATE(ProbesystemUnload),
                                                         "Execute(\"probesystem unload\", tid)"))),
                            get_log),
                  "error \"probesystem not loaded\""),

        on_false_text(thrown(common("KeypadEnable", "keypad enable", CREATE(KeypadEnable, axes),
                                    "KeyPad(1, {\"c\", \"x\"})"),
                             CommandRow::always),
                      "M2ZendrixKeypadEnableCommand(): unknown channel"),
        on_false_text(thrown(common("KeypadDisable", "keypad disable", CREATE(KeypadDisable, axes),
                                    "KeyPad(0, {\"c\", \"x\"})"),
                             CommandRow::always),
                      "M2ZendrixKeypadDisableCommand(): unknown channel"),
        spin("Enable",
             common("SpinEnable", "spin enable", CREATE(SpinEnable, spins), "SpinEnable({\"a\", \"-b\"})")),
        spin("Disable",
             common("SpinDisable", "spin disable", CREATE(SpinDisable, axes), "SpinDisable({\"c\", \"x\"})")),
        logged_as(
            probe(without_machine(without_id(common(
                "Wobble", "wobble", CREATE(Wobble, MMachWobbleParameters{{1, -2.5, 0, 1e-7, 1234567, 6}}),
                "SetWobble(1, -2.5, 0, 1e-07, 1234567, 6)")))),
            "m_pZendrixCom->SetWobble(1,-2.5,0,1e-07,1.23457e+06,6, failed: '%s'"),

        without_abort(without_machine(
            without_id(common("Send", "send", CREATE(Send, "block", "data"), "Send(\"block\", \"data\")")))),
        receiving(without_abort(
            without_machine(common("Receive", "receive", CREATE(Receive, "block"), "Receive(\"block\")")))),
    };
    return rows;
}
