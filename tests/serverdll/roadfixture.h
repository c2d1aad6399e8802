// Why a connection string leads nowhere.
#pragma once

#include <algorithm>

#include "clientfixture.h"

namespace test {

class Road : public ClientFixture {
protected:
    std::string why_not(const std::string& server_string) {
        return thrown([&] { CZendrixCOM(nullptr, nullptr, server_string.c_str(), nullptr); });
    }

    // The cause alone; the text names the whole connection string before it.
    std::string cause(const std::string& server_string) {
        const std::string text = why_not(server_string);
        const std::string begin = "can't connect to \"" + server_string + "\": ";
        EXPECT_EQ(text.substr(0, begin.size()), begin);
        return text.substr(std::min(begin.size(), text.size()));
    }
};

}  // namespace test
