// Scan files written and read back, whole, cut, damaged and hostile.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "../../msl/faulty_files.h"
#include "exit_status.h"
#include "os/error.h"
#include "scan_footer.h"
#include "scan_reader.h"
#include "scan_writer.h"
#include "temporary_directory.h"

namespace {

using namespace zxhost;
using Point = std::vector<double>;

const ScanHeader some_header{
    "Round 4", "probe 1, tip 2", "2026-01-31T12:00:00Z", "scan\ncircle", {"x", "c", "time", "a,\"b\""}, {}};

class ScanFile : public ::testing::Test {
protected:
    // A whole file of three points.
    std::string whole() {
        ScanWriter writer(m_file, some_header);
        writer.add({1.5, -0.1, 1e-7, 3});
        writer.add({2.5, 0.25, 0.1, 3});
        writer.add({3.5, 1e300, 0.2, -4});
        writer.finish();
        return m_directory.content("scan.csv");
    }

    ScanVerdict verdict(const std::string& content) {
        return verify_scan(m_directory.file("other.csv", content));
    }

    // State and place, and that the reason says this.
    void expect(const std::string& content, ScanState state, std::uint64_t line, std::uint64_t points,
                const std::string& why) {
        const ScanVerdict is = verdict(content);
        EXPECT_STREQ(word_of(is.state), word_of(state)) << content.substr(0, 500);
        EXPECT_EQ(is.line, line) << is.why;
        EXPECT_EQ(is.points, points) << is.why;
        EXPECT_NE(is.why.find(why), std::string::npos) << is.why;
        EXPECT_EQ(is.byte, start_of_line(content, line));
    }

    static std::uint64_t start_of_line(const std::string& content, std::uint64_t line) {
        std::size_t at = 0;
        for (std::uint64_t i = 1; i < line; ++i) at = content.find('\n', at) + 1;
        return at;
    }

    static std::string replaced(std::string text, const std::string& from, const std::string& to) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    }

    TemporaryDirectory m_directory;
    const std::string m_file = m_directory.path("scan.csv");
};

const std::string head =
    "# scan file: 1\n"
    "# machine: Round 4\n"
    "# probe: probe 1, tip 2\n"
    "# time: 2026-01-31T12:00:00Z\n"
    "# action: scan\\x0acircle\n"
    "x [mm],c [deg],time [s],\"a,\"\"b\"\" [mm]\"\n";
const std::string points = "1.5,-0.1,1e-07,3\n2.5,0.25,0.1,3\n3.5,1e+300,0.2,-4\n";

// The checksum is the one that python3 -c 'import zlib; print(hex(zlib.crc32(...)))' gives.
TEST_F(ScanFile, IsWrittenToTheByte) {
    EXPECT_EQ(whole(), head + points + "# end: whole, 3 points, crc32 bbd66f3e\n");
}

TEST_F(ScanFile, ChecksumIsThatOfZlib) {
    EXPECT_EQ(crc_of("123456789", 0), 0xcbf43926u);  // the check value that every catalogue of CRCs gives
    EXPECT_EQ(crc_of("6789", crc_of("12345", 0)), 0xcbf43926u);
}

TEST_F(ScanFile, IsReadBackAsItWas) {
    whole();
    ScanReader reader(m_file);
    EXPECT_EQ(reader.header().machine, "Round 4");
    EXPECT_EQ(reader.header().probe, "probe 1, tip 2");
    EXPECT_EQ(reader.header().time, "2026-01-31T12:00:00Z");
    EXPECT_EQ(reader.header().action, "scan\\x0acircle");
    EXPECT_EQ(reader.header().columns, some_header.columns);
    EXPECT_EQ(reader.header().units, (std::vector<std::string>{"mm", "deg", "s", "mm"}));
    EXPECT_EQ(column_of(reader.header(), "time"), 2u);
    EXPECT_FALSE(column_of(reader.header(), "y"));
    Point point;
    std::vector<Point> all;
    while (reader.next(point)) all.push_back(point);
    EXPECT_EQ(all, (std::vector<Point>{{1.5, -0.1, 1e-7, 3}, {2.5, 0.25, 0.1, 3}, {3.5, 1e300, 0.2, -4}}));
    EXPECT_FALSE(reader.next(point));
    EXPECT_EQ(reader.verdict().state, ScanState::Whole);
    EXPECT_EQ(reader.verdict().line, 10u);
    EXPECT_EQ(reader.verdict().byte, head.size() + points.size());
    EXPECT_EQ(reader.verdict().why, "");
}

