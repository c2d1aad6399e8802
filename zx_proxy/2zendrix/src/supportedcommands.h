// What the words of a machine's command set mean to the driver: two tables.
#pragma once

struct SupportedCommand {
    const char* word;
    const char* class_name;
};

// In the order of the check. "reset" isn't here: its class is never marked.
constexpr SupportedCommand supported_commands[] = {
    {"get", "MMachGetCommand"},
    {"init", "MMachInitCommand"},
    {"keypad disable", "MMachKeypadDisableCommand"},
    {"keypad enable", "MMachKeypadEnableCommand"},
    {"modulo", "MMachModuloCommand"},
    {"move", "MMachMoveCommand"},
    {"movebase", "MMachMovebaseCommand"},
    {"movepoly", "MMachMovepolyCommand"},
    {"movecircle", "MMachMovecircleCommand"},
    {"movecone", "MMachMoveconeCommand"},
    {"movehome", "MMachMovehomeCommand"},
    {"movezero", "MMachMovezeroCommand"},
    {"probe change", "MMachProbeChangeCommand"},
    {"probe define", "MMachProbeDefineCommand"},
    {"probe delete", "MMachProbeDeleteCommand"},
    {"probe load", "MMachProbeLoadCommand"},
    {"probe offset", "MMachProbeOffsetCommand"},
    {"probe unload", "MMachProbeUnloadCommand"},
    {"probesystem define", "MMachProbesystemDefineCommand"},
    {"probesystem delete", "MMachProbesystemDeleteCommand"},
    {"probesystem load", "MMachProbesystemLoadCommand"},
    {"probesystem unload", "MMachProbesystemUnloadCommand"},
    {"receive", "MMachReceiveCommand"},
    {"scancircle", "MMachScancircleCommand"},
    {"scancone", "MMachScanconeCommand"},
    {"scan", "MMachScanCommand"},
    {"scanbase", "MMachScanbaseCommand"},
    {"scandata", "MMachScandataCommand"},
    {"scanpoint", "MMachScanpointCommand"},
    {"scanpoly", "MMachScanpolyCommand"},
    {"send", "MMachSendCommand"},
    {"set", "MMachSetCommand"},
    {"spin enable", "MMachSpinEnableCommand"},
    {"spin disable", "MMachSpinDisableCommand"},
    {"wobble", "MMachWobbleCommand"},
};
