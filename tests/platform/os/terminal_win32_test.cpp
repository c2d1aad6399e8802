#include <gtest/gtest.h>
#include <windows.h>

#include <future>
#include <string>

#include "os/terminal.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

// Standard input is a pipe that the test fills.
class TerminalWin32 : public testing::Test {
protected:
    TerminalWin32() {
        EXPECT_TRUE(::CreatePipe(&m_input, &m_writer, nullptr, 0));
        ::SetStdHandle(STD_INPUT_HANDLE, m_input);
    }
    ~TerminalWin32() override {
        ::SetStdHandle(STD_INPUT_HANDLE, m_before);
        ::CloseHandle(m_input);
        if (m_writer) ::CloseHandle(m_writer);
    }

    void write(const std::string& text) {
        DWORD count = 0;
        EXPECT_TRUE(::WriteFile(m_writer, text.data(), static_cast<DWORD>(text.size()), &count, nullptr));
    }
    void end() {
        ::CloseHandle(m_writer);
        m_writer = nullptr;
    }
    std::string read() {
        char bytes[16];
        const std::ptrdiff_t count = os::read_input(bytes, sizeof bytes);
        return count < 0 ? "failed" : std::string(bytes, static_cast<std::size_t>(count));
    }

private:
    HANDLE m_before = ::GetStdHandle(STD_INPUT_HANDLE);
    HANDLE m_input = nullptr;
    HANDLE m_writer = nullptr;
};

TEST_F(TerminalWin32, APipeIsNoTerminal) { EXPECT_FALSE(os::input_is_terminal()); }

TEST_F(TerminalWin32, WaitingForAPipeIsBounded) {
    EXPECT_FALSE(os::wait_for_input(milliseconds(0)));
    EXPECT_FALSE(os::wait_for_input(milliseconds(20)));
}

TEST_F(TerminalWin32, ReadsWhatIsThere) {
    write("on\r\n\x1A");
    EXPECT_TRUE(os::wait_for_input(milliseconds(0)));
    EXPECT_EQ("on\r\n\x1A", read());
    EXPECT_FALSE(os::wait_for_input(milliseconds(0)));
}

TEST_F(TerminalWin32, AWaitEndsWhenSomethingComes) {
    auto wait = std::async(std::launch::async, [] { return os::wait_for_input(seconds(60)); });
    write("x");
    EXPECT_TRUE(wait.get());
}

TEST_F(TerminalWin32, TheEndIsSomethingToRead) {
    write("x");
    end();
    EXPECT_TRUE(os::wait_for_input(milliseconds(0)));
    EXPECT_EQ("x", read());
    EXPECT_TRUE(os::wait_for_input(milliseconds(0)));
    EXPECT_EQ("", read());
}

TEST_F(TerminalWin32, WithoutAnInputReadingFails) {
    ::SetStdHandle(STD_INPUT_HANDLE, nullptr);
    EXPECT_TRUE(os::wait_for_input(milliseconds(0)));
    EXPECT_EQ("failed", read());
}

}  // namespace