TEST_F(ScanFile, KeepsEveryNumberExactly) {
    std::mt19937_64 random(7);
    std::vector<Point> written;
    {
        ScanWriter writer(m_file, {"", "", "", "", {"x", "y"}, {}});
        for (int i = 0; i < 2000; ++i) {
            const auto number = [&] {
                const std::uint64_t bits = random();
                double value = 0.0;
                static_assert(sizeof bits == sizeof value);
                std::memcpy(&value, &bits, sizeof value);
                return std::isnan(value) ? -0.0 : value;
            };
            written.push_back({number(), number()});
            writer.add(written.back());
        }
        writer.add({std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()});
        writer.finish();
    }
    ScanReader reader(m_file);
    Point point;
    for (const Point& one : written) {
        ASSERT_TRUE(reader.next(point));
        EXPECT_EQ(point, one);
    }
    ASSERT_TRUE(reader.next(point));
    EXPECT_TRUE(std::isnan(point[0]) && std::isinf(point[1]));
    EXPECT_FALSE(reader.next(point));
    EXPECT_EQ(reader.verdict().state, ScanState::Whole);
}

TEST_F(ScanFile, HoldsWholeLinesAfterEachFlushAndWritesOnceABatch) {
    FaultyFiles files;
    ScanWriter writer(m_file, some_header);
    const int before = files.calls("write");
    for (int i = 0; i < 100; ++i) writer.add({1, 2, 3, 4});
    EXPECT_EQ(m_directory.content("scan.csv"), head);
    writer.flush();
    EXPECT_EQ(files.calls("write"), before + 1);
    writer.flush();
    EXPECT_EQ(files.calls("write"), before + 1);
    expect(m_directory.content("scan.csv"), ScanState::Cut, 107, 100, "ends without a footer");
}

TEST_F(ScanFile, NeverEndsWithinALineHoweverMuchIsAddedBetweenFlushes) {
    ScanWriter writer(m_file, {"", "", "", "", {"x"}, {}});
    for (int i = 0; i < 400000; ++i) {
        writer.add({0.123456});
        if (i % 50000 == 0) {
            EXPECT_EQ(m_directory.content("scan.csv").back(), '\n');
        }
    }
    EXPECT_GT(m_directory.content("scan.csv").size(), 1000000u);
}

TEST_F(ScanFile, WritesOnWhenTheSystemTakesLittleAtATime) {
    FaultyFiles files;
    files.shorten(7);
    const std::string content = whole();
    files.shorten(1 << 20);
    expect(content, ScanState::Whole, 10, 3, "");
}

TEST_F(ScanFile, AFullDiskIsToldAtOnceAndOnce) {
    FaultyFiles files;
    ScanWriter writer(m_file, some_header);
    writer.add({1, 2, 3, 4});
    writer.flush();
    files.fail("write", 1, ENOSPC);
    writer.add({1, 2, 3, 4});
    try {
        writer.flush();
        FAIL();
    } catch (const HostError& error) {
        EXPECT_EQ(error.status, ExitStatus::WrongUsage);
        EXPECT_NE(std::string(error.what()).find("scan.csv failed: " + os::error_text(ENOSPC)),
                  std::string::npos)
            << error.what();
    }
    writer.add({1, 2, 3, 4});
    writer.flush();
    writer.cut("disk full");
    EXPECT_EQ(files.open_handles(), 0);
    expect(m_directory.content("scan.csv"), ScanState::Cut, 8, 1, "ends without a footer");
}

TEST_F(ScanFile, FailuresAtItsEndAreTold) {
    for (const char* operation : {"flush", "close"}) {
        FaultyFiles files;
        ScanWriter writer(m_file, some_header);
        files.fail(operation, 1, EIO);
        EXPECT_THROW(writer.finish(), HostError) << operation;
        EXPECT_EQ(files.open_handles(), 0) << operation;
    }
    FaultyFiles files;
    files.fail("open", 1, EACCES);
    EXPECT_THROW(ScanWriter(m_file, some_header), HostError);
}

