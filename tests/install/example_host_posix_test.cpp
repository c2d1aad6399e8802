// The example host, built from the installed files alone and run against the installed machine.
#include <gtest/gtest.h>

#include <filesystem>

#include "zxhost_programs.h"

namespace zxhost_test {
namespace {

using test_support::run_process;

const std::string example = INSTALLED "/share/m2zendrix/examples/host";

void expect_success(const ProcessResult& result) {
    EXPECT_EQ(result.exit_status, 0) << result.out << result.err;
}

class ExampleHostPosix : public testing::Test {
protected:
    // Drives x of the machine that this connection reaches.
    ProcessResult drive(const std::string& program, const std::string& connection,
                        const std::string& position) const {
        m_directory.file("m2zendrix.ini", "[connection]\n" + connection);
        return run_process(program, {m_directory.path(), "m2zendrix", "x", position},
                           {{"ZENDRIX_ERRORLOG", m_directory.path("error.log")},
                            {"ZENDRIX_TRACE", m_directory.path("trace.log")}});
    }
    ProcessResult drive(const std::string& program, const Simulator& machine,
                        const std::string& position) const {
        return drive(program, "host=127.0.0.1\nport=" + machine.port() + "\n", position);
    }

    // Builds the example with CMake and returns the program.
    std::string build() const {
        const std::string build = m_directory.path("build");
        expect_success(
            run_process(CMAKE, {"-S", example, "-B", build, "-DCMAKE_PREFIX_PATH=" INSTALLED,
                                "-DCMAKE_CXX_COMPILER=" CXX, "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror"}));
        expect_success(run_process(CMAKE, {"--build", build}));
        return build + "/host";
    }

    void expect_to_stand_at_40(const ProcessResult& result) const {
        expect_success(result);
        EXPECT_NE(result.out.find("\nx 40\n"), std::string::npos) << result.out;
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(m_directory.content("error.log"), "");
    }

    Directory m_directory;
};

TEST_F(ExampleHostPosix, IsBuiltWithFindPackage) {
    const std::string program = build();
    const Simulator machine({"--speed", "max"}, Edits{});
    expect_to_stand_at_40(drive(program, machine, "40"));
    expect_to_stand_at_40(drive(program, "host=zendrix-sim.dll --speed max\n", "40"));
}

TEST_F(ExampleHostPosix, ShowsWhatTheMachineRefusesAndEndsWithoutOne) {
    const std::string program = build();
    const Simulator machine({"--speed", "max"}, Edits{});
    const ProcessResult refused = drive(program, machine, "400000");
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_NE(refused.out.find("\terror \""), std::string::npos) << refused.out;

    const Simulator lost({"--speed", "max", "--fault", "close@move:1"}, Edits{});
    EXPECT_EQ(drive(program, lost, "40").exit_status, 1);
    EXPECT_EQ(drive(program, "host=127.0.0.1\nport=1\n", "40").exit_status, 1);
}

TEST_F(ExampleHostPosix, IsBuiltWithPkgConfig) {
    const std::string program = m_directory.path("host");
    const std::string command = "'" CXX "' -std=c++20 '" + example + "/host.cpp' -o '" + program +
                                "' -DPLUGIN_FILE=\"\\\"$(pkg-config --variable=plugin m2zendrix)\\\"\" "
                                "$(pkg-config --cflags --libs m2zendrix)";
    expect_success(run_process(SHELL, {"-c", command}, {{"PKG_CONFIG_LIBDIR", INSTALLED "/lib/pkgconfig"}}));
    const Simulator machine({"--speed", "max"}, Edits{});
    expect_to_stand_at_40(drive(program, machine, "40"));
}

TEST_F(ExampleHostPosix, IsRefusedForAnotherMinorRelease) {
    m_directory.file("CMakeLists.txt",
                     "cmake_minimum_required(VERSION 3.25)\nproject(other LANGUAGES CXX)\n"
                     "find_package(m2zendrix 0.2 REQUIRED)\n");
    const ProcessResult result =
        run_process(CMAKE, {"-S", m_directory.path(), "-B", m_directory.path("build"),
                            "-DCMAKE_PREFIX_PATH=" INSTALLED, "-DCMAKE_CXX_COMPILER=" CXX});
    EXPECT_NE(result.exit_status, 0);
    EXPECT_NE(result.err.find("requested version \"0.2\""), std::string::npos) << result.err;
}

}  // namespace
}  // namespace zxhost_test
