#include "way_out.h"

#include <string_view>

namespace zxhost {

std::string way_out_of(const std::string& error) {
    struct Hint {
        std::string_view part, way_out;
    };
    // The first that fits counts: a text comes before those that are part of it.
    static constexpr Hint hints[] = {
        {"no axis specified", "name at least one axis"},
        {"machine: not initialized", "find the reference marks first with: zxhost init"},
        {"machine is in use", "another client has the machine: wait until it is free"},
        {"wrong state", "another action is running, or another client has the machine: wait for its end"},
        {"probe: no contact", "bring the probe nearer to the workpiece, or correct the nominal form"},
        {"machine: emergency", "release the emergency stop, then run: zxhost init"},
        {"keypad: enabled", "take the axes back from the keypad with: zxhost keypad disable"},
        {"probesystem not loaded", "load one with: zxhost probesystem load NAME ID"},
        {"probesystem already defined", "forget it first with: zxhost probesystem delete NAME ID"},
        {"undefined probesystem", "see those of the machine with: zxhost probesystems"},
        {"undefined probe", "see those that are defined with: zxhost probes"},
        {"undefined tip", "see those that are defined with: zxhost probes"},
        {"invalid probe number", "see the highest number with: zxhost probes"},
        {"invalid tip number", "see the highest number with: zxhost probes"},
        {"tip already defined", "forget it first with: zxhost probe delete PROBE TIP"},
        {"can't delete active probe", "put it down first with: zxhost probe unload"},
        {"probe already loaded", "see which one with: zxhost probes"},
        {"probe already unloaded", "see which one is loaded with: zxhost probes"},
        {"probe not loaded", "take one up with: zxhost probe load PROBE"},
        {"no probe changer",
         "put down the probe and take up the other: zxhost probe unload, zxhost probe load"},
        {"no axis to raster", "name at least one of x, y, z, c, kx, ky, tx, ty, tz"},
        {"wrong combination of raster axes",
         "x, y and c, the pair kx and ky, and the pair tx and ty exclude each other, as do z and tz"},
        {"scanbase axis is inactive", "see which axes are active with: zxhost axes"},
        {"invalid scanbase axes combination",
         "a scan base takes one axis, or several active ones of x, y, z and c"},
        {"probe offset: invalid axis", "a tip has x, y and z"},
        {"probesystem", "see those of the machine with: zxhost probesystems"},
        {"probe define: ", "see how others are defined with: zxhost probes"},
        {"unknown axis", "see the machine's axes with: zxhost axes"},
        {"invalid axis", "see the machine's axes with: zxhost axes"},
        {"receive: invalid argument", "see the machine's blocks with: zxhost blocks"},
        {"send: invalid argument", "name another block: the machine keeps this name for itself"},
        {"send: argument out of range", "its name or its bytes are more than the machine takes"},
        {"receive: argument out of range", "see the machine's blocks with: zxhost blocks"},
        {"send: buffer overrun", "the machine has no room left; see its blocks with: zxhost blocks"},
        {"no data received",
         "is the directory there, and may this user read all of it? Is there room for temporary files?"},
        {"argument out of range", "see how far each axis goes with: zxhost axes"},
        {"invalid argument", "see how far each axis goes with: zxhost axes"},
    };
    for (const Hint& hint : hints)
        if (error.find(hint.part) != std::string::npos) return std::string(hint.way_out);
    return "";
}

}  // namespace zxhost