TEST_F(ScanFile, ACutScanSaysWhy) {
    {
        ScanWriter writer(m_file, some_header);
        writer.add({1, 2, 3, 4});
        writer.cut("scancircle: aborted\nby hand");
    }
    const std::string content = m_directory.content("scan.csv");
    EXPECT_NE(content.find("\n# end: cut, 1 points, crc32 "), std::string::npos) << content;
    expect(content, ScanState::Cut, 8, 1, "scancircle: aborted\\x0aby hand");
}

TEST_F(ScanFile, APointWithOtherNumbersMakesTheScanCut) {
    ScanWriter writer(m_file, some_header);
    writer.add({1, 2, 3, 4});
    writer.add({1, 2, 3});
    writer.add({});
    EXPECT_THROW(writer.finish(), HostError);
    const std::string content = m_directory.content("scan.csv");
    EXPECT_NE(content.find("# end: cut, 3 points"), std::string::npos) << content;
    EXPECT_NE(content.find("point 2 has 3 numbers in place of 4"), std::string::npos) << content;
    expect(content, ScanState::Damaged, 8, 1, "3 numbers in place of 4");
}

// Cut at every byte there is: never whole, never damaged, and all whole points before the place count.
TEST_F(ScanFile, CutAnywhereItIsCutThere) {
    const std::string content = whole();
    for (std::size_t size = 0; size < content.size(); ++size) {
        const std::string part = content.substr(0, size);
        const ScanVerdict is = verdict(part);
        EXPECT_EQ(is.state, ScanState::Cut) << part << "\n" << is.why;
        const std::size_t last = part.rfind('\n');
        EXPECT_EQ(is.byte, last == std::string::npos ? 0 : last + 1) << part;
        const auto lines = static_cast<std::uint64_t>(std::count(part.begin(), part.end(), '\n'));
        EXPECT_EQ(is.line, lines + 1) << part;
        EXPECT_EQ(is.points, lines > 6 ? lines - 6 : 0) << part;
    }
}

TEST_F(ScanFile, OneChangedByteAnywhereIsNoticed) {
    const std::string content = whole();
    for (std::size_t at = 0; at < content.size(); ++at)
        for (const char other : {'\n', '7'}) {
            if (content[at] == other) continue;
            std::string changed = content;
            changed[at] = other;
            EXPECT_NE(verdict(changed).state, ScanState::Whole) << changed;
        }
}

TEST_F(ScanFile, DamageIsToldWithItsPlace) {
    const std::string good = whole();
    using enum ScanState;
    expect(replaced(good, "2.5,0.25", "2.5,0,25"), Damaged, 8, 1, "5 numbers in place of 4");
    expect(replaced(good, "2.5,0.25", "2.5,q"), Damaged, 8, 1,
           "number 2 of the point is none: '2.5,q,0.1,3'");
    expect(replaced(good, "2.5,0.25", "2.5,,0.25"), Damaged, 8, 1, "number 2");
    expect(replaced(good, "2.5,0.25", "2.5,1e999"), Damaged, 8, 1, "number 2");
    expect(replaced(good, "2.5,0.25", "2.5, 0.25"), Damaged, 8, 1, "number 2");
    expect(replaced(good, "0.1,3\n", "0.1,3\r\n"), Damaged, 8, 1, "number 4");
    expect(replaced(good, "0.1,3\n", "0.1,3\n\n"), Damaged, 9, 2, "number 1");
    expect(replaced(good, "2.5,0.25", "2.6,0.25"), Damaged, 10, 3, "checksum");
    expect(replaced(good, "Round 4", "Round 5"), Damaged, 10, 3, "checksum");
    expect(replaced(good, "2.5,0.25,0.1,3\n", ""), Damaged, 9, 2, "tells of 3 points, 2 stand before it");
    expect(replaced(good, "whole, 3", "whole, 4"), Damaged, 10, 3, "tells of 4 points");
    expect(replaced(good, "whole", "hole"), Damaged, 10, 3, "no footer");
    expect(replaced(good, "crc32 ", "crc32 0"), Damaged, 10, 3, "no footer");
    expect(good + "\n", Damaged, 11, 3, "behind the footer");
    expect(good + good, Damaged, 11, 3, "behind the footer: '# scan file: 1'");
    expect(good + "x", Damaged, 11, 3, "behind the footer: 'x'");
    expect(head + "# end: nothing\n" + points, Damaged, 7, 0, "no footer");
    expect(head + "# a remark\n" + points, Damaged, 7, 0, "no footer");
}

