#include "command_table.h"

#include "mmachabstract.h"

namespace {

const MMachAxisTargets targets{{{"c", {-2.5, true}}, {"x", {1.5, false}}}, {"y"}, "t1", "t2", "t3", 9};
const MMachCircle circle{{1, 2, 3, 4, 5, 6, 7}, targets};
const MMachCone cone{{1, 2, 3, 4, 5, 6, 7}, targets, {8, 9}};
const std::vector<AxisTargetMap> points{{{"x", {1, false}}, {"z", {2, true}}}, {{"x", {3, false}}}};
const AxisSet axes{"x", "c"};
const std::string internal_error = "error \"internal error\"";

#define CREATE(face, ...)                                                        \
    [](MMachAbstract& mach, MOutputChannel* channel) -> MMachCommand* {          \
        return mach.NewMMach##face##Command(channel __VA_OPT__(, ) __VA_ARGS__); \
    }

// What most rows have in common: the machine is taken, an id comes, the catalogue's line on false.
CommandRow common(const char* name, const char* command_name,
                  MMachCommand* (*create)(MMachAbstract&, MOutputChannel*), const char* call) {
    CommandRow row{name, command_name, create,           call, true, true, true, false, internal_error,
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
CommandRow logged_as(CommandRow row, const std::string& log) {
    row.thrown_log = log;
    return row;
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
    };
    return rows;
}
