// The driver's ini file: where it is looked for, and what is taken from it.
#include <filesystem>

#include "driver_fixture.h"
#include "environment_variable.h"
#include "errtrace.h"
#include "os/error.h"
#include "temporary_directory.h"

namespace {

class ConfigTest : public DriverTest {
protected:
    ConfigTest() { recording::set_trace_level(3); }

    void write(const std::string& file, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(m_files.path(file)).parent_path());
        m_files.file(file, text);
    }
    void read(const std::string& name) {
        make_driver(name, m_files.path());
        driver->read_app_ini_file();
    }
    void read_text(const std::string& text) {
        write("machine.ini", text);
        read("machine");
    }
    std::string using_line(const std::string& file) {
        return "M2ZendrixMachAbstract::read_app_ini_file(): using configuration in " + m_files.path() + "\\" +
               file;
    }
    void expect_defaults() {
        EXPECT_EQ(driver->m_host, "192.168.2.10");
        EXPECT_EQ(driver->m_port, "7073");
        EXPECT_TRUE(driver->m_cachedAxes.empty());
    }
    Lines cached() {
        Lines names;
        for (std::size_t i = 0; i < driver->m_cachedAxes.size(); ++i)
            names.push_back(driver->m_cachedAxes.name(i));
        return names;
    }

    const TemporaryDirectory m_files;
};

TEST_F(ConfigTest, WithoutAFileTheDefaultsStayInSilence) {
    for (const std::string name : {"m2zendrix", "machine"}) {
        read(name);
        expect_defaults();
        EXPECT_TRUE(trace_texts().empty());
    }
    EXPECT_TRUE(driver->Open());
    EXPECT_EQ(script.calls().front(), "CZendrixCOM(null, null, \"192.168.2.10 7073\", null)");
}

TEST_F(ConfigTest, OpenReadsTheFile) {
    write("machine.ini", "[connection]\nhost=10.0.0.7\nport=99\n[Settings]\ncached_axes=x\n");
    make_driver("machine", m_files.path());
    expect_defaults();
    ASSERT_TRUE(driver->Open());
    EXPECT_EQ(script.calls().front(), "CZendrixCOM(null, null, \"10.0.0.7 99\", null)");
    EXPECT_EQ(script.calls().back(), "Get({x=0 flag -1})");
    EXPECT_EQ(trace_texts(), (Lines{using_line("machine.ini"),
                                    "M2ZendrixMachAbstract::read_app_ini_file(): caching x axis"}));
}

TEST_F(ConfigTest, AFileOfTheConfigurationsNameWins) {
    write("machine.ini", "[connection]\nhost=one\n");
    write("machine/m2zendrix.ini", "[connection]\nhost=two\n");
    read("machine");
    EXPECT_EQ(driver->m_host, "one");
    EXPECT_EQ(trace_texts(), Lines{using_line("machine.ini")});
}

TEST_F(ConfigTest, ElseTheFileInTheDirectoryOfThatName) {
    write("m2zendrix.ini", "[connection]\nhost=wrong\n");
    write("machine/m2zendrix.ini", "[connection]\nhost=two\n");
    read("machine");
    EXPECT_EQ(driver->m_host, "two");
    EXPECT_EQ(trace_texts(), Lines{using_line("machine\\m2zendrix.ini")});
}

TEST_F(ConfigTest, TheDriversOwnNameNeedsNoDirectory) {
    write("m2zendrix/m2zendrix.ini", "[connection]\nhost=wrong\n");
    read("m2zendrix");
    expect_defaults();
    write("m2zendrix.ini", "[connection]\nhost=own\n");
    read("m2zendrix");
    EXPECT_EQ(driver->m_host, "own");
    EXPECT_EQ(trace_texts(), Lines{using_line("m2zendrix.ini")});
}

TEST_F(ConfigTest, TheNameIsComparedWhole) {
    write("m2zendrix.ini", "[connection]\nhost=wrong\n");
    read("m2zendrix2");
    EXPECT_EQ(driver->m_host, "192.168.2.10");
    // Another case is another name, also where it's the same for files.
    std::filesystem::remove(m_files.path("m2zendrix.ini"));
    write("M2zendrix/m2zendrix.ini", "[connection]\nhost=two\n");
    read("M2zendrix");
    EXPECT_EQ(driver->m_host, "two");
}

