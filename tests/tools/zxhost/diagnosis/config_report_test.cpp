// What is told of a configuration: held against what the driver does in
// tests/zx_proxy/2zendrix/config_test.cpp.
#include "config_report.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "environment_variable.h"
#include "recording_facilities.h"
#include "temporary_directory.h"

namespace zxhost {
namespace {

class ConfigReportTest : public testing::Test {
protected:
    ConfigReportTest() { recording::reset(); }
    ~ConfigReportTest() override {
        EXPECT_TRUE(recording::error_log().empty()) << "the report itself tells what is wrong";
        EXPECT_EQ(recording::open_contexts(), 0U);
    }

    ConfigReport read(const std::string& text) {
        files.file("m2zendrix.ini", text);
        return read_config(files.path(), "m2zendrix");
    }
    // As the system writes it, which is how the report does.
    std::string path(const std::string& name) const {
        return std::filesystem::path(files.path(name)).make_preferred().string();
    }
    // The findings without the file's name: "3: text".
    std::vector<std::string> found(const ConfigReport& report) {
        std::vector<std::string> texts;
        for (const Finding& finding : report.findings) {
            EXPECT_EQ(finding.file, path("m2zendrix.ini"));
            texts.push_back(std::to_string(finding.line) + ": " + finding.text);
        }
        return texts;
    }
    std::vector<std::string> found_in(const std::string& text) { return found(read(text)); }