TEST_F(ScanFile, BadHeadersAreTold) {
    using enum ScanState;
    expect("x,y\n1,2\n", NoScan, 1, 0, "it begins with 'x,y'");
    expect("\n", NoScan, 1, 0, "it begins with ''");
    expect("# scan file: 12\nx\n", NoScan, 1, 0, "doesn't know: '# scan file: 12'");
    expect("# scan file: 1\r\nx\r\n", Damaged, 1, 0, "CR LF");
    expect("# scan file: 1\n1.5,2.5,\n", Damaged, 2, 0, "no line of a header");
    expect("# scan file: 1\nx,y,x\n", Damaged, 2, 0, "no line of a header: 'x,y,x'");
    expect("# scan file: 1\n\"x\n", Damaged, 2, 0, "no line of a header");
    expect("# scan file: 1\n\"x\"y\n", Damaged, 2, 0, "no line of a header");
    expect("# scan file: 1\n\"x\"\"\n", Damaged, 2, 0, "no line of a header");
    expect("# scan file: 1\n\n1\n", Damaged, 2, 0, "no line of a header: ''");
    expect("# scan file: 1\n# end: whole, 0 points, crc32 00000000\n", Damaged, 2, 0, "no line of a header");
    expect("# scan file: 1\n# machine\nx\n", Damaged, 2, 0, "no line of a header: '# machine'");
    std::string endless = "# scan file: 1\n";
    for (int i = 0; i < 1000; ++i) endless += "# key: value\n";
    expect(endless + "x\n", Damaged, 101, 0, "no line of a header");
    expect("# scan file: 1\n# from later: programs\nx\n1\n", Cut, 5, 1, "without a footer");
}

TEST_F(ScanFile, HugeLinesAndBinariesAreRefusedInBoundedMemory) {
    using enum ScanState;
    const std::string huge(5'000'000, '1');
    expect(huge, NoScan, 1, 0, "begins with '1111111111111111111111111111111111111111...'");
    expect("# scan file: 1" + huge, Damaged, 1, 0, "longer than 1048576 bytes");
    expect(head + "1,2,3," + huge + "\n", Damaged, 7, 0, "longer than 1048576 bytes");
    expect(head + std::string(2'000'000, '\n'), Damaged, 7, 0, "number 1");
    std::string commas = head;
    for (int i = 0; i < 500'000; ++i) commas += "1,";
    expect(commas + "1\n", Damaged, 7, 0, "500001 numbers in place of 4");
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        std::string bytes(2000, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        EXPECT_EQ(verdict(bytes).state, NoScan);
        EXPECT_NE(verdict(head + bytes).state, Whole);
    }
}

TEST_F(ScanFile, AFileThatCannotBeReadIsWrongUsage) {
    EXPECT_THROW(verify_scan(m_directory.path("none.csv")), HostError);
    EXPECT_THROW(verify_scan(m_directory.path()), HostError);
    whole();
    FaultyFiles files;
    files.fail("read", 1, EIO);
    EXPECT_THROW(verify_scan(m_file), HostError);
    EXPECT_EQ(files.open_handles(), 0);
}

TEST_F(ScanFile, ThePageShowsAWholeOne) {
    std::ifstream page(ZX_SCAN_FILE_PAGE);
    std::string example;
    for (std::string line; std::getline(page, line) && line != "```";) {
    }
    for (std::string line; std::getline(page, line) && line != "```";) example += line + "\n";
    expect(example, ScanState::Whole, 9, 2, "");
}

}  // namespace