TEST_F(ConfigTest, AnEmptyFileCountsAsFound) {
    write("machine.ini", "");
    write("machine/m2zendrix.ini", "[connection]\nhost=two\n");
    read("machine");
    expect_defaults();
    EXPECT_EQ(trace_texts(), Lines{using_line("machine.ini")});
}

TEST_F(ConfigTest, AFileThatCannotBeParsedOnTheFirstPathCountsAsMissing) {
    write("machine.ini", "[connection]\nnonsense\n");
    write("machine/m2zendrix.ini", "[connection]\nhost=two\n");
    read("machine");
    EXPECT_EQ(driver->m_host, "two");
    EXPECT_EQ(new_log_lines().back(), "MIniData::MIniData(): Open(\"" +
                                          (m_files.path() + "\\machine.ini").substr(0, 60) + "\") failed");
    EXPECT_EQ(trace_texts(), Lines{using_line("machine\\m2zendrix.ini")});
}

TEST_F(ConfigTest, AFileThatCannotBeParsedOnTheSecondPathCountsAsNone) {
    write("machine/m2zendrix.ini", "[connection]\nhost=two\nnonsense\n");
    read("machine");
    expect_defaults();
    EXPECT_EQ(new_log_lines(), Lines());
    EXPECT_TRUE(trace_texts().empty());
}

TEST_F(ConfigTest, AFileThatCannotBeParsedOnBothPathsCountsAsNone) {
    write("m2zendrix.ini", "[connection]\nhost=two\n[connection]\n");
    read("m2zendrix");
    expect_defaults();
    EXPECT_EQ(new_log_lines().size(), 3U) << "of the first look alone";
    EXPECT_TRUE(trace_texts().empty());
}

TEST_F(ConfigTest, ADirectoryInPlaceOfAFileCountsAsNone) {
    std::filesystem::create_directories(m_files.path("machine/m2zendrix.ini"));
    read("machine");
    expect_defaults();
    EXPECT_TRUE(trace_texts().empty());
}

TEST_F(ConfigTest, WhatWasCollectedBeforeStaysWithItsOwner) {
    MErrTraceContext context("test");
    MERRTRACE_REPORT("test", "before");
    write("machine/m2zendrix.ini", "nonsense\n");
    read("machine");
    context.DumpToMErrLog(__LINE__, "after");
    EXPECT_EQ(new_log_lines(), (Lines{"before", "after"}));
}

TEST_F(ConfigTest, APresentAndEmptyKeyEmptiesItsValue) {
    read_text("[connection]\nhost=\nport= ; the usual one\n[Settings]\ncached_axes=\n");
    EXPECT_EQ(driver->m_host, "");
    EXPECT_EQ(driver->m_port, "");
    EXPECT_TRUE(driver->m_cachedAxes.empty());
}

TEST_F(ConfigTest, AFileOfOtherThingsLeavesTheDefaults) {
    read_text("[window]\nhost=wrong\n[connection]\n; host=wrong\n# port=1\n");
    expect_defaults();
}

TEST_F(ConfigTest, AddressAndPortLoseCommentAndBlanks) {
    read_text("[connection]\nhost = 10.0.0. 7 // the old one\nport=\t7 0 74 ; or 7073\n");
    EXPECT_EQ(driver->m_host, "10.0.0.7");
    EXPECT_EQ(driver->m_port, "7074");
    read_text("[connection]\nhost=a/*b//c\nport=x;y/*z\n");
    EXPECT_EQ(driver->m_host, "a/*b") << "two slashes go first, wherever they stand";
    EXPECT_EQ(driver->m_port, "x;y");
}

TEST_F(ConfigTest, APathKeepsItsBlanksAndHasItsVariablesReplaced) {
    const EnvironmentVariable variable("DRIVER_CONFIG_TEST", "C:\\my machines");
    read_text("[connection]\nhost =\t %DRIVER_CONFIG_TEST%\\the sim.dll  ; ours\n");
    EXPECT_EQ(driver->m_host, "C:\\my machines\\the sim.dll");
    read_text("[connection]\nhost=%DRIVER_CONFIG_TEST%\\the sim.DLL\n");
    EXPECT_EQ(driver->m_host, "%DRIVER_CONFIG_TEST%\\thesim.DLL");
}

