// The dialogue of docs/protocol.md, played to the letter.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "lineclient.h"
#include "machine/clock.h"
#include "machine/descriptionreader.h"
#include "net/server.h"

namespace zendrix::sim {
namespace {

std::string with_tab(std::string line) {
    const std::string mark = "<tab>";
    const std::size_t place = line.find(mark);
    return place == std::string::npos ? line : line.replace(place, mark.size(), "\t");
}

TEST(ProtocolPage, ItsDialogueIsWhatTheMachineSays) {
    std::ifstream page(PROTOCOL_PAGE);
    ASSERT_TRUE(page);
    Server server(builtin_machine(), {}, std::make_unique<LeapingClock>());
    LineClient client(server.start());
    int said = 0;
    int heard = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.find("<tab>") != 6) continue;
        const std::string text = with_tab(line.substr(2));
        if (line.front() == 'C') {
            client.say(text);
            ++said;
        } else {
            EXPECT_EQ(client.line(), text);
            ++heard;
        }
    }
    EXPECT_EQ(said, 10);
    EXPECT_EQ(heard, 33);
}

}  // namespace
}  // namespace zendrix::sim
