// Each call of each operation on files fails, or comes short, in turn. What then is returned, reported and
// left behind stands in expected.txt:
//
//     == operation ==
//     the calls it makes: what it returns, and what is changed, when nothing fails
//     number and name of a call, and its fault: the same
//         reports to the error trace, innermost first
//       log: reports to the error log

#include <array>
#include <cerrno>
#include <fstream>
#include <map>
#include <sstream>

#include "faulty_files.h"
#include "operations.h"
#include "reports.h"

namespace faults {
namespace {

constexpr std::array fault_names{"fails", "moves half", "moves none"};

const std::map<std::string, std::string>& expected() {
    static const std::map<std::string, std::string> sections = [] {
        std::map<std::string, std::string> read;
        std::ifstream in(FAULTS_EXPECTED);
        std::string name;
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with("== ")) {
                name = line.substr(3, line.size() - 6);
            } else if (!line.empty()) {
                read[name] += line + "\n";
            }
        }
        return read;
    }();
    return sections;
}

bool can_come_short(const std::string& call) { return call == "read" || call == "write"; }

class FaultsTest : public ReportsTest, public ::testing::WithParamInterface<Operation> {
protected:
    // What was returned and changed, on one line, and below it what was reported.
    std::string outcome(const Place& place, FaultyFiles& files) {
        const std::string result = GetParam().run(place);
        std::string text = place.plain(result) + place.changes() + "\n";
        for (const std::string& report : trace_reports()) text += "    " + place.plain(report) + "\n";
        for (const std::string& report : log_reports()) text += "  log: " + place.plain(report) + "\n";
        EXPECT_EQ(0, files.open_handles());
        EXPECT_EQ(0, files.stray_calls());
        EXPECT_EQ(0U, recording::open_contexts());
        return text;
    }

    // The calls of a run without faults; its line goes to `transcript`.
    std::vector<std::string> plain_run(std::string& transcript) {
        const Place place;
        FaultyFiles files;
        const std::string text = outcome(place, files);
        for (const std::string& call : files.all_calls()) transcript += call + " ";
        transcript.back() = ':';
        transcript += " " + text;
        return files.all_calls();
    }

    std::string faulty_run(int nth, Fault fault) {
        const Place place;
        FaultyFiles files;
        files.spoil_call(nth, fault, EIO);
        const std::string text = outcome(place, files);
        expect_old_or_new(place);
        EXPECT_FALSE(place.has_leftovers());
        return text;
    }

    void expect_old_or_new(const Place& place) {
        if (!GetParam().replaced) return;
        const std::string now = place.content(GetParam().replaced);
        EXPECT_TRUE(now == m_old || now == GetParam().replacement) << now;
    }

private:
    const std::string m_old = GetParam().replaced ? Place().content(GetParam().replaced) : "";
};

TEST_P(FaultsTest, EndAsTheyMust) {
    std::string transcript;
    const std::vector<std::string> calls = plain_run(transcript);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        for (const Fault fault : {Fault::fails, Fault::moves_half, Fault::moves_none}) {
            if (fault != Fault::fails && !can_come_short(calls[i])) continue;
            const int nth = static_cast<int>(i) + 1;
            const std::string what =
                std::to_string(nth) + " " + calls[i] + " " + fault_names[static_cast<std::size_t>(fault)];
            SCOPED_TRACE(what);
            transcript += what + ": " + faulty_run(nth, fault);
        }
    }
    const auto found = expected().find(GetParam().name);
    EXPECT_EQ(found == expected().end() ? "" : found->second, transcript);
}

TEST_P(FaultsTest, LoseNothingWhenTheDiskIsGoneForGood) {
    bool reached = true;
    for (int nth = 1; reached; ++nth) {
        SCOPED_TRACE(nth);
        const Place place;
        FaultyFiles files;
        files.fail_from(nth, EIO);
        outcome(place, files);
        expect_old_or_new(place);
        reached = static_cast<int>(files.all_calls().size()) >= nth;
    }
}

TEST(FaultsTable, HasASectionForEachOperation) { EXPECT_EQ(expected().size(), operations().size()); }

INSTANTIATE_TEST_SUITE_P(Operations, FaultsTest, ::testing::ValuesIn(operations()),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace faults