TEST_F(ConfigTest, OfAPathOnlyCommentAndBlanksAtItsEndsGo) {
    read_text("[connection]\nhost=  /opt/the machine/sim.dll\t /* ours */ // new\n");
    EXPECT_EQ(driver->m_host, "/opt/the machine/sim.dll\t /* ours */") << "two slashes go first";
    read_text("[connection]\nhost=a\fb.dll\f /* ours\n");
    EXPECT_EQ(driver->m_host, "a\fb.dll\f") << "other white space stays";
    read_text("[connection]\nhost=//server/share/sim.dll\n");
    EXPECT_EQ(driver->m_host, "");
}

TEST_F(ConfigTest, AnUnknownVariableStays) {
    const EnvironmentVariable variable("DRIVER_CONFIG_TEST", nullptr);
    read_text("[connection]\nhost=%DRIVER_CONFIG_TEST%\\100%.dll\n");
    EXPECT_EQ(driver->m_host, "%DRIVER_CONFIG_TEST%\\100%.dll");
}

TEST_F(ConfigTest, VariablesThatCannotBeReplacedStayAndAreReported) {
    write("machine.ini", "[connection]\nhost= %A%\\sim.dll ; ours\nport=99\n");
    make_driver("machine", m_files.path());
    driver->m_expandVariables = [](const char*, char*, std::size_t) { return std::size_t{0}; };
    driver->read_app_ini_file();
    EXPECT_EQ(driver->m_host, "%A%\\sim.dll");
    EXPECT_EQ(driver->m_port, "99") << "the run goes on";
    EXPECT_EQ(
        new_log_lines(),
        (Lines{"MReplaceEnvironmentVars(): ExpandEnvironmentStrings() failed: " +
                   os::error_text(os::last_error()),
               "M2ZendrixMachAbstract::read_app_ini_file(): MReplaceEnvironmentVars(%A%\\sim.dll) failed"}));
}

TEST_F(ConfigTest, AHostThatIsNoPathKeepsItsPercentSigns) {
    const EnvironmentVariable variable("DRIVER_CONFIG_TEST", "wrong");
    read_text("[connection]\nhost=%DRIVER_CONFIG_TEST%\n");
    EXPECT_EQ(driver->m_host, "%DRIVER_CONFIG_TEST%");
}

TEST_F(ConfigTest, TheWholeValueDecidesWhatIsAPath) {
    read_text("[connection]\nhost= 10.0.0. 7 // no .dll\n");
    EXPECT_EQ(driver->m_host, "10.0.0. 7");
}

TEST_F(ConfigTest, SectionsAndKeysAreComparedExactly) {
    read_text("[Connection]\nhost=a\n[settings]\ncached_axes=x\n[connection]\nHost=b\n");
    expect_defaults();
}

TEST_F(ConfigTest, CachedAxesAreCutAtCommas) {
    read_text("[Settings]\ncached_axes= x , y,,hb ,, z y , x // and no more\n");
    EXPECT_EQ(cached(), (Lines{"hb", "x", "y", "zy"}));
    for (const std::string& name : cached()) EXPECT_EQ(driver->GetAxisValue(name.c_str()), 0.0);
    EXPECT_EQ(trace_texts().back(), "M2ZendrixMachAbstract::read_app_ini_file(): caching x axis");
    EXPECT_EQ(trace_texts().size(), 6U);
    EXPECT_TRUE(script.calls().empty());
}

TEST_F(ConfigTest, CachedAxesOfAnEarlierOpenStayWithTheValueZero) {
    answers.values = {{"x", 1.0}, {"y", 2.0}};
    write("machine.ini", "[Settings]\ncached_axes=x,y\n");
    make_driver("machine", m_files.path());
    open();
    driver->Close();
    write("machine.ini", "[Settings]\ncached_axes=y,z\n");
    driver->read_app_ini_file();
    EXPECT_EQ(cached(), (Lines{"x", "y", "z"}));
    EXPECT_EQ(driver->GetAxisValue("x"), 1.0);
    EXPECT_EQ(driver->GetAxisValue("y"), 0.0);
}

}  // namespace
