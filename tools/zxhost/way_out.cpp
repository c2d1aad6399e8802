#include "way_out.h"

#include <array>
#include <string_view>

namespace zxhost {

std::string way_out_of(const std::string& error) {
    struct Hint {
        std::string_view part, way_out;
    };
    static constexpr std::array<Hint, 10> hints{
        {{"unknown axis", "see the machine's axes with: zxhost axes"},
         {"invalid axis", "see the machine's axes with: zxhost axes"},
         {"no axis specified", "name at least one axis"},
         {"argument out of range", "see how far each axis goes with: zxhost axes"},
         {"invalid argument", "see how far each axis goes with: zxhost axes"},
         {"machine: not initialized", "find the reference marks first with: zxhost init"},
         {"machine is in use", "another client has the machine: wait until it is free"},
         {"wrong state", "another action is running, or another client has the machine: wait for its end"},
         {"probe: no contact", "bring the probe nearer to the workpiece, or correct the nominal form"},
         {"machine: emergency", "release the emergency stop, then run: zxhost init"}}};
    for (const Hint& hint : hints)
        if (error.find(hint.part) != std::string::npos) return std::string(hint.way_out);
    return "";
}

}  // namespace zxhost
