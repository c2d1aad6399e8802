// The small parts of the verbs: numbers and names from the command line, and what is said of unknown ones.
#include <gtest/gtest.h>

#include "exit_status.h"
#include "known_names.h"
#include "number_text.h"
#include "probe_facts.h"
#include "spin_axes.h"
#include "way_out.h"

namespace {

using namespace zxhost;

template <class Call>
HostError error_of(const Call& call) {
    try {
        call();
    } catch (const HostError& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return HostError(ExitStatus::Done, "");
}

TEST(WholeNumber, IsAllOfTheTextWithin32Bits) {
    EXPECT_EQ(whole_number_from("12"), 12);
    EXPECT_EQ(whole_number_from("+12"), 12);
    EXPECT_EQ(whole_number_from("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(whole_number_from("2147483647"), 2147483647);
    for (const char* text : {"", "2.9", "2147483648", "-2147483649", "1e3", "nan", " 1", "1 ", "+-1", "x"})
        EXPECT_EQ(whole_number_from(text), std::nullopt) << text;
}

TEST(SpinAxes, CarryTheirSense) {
    EXPECT_EQ(parse_spin_axes({"c", "sp=-", "k=+"}),
              (std::map<std::string, bool>{{"c", true}, {"sp", false}, {"k", true}}));
}

TEST(SpinAxes, RefuseWhatIsNoSense) {
    for (const char* text : {"", "=-", "c=", "c=1", "c=--"}) {
        const HostError error = error_of([&] { parse_spin_axes({text}); });
        EXPECT_EQ(error.status, ExitStatus::WrongUsage) << text;
        EXPECT_NE(error.way_out.find("AXIS=-"), std::string::npos);
    }
    const HostError twice = error_of([] { parse_spin_axes({"c", "c=-"}); });
    EXPECT_STREQ(twice.what(), "'c=-': this axis is named twice");
}

TEST(KnownNames, TellsWhatTheMachineKnows) {
    const KnownNames known{"probe system", {"a b", "c"}, "probesystems"};
    EXPECT_NO_THROW(check_known(known, {"c", "a b"}));
    const HostError error = error_of([&] { check_known(known, {"c", "d\n"}); });
    EXPECT_EQ(error.status, ExitStatus::MachineError);
    EXPECT_STREQ(error.what(), "no probe system 'd\\x0a' on this machine");
    EXPECT_EQ(error.way_out, "it knows: a b, c; more with: zxhost probesystems");
    EXPECT_EQ(error_of([] {
                  check_known({"probe", {}, "probes"}, {"1"});
              }).way_out,
              "it knows none; more with: zxhost probes");
}

TEST(KnownNames, AreBounded) {
    std::vector<std::string> many;
    for (int i = 0; i < 1000; ++i) many.push_back(std::to_string(i));
    const std::string text = names_text(many);
    EXPECT_TRUE(text.ends_with(", 28, 29 and 970 more")) << text;
}

TEST(ProbeNumbers, TipIsOptional) {
    EXPECT_EQ(parse_tip({"3"}).probe, 3);
    EXPECT_EQ(parse_tip({"3"}).tip, 0);
    EXPECT_EQ(parse_tip({"3", "-2"}).tip, -2);
    EXPECT_EQ(error_of([] { parse_tip({"2.9"}); }).status, ExitStatus::WrongUsage);
    EXPECT_STREQ(error_of([] {
                     parse_tip({"1", "99999999999"});
                 }).what(),
                 "'99999999999' is not the number of a probe or tip");
}

TEST(ProbeNumbers, UnknownOnesNameTheKnown) {
    const std::vector<CProbe> known{{1, 1, 0, 0, 0, 0}, {2, 1, 0, 0, 0, 0}, {2, 4, 0, 0, 0, 0}};
    EXPECT_NO_THROW(check_known_tip(known, {2, 4}));
    EXPECT_NO_THROW(check_known_tip(known, {2, 0}));
    const HostError no_probe = error_of([&] { check_known_tip(known, {7, 1}); });
    EXPECT_STREQ(no_probe.what(), "no probe '7' on this machine");
    EXPECT_EQ(no_probe.way_out, "it knows: 1, 2; more with: zxhost probes");
    const HostError no_tip = error_of([&] { check_known_tip(known, {2, 2}); });
    EXPECT_STREQ(no_tip.what(), "no tip of probe 2 '2' on this machine");
    EXPECT_EQ(no_tip.way_out, "it knows: 1, 4; more with: zxhost probes");
}

TEST(WayOut, TellsProbesFromProbeSystems) {
    EXPECT_NE(way_out_of("undefined probe").find("zxhost probes"), std::string::npos);
    EXPECT_NE(way_out_of("undefined probesystem").find("zxhost probesystems"), std::string::npos);
    EXPECT_NE(way_out_of("probesystem not loaded").find("probesystem load"), std::string::npos);
    EXPECT_NE(way_out_of("probe not loaded").find("probe load"), std::string::npos);
    EXPECT_NE(way_out_of("probe load: wrong state").find("another action"), std::string::npos);
    EXPECT_NE(way_out_of("probesystem define: argument out of range").find("probesystems"),
              std::string::npos);
    EXPECT_NE(way_out_of("probe define: argument out of range").find("zxhost probes"), std::string::npos);
    EXPECT_NE(way_out_of("move: argument out of range").find("zxhost axes"), std::string::npos);
    EXPECT_EQ(way_out_of("something else"), "");
}

}  // namespace