    TemporaryDirectory files;
};

using Texts = std::vector<std::string>;

TEST_F(ConfigReportTest, WithoutAFileTheDefaultsAreInForce) {
    const ConfigReport report = read_config(files.path(), "lab");
    ASSERT_EQ(report.looked_at.size(), 2U);
    EXPECT_EQ(report.looked_at[0].file, path("lab.ini"));
    EXPECT_EQ(report.looked_at[0].state, "missing");
    EXPECT_EQ(report.looked_at[1].file, path("lab/m2zendrix.ini"));
    EXPECT_EQ(report.looked_at[1].state, "missing");
    EXPECT_EQ(report.taken, "");
    ASSERT_EQ(report.values.size(), 3U);
    EXPECT_EQ(report.host(), "192.168.2.10");
    EXPECT_EQ(report.port(), "7073");
    EXPECT_EQ(report.values[2].value, "");
    for (const ConfigValue& value : report.values) EXPECT_EQ(value.file, "");
    EXPECT_TRUE(report.findings.empty());
}

TEST_F(ConfigReportTest, EachValueSaysWhereItStandsAndWhatItLost) {
    const ConfigReport report = read(
        "# ours\n\n[Settings]\n\n cached_axes = x, y ,,z ; kept here\n"
        "[connection] ; to the machine\r\n\r\nport=99\nhost =\t10.0.0.7 // was .8\n");
    EXPECT_EQ(report.taken, path("m2zendrix.ini"));
    EXPECT_EQ(report.values[0].value, "10.0.0.7");
    EXPECT_EQ(report.values[0].line, 9U);
    EXPECT_EQ(report.values[0].written, "\t10.0.0.7 // was .8");
    EXPECT_EQ(report.values[0].lost, "// was .8");
    EXPECT_EQ(report.values[0].file, report.taken);
    EXPECT_EQ(report.values[1].value, "99");
    EXPECT_EQ(report.values[1].line, 8U);
    EXPECT_EQ(report.values[1].lost, "");
    EXPECT_EQ(report.values[2].value, "x,y,z");
    EXPECT_EQ(report.values[2].line, 5U);
    EXPECT_EQ(report.values[2].lost, "; kept here");
    EXPECT_EQ(found(report), Texts());
}

TEST_F(ConfigReportTest, LinesAreCountedAsInAnEditor) {
    EXPECT_EQ(read("\xEF\xBB\xBF[connection]\rport=1\r\n\r\n\nhost=a\n").values[0].line, 5U);
    EXPECT_EQ(read("\xEF\xBB\xBF\n[connection]\nhost=a").values[0].line, 3U);
    EXPECT_EQ(read(std::string("[connection]\n\0[x]\nhost=a", 24)).values[0].line, 3U);
    EXPECT_EQ(read("[b]\nhost=x\n[connection]\n# host=\nhost=x\n[a]\nhost=x\n").values[0].line, 5U);
}

TEST_F(ConfigReportTest, TheFirstPlaceWinsAndTheOtherIsTold) {
    files.file("lab.ini", "[connection]\nhost=one\n");
    std::filesystem::create_directory(path("lab"));
    ConfigReport report = read_config(files.path(), "lab");
    EXPECT_EQ(report.looked_at[1].state, "not looked at");
    EXPECT_TRUE(report.findings.empty());
    files.file("lab/m2zendrix.ini", "[connection]\nhost=two\n");
    report = read_config(files.path(), "lab");
    EXPECT_EQ(report.host(), "one");
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_EQ(report.findings[0].file, path("lab/m2zendrix.ini"));
    EXPECT_EQ(report.findings[0].text, "is there and isn't looked at: " + path("lab.ini") + " is taken");
    std::filesystem::remove(path("lab.ini"));
    report = read_config(files.path(), "lab");
    EXPECT_EQ(report.host(), "two");
    EXPECT_EQ(report.looked_at[0].state, "missing");
    EXPECT_EQ(report.looked_at[1].state, "taken");
}

TEST_F(ConfigReportTest, TheDriversOwnNameHasOnePlace) {
    EXPECT_EQ(read("").looked_at.size(), 1U);
    EXPECT_EQ(read("").looked_at[0].state, "taken");
    std::filesystem::remove(path("m2zendrix.ini"));
    const ConfigReport report = read_config(files.path(), "m2zendrix");
    EXPECT_EQ(report.looked_at.size(), 2U) << "the driver looks twice";
    EXPECT_EQ(report.looked_at[0].file, report.looked_at[1].file);
}

TEST_F(ConfigReportTest, AFileThatStopsInTheMiddleSaysWhere) {
    const auto stopped = [](const std::string& text) { return text + ": the whole file counts as missing"; };
    EXPECT_EQ(found_in("[connection]\n\nhost=a\nnonsense\nport=1\n"),
              Texts{stopped("4: No '=' found in \"nonsense\" in section [connection]")});
    EXPECT_EQ(found_in("[connection]\nhost=a\n\nport=2\n host =b\n"),
              Texts{stopped("5: Entry \"host\" seen twice in section [connection], first in line 2")});
    EXPECT_EQ(found_in("[connection]\nhost=a\n[z]\nx=1\n[a]\ny=1\nx=2\ny=2\n"),
              Texts{stopped("8: Entry \"y\" seen twice in section [a], first in line 6")});
    EXPECT_EQ(found_in("[a]\n[connection]\n[a] again\n"),
              Texts{stopped("3: Section [a] seen twice, first in line 1")});
    EXPECT_EQ(found_in(" [connection]\nhost=a\n"),
              Texts{stopped("1: Possible entry \" [connection]\" found before first section")});
    EXPECT_EQ(found_in("[x]\n[connection\nhost=a\n"),
              Texts{stopped("2: no matching ']' found in \"[connection\"")});
    EXPECT_EQ(found_in("\xFF\xFE[\0"), Texts{stopped("1: UTF16/32 Unicode format not supported.")});
    EXPECT_EQ(read("x").looked_at[0].state, "can't be read");
    EXPECT_EQ(read("x").host(), "192.168.2.10");
}

TEST_F(ConfigReportTest, AFileThatCannotBeReadIsTold) {
    std::filesystem::create_directory(path("m2zendrix.ini"));
    const ConfigReport report = read_config(files.path(), "m2zendrix");
    EXPECT_EQ(found(report),
              Texts{"0: can't be read, so it counts as missing: is it a file, and may this user read it?"});
}

TEST_F(ConfigReportTest, AnUnreadableFirstPlaceLeavesItToTheSecond) {
    files.file("lab.ini", "host=a\n");
    std::filesystem::create_directory(path("lab"));
    files.file("lab/m2zendrix.ini", "[connection]\nhost=two\n");
    const ConfigReport report = read_config(files.path(), "lab");
    EXPECT_EQ(report.host(), "two");
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_EQ(report.findings[0].file, path("lab.ini"));
}

TEST_F(ConfigReportTest, NearMissesAreNamed) {
    const auto stray = [](const std::string& what, const std::string& meant, const std::string& why) {
        return what + " isn't read by the driver: did you mean " + meant + "? " + why;
    };
    EXPECT_EQ(found_in("[Connection]\nhost=a\n"),
              Texts{stray("2: [Connection] host", "[connection] host", "capitals count")});
    EXPECT_EQ(found_in("[connection]\nHost=a\nprot=1\n"),
              (Texts{stray("2: [connection] Host", "[connection] host", "capitals count"),
                     stray("3: [connection] prot", "[connection] port", "the spelling counts")}));
    EXPECT_EQ(found_in("[ connection ]\nport=a\n"),
              Texts{stray("2: [ connection ] port", "[connection] port", "blanks and dashes count")});
    EXPECT_EQ(found_in("[settings]\ncached axes=x\n"),
              Texts{stray("2: [settings] cached axes", "[Settings] cached_axes", "blanks and dashes count")});
    EXPECT_EQ(found_in("[Settings]\nhost=a\n[connection]\ncached_axes=x\n"),
              (Texts{stray("2: [Settings] host", "[connection] host", "it counts in [connection] alone"),
                     stray("4: [connection] cached_axes", "[Settings] cached_axes",
                           "it counts in [Settings] alone")}));
    EXPECT_EQ(found_in("[conection]\n"),
              Texts{stray("1: [conection]", "[connection]", "the spelling counts")});
}

TEST_F(ConfigReportTest, ANameOfOursInASectionOfSomebodyElseMissesNothingIfOursIsThere) {
    EXPECT_EQ(read("[database]\nhost=a\n").findings[0].kind, FindingKind::near_miss);
    EXPECT_EQ(read("[database]\nhost=a\n[connection]\nhost=b\n").findings[0].kind, FindingKind::unknown);
    EXPECT_EQ(read("[Connection]\nhost=a\n[connection]\nhost=b\n").findings[0].kind, FindingKind::near_miss);
    EXPECT_EQ(read("[window]\ntitle=a\n").findings[0].kind, FindingKind::unknown);
    EXPECT_EQ(read("x").findings[0].kind, FindingKind::unreadable);
    EXPECT_EQ(read("[connection]\nhost=\n").findings[0].kind, FindingKind::value);
}

TEST_F(ConfigReportTest, WhatTheDriverDoesNotKnowIsTold) {
    EXPECT_EQ(found_in("[window]\ntitle=a\n[connection]\ntimeout=1\n"),
              (Texts{"2: [window] title isn't read by the driver",
                     "4: [connection] timeout isn't read by the driver"}));
    EXPECT_EQ(found_in("[window]\n# nothing\n"), Texts())
        << "an empty section of something else harms nobody";
}

TEST_F(ConfigReportTest, OfManyStraysTheFirstAreTold) {
    std::string text;
    for (int i = 0; i < 1000; ++i) text += "[s" + std::to_string(i) + "]\nx=1\n";
    const ConfigReport report = read(text);
    EXPECT_EQ(report.findings.size(), 101U);
    EXPECT_EQ(report.findings[0].text, "900 more aren't read by the driver");
}

TEST_F(ConfigReportTest, ValuesThatMeanSomethingElseAreTold) {
    EXPECT_EQ(
        found_in("[connection]\nhost=10.0.0. 7 // was .dll\n"),
        Texts{"2: host: \".dll\" in its comment has it read as the path of a library: blanks inside stay"});
    EXPECT_EQ(found_in("[connection]\nhost=my machine\n"),
              Texts{"2: host: \"my machine\" is read without its blanks: \"mymachine\""});
    EXPECT_EQ(found_in("[connection]\nhost=\n"), Texts{"2: host: the host is empty"});
    EXPECT_EQ(found_in("[connection]\nhost=//server/sim.dll\n")[1],
              "2: host: two slashes begin a comment, so nothing is left of the host");
    EXPECT_EQ(found_in("[connection]\nhost=myCOMputer\n"),
              Texts{"2: host: \"COM\" in it makes it a serial line, and the port doesn't count"});
    EXPECT_EQ(found_in("[connection]\nport=7o73\n"),
              Texts{"2: port: \"7o73\" is no port: give a number from 1 to 65535"});
    EXPECT_EQ(found_in("[connection]\nport=65536\n").size(), 1U);
    EXPECT_EQ(found_in("[connection]\nhost=sim.dll\nport=1\n"),
              Texts{"3: port: the host is a library, so the port doesn't count"});
    EXPECT_EQ(found_in("[Settings]\ncached_axes= , ; x\n"), Texts{"2: cached_axes: it names no axis"});
    EXPECT_EQ(found_in("[Settings]\ncached_axes=x,y,x\n"),
              Texts{"2: cached_axes: it names x more than once"});
}

TEST_F(ConfigReportTest, VariablesOfALibrarysPathAreReplaced) {
    set_variable("CONFIG_REPORT_TEST", "/opt/my machines");
    ConfigReport report = read("[connection]\nhost= %CONFIG_REPORT_TEST%/the sim.dll ; ours\n");
    EXPECT_EQ(report.host(), "/opt/my machines/the sim.dll");
    EXPECT_EQ(report.values[0].lost, "; ours");
    EXPECT_EQ(found(report), Texts());
    remove_variable("CONFIG_REPORT_TEST");
    report = read("[connection]\nhost= %CONFIG_REPORT_TEST%/the sim.dll ; ours\n");
    EXPECT_EQ(report.host(), "%CONFIG_REPORT_TEST%/the sim.dll");
    EXPECT_EQ(found(report),
              Texts{"2: host: there is no variable CONFIG_REPORT_TEST, so it stays as it stands"});
}

}  // namespace
}  // namespace zxhost
