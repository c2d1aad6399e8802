// The driver's ini file: where it is looked for, and what is taken from it.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "driver_fixture.h"

namespace {

namespace fs = std::filesystem;

class ConfigTest : public DriverTest {
protected:
    ConfigTest() {
        std::string pattern = (fs::temp_directory_path() / "driver_config_XXXXXX").string();
        const char* made = mkdtemp(pattern.data());
        EXPECT_NE(made, nullptr);
        m_directory = made;
        recording::set_trace_level(3);
    }
    ~ConfigTest() override { fs::remove_all(m_directory); }

    void write(const std::string& file, const std::string& text) {
        fs::create_directories((m_directory / file).parent_path());
        std::ofstream(m_directory / file, std::ios::binary) << text;
    }
    void read(const std::string& name) {
        make_driver(name, m_directory.string());
        driver->read_app_ini_file();
    }
    void read_text(const std::string& text) {
        write("machine.ini", text);
        read("machine");
    }
    std::string using_line(const std::string& file) {
        return "M2ZendrixMachAbstract::read_app_ini_file(): using configuration in " + m_directory.string() +
               "\\" + file;
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

    fs::path m_directory;
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
    make_driver("machine", m_directory.string());
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
    read("M2zendrix");
    EXPECT_EQ(driver->m_host, "192.168.2.10");
    read("m2zendrix2");
    EXPECT_EQ(driver->m_host, "192.168.2.10");
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
    EXPECT_FALSE(new_log_lines().empty()) << "the reader has told why";
}

TEST_F(ConfigTest, AFileThatCannotBeParsedOnTheSecondPathCountsAsNone) {
    write("machine/m2zendrix.ini", "[connection]\nhost=two\nnonsense\n");
    read("machine");
    expect_defaults();
    EXPECT_EQ(new_log_lines(), Lines());
    EXPECT_TRUE(trace_texts().empty());
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
    setenv("DRIVER_CONFIG_TEST", "C:\\my machines", 1);
    read_text("[connection]\nhost =\t %DRIVER_CONFIG_TEST%\\the sim.dll  ; ours\n");
    EXPECT_EQ(driver->m_host, "C:\\my machines\\the sim.dll");
    read_text("[connection]\nhost=%DRIVER_CONFIG_TEST%\\the sim.DLL\n");
    EXPECT_EQ(driver->m_host, "%DRIVER_CONFIG_TEST%\\thesim.DLL");
    unsetenv("DRIVER_CONFIG_TEST");
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
    make_driver("machine", m_directory.string());
    open();
    driver->Close();
    write("machine.ini", "[Settings]\ncached_axes=y,z\n");
    driver->read_app_ini_file();
    EXPECT_EQ(cached(), (Lines{"x", "y", "z"}));
    EXPECT_EQ(driver->GetAxisValue("x"), 1.0);
    EXPECT_EQ(driver->GetAxisValue("y"), 0.0);
}

}  // namespace
