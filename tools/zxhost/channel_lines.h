// The lines that the machine wrote to a channel, taken apart.
#pragma once

#include <string>
#include <vector>

class MOutputChannel;

namespace zxhost {

struct ChannelLine {
    std::string id;       // transaction id as written, "0000" for events
    std::string keyword;  // error, warning, event or data
    std::string text;     // what it says, without quotes
    std::string whole;    // the line as it stands, without its end
};

// Takes all that the channel holds, held-back events included, and clears its error mark. A text that
// brought line ends of its own stays one line.
std::vector<ChannelLine> take_lines(MOutputChannel& channel);

}  // namespace zxhost
