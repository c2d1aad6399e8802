// Where a magazine file is wrong.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

class MMachAbstract;

namespace zxhost {

struct MagazineFinding {
    std::size_t line = 0;  // from 1; 0: no line in particular
    std::string text;
};

struct MagazineVerdict {
    std::size_t slots = 0;                 // before the first fault
    std::optional<MagazineFinding> fault;  // the first in the file: the database refuses all of it
    // What the database takes now, and wouldn't take any more after a change: slots whose sections it would
    // name in another way.
    std::vector<MagazineFinding> remarks;
};

// The machine says which probe systems there are; what it throws passes through. Throws HostError (wrong
// usage) if the file is missing or can't be read.
MagazineVerdict check_magazine(const std::string& file, MMachAbstract& machine);

}  // namespace zxhost
