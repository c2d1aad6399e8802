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

// The machine that says this hello.
MachineDescription machine_of(const std::string& hello) {
    const bool is_rich = hello.find("\"Rich 12\"") != std::string::npos;
    return is_rich ? read_machine(MACHINES_DIR "/rich.ini") : builtin_machine();
}

TEST(ProtocolPage, ItsDialogueIsWhatTheMachineSays) {
    std::ifstream page(PROTOCOL_PAGE);
    ASSERT_TRUE(page);
    std::unique_ptr<Server> server;
    std::unique_ptr<LineClient> client;
    int said = 0;
    int heard = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.find("<tab>") != 6) continue;
        const std::string text = with_tab(line.substr(2));
        if (text.find("\thello ") != std::string::npos) {  // another dialogue begins
            client.reset();
            server =
                std::make_unique<Server>(machine_of(text), ServerOptions(), std::make_unique<LeapingClock>());
            client = std::make_unique<LineClient>(server->start());
        }
        ASSERT_TRUE(client);
        if (line.front() == 'C') {
            client->say(text);
            ++said;
        } else {
            EXPECT_EQ(client->line(), text);
            ++heard;
        }
    }
    EXPECT_EQ(said, 31);
    EXPECT_EQ(heard, 82);
}

}  // namespace
}  // namespace zendrix::sim
