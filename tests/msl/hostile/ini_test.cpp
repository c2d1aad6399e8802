// Ini files that nobody would write: whatever stands in them, there is a result, and memory stays within
// bounds of the file's size.

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

#include "MIniData.h"
#include "memory_use.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

constexpr std::size_t megabyte = 1000000;

class HostileIniTest : public ReportsTest {
protected:
    // Written piece by piece, so that the file's content doesn't count as memory in use.
    template <class Write>
    std::size_t make_file(Write write) {
        std::ofstream out(m_path, std::ios::binary);
        write(out);
        return static_cast<std::size_t>(out.tellp());
    }

    std::size_t one_line(const std::string& begin, std::size_t size) {
        return make_file([&](std::ostream& out) {
            const std::string piece(megabyte, 'x');
            out << begin;
            for (std::size_t written = 0; written < size; written += piece.size()) out << piece;
        });
    }

    TemporaryDirectory m_directory;
    const std::string m_path = m_directory.path("x.ini");
};

// Random bytes, more of them than usual that mean something in an ini file.
std::string binary(std::minstd_rand& random, std::size_t size) {
    constexpr char special[] = "[]=;\n\r\t #";
    std::string bytes(size, '\0');
    for (char& c : bytes) {
        const auto number = random();
        c = number % 4 == 0 ? special[number / 4 % 9] : static_cast<char>(number >> 8);
    }
    return bytes;
}

TEST_F(HostileIniTest, BinaryFilesAreRefusedOrKept) {
    std::minstd_rand random(17);
    int refused = 0;
    int kept = 0;
    for (unsigned round = 0; round < 320; ++round) {
        const std::string bytes = binary(random, random() % 40);
        m_directory.file("x.ini", round % 2 ? "[s]\n" + bytes : bytes);
        MIniData ini(round % 64);
        if (!ini.Open(m_path)) {
            EXPECT_STRNE("", ini.GetLastError());
            EXPECT_FALSE(trace_reports().empty());
            ++refused;
            continue;
        }
        std::string before;
        std::string after;
        ini.GetContentString(before);
        EXPECT_TRUE(ini.Save());
        EXPECT_TRUE(ini.Reload()) << ini.GetLastError();
        ini.GetContentString(after);
        EXPECT_EQ(before, after);
        trace_reports();
        ++kept;
    }
    EXPECT_LT(10, refused);
    EXPECT_LT(10, kept);
}

TEST_F(HostileIniTest, NulsAreBytesLikeOthersButForALinesFirst) {
    using namespace std::string_literals;
    m_directory.file("x.ini", "[a\0]\n\0dropped\nb\0=c\0d\n \0e=\0\n;\0\n"s);
    MIniData ini;
    ASSERT_TRUE(ini.Open(m_path));
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ("[a\0]\r\nb\0=c\0d\r\n \0e=\0\r\n;\0\r\n"s, m_directory.content("x.ini"));

    m_directory.file("x.ini", std::string(megabyte, '\0'));
    EXPECT_TRUE(ini.Open(m_path));
    EXPECT_EQ(0U, ini.GetNumSections());
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ("", m_directory.content("x.ini"));
}

// Each begin of each mark, alone and with a section behind it.
TEST_F(HostileIniTest, ByteOrderMarksOfEveryKind) {
    using namespace std::string_literals;
    const auto is_wide = [](const std::string& text) {
        return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
               text.starts_with("\x00\x00\xFE\xFF"s);
    };
    for (const std::string& mark :
         {"\xEF\xBB\xBF"s, "\xFF\xFE"s, "\xFE\xFF"s, "\x00\x00\xFE\xFF"s, "\xFF\xFE\x00\x00"s}) {
        for (std::size_t length = 1; length <= mark.size(); ++length) {
            for (const std::string& rest : {""s, "[s]"s, "\n[s]\n"s, "\0[s]\n"s}) {
                const std::string text = mark.substr(0, length) + rest;
                m_directory.file("x.ini", text);
                MIniData ini;
                const bool is_utf8 = text.starts_with("\xEF\xBB\xBF");
                // What is left of the first line is dropped, a section, or an entry before the first section.
                const std::string line = text.substr(is_utf8 ? 3 : 0, text.find('\n') - (is_utf8 ? 3 : 0));
                const bool good = !is_wide(text) && (line.empty() || line[0] == '\0' || line[0] == '[');
                EXPECT_EQ(good, ini.Open(m_path)) << ::testing::PrintToString(text);
                EXPECT_EQ(is_wide(text),
                          std::string_view(ini.GetLastError()) == "UTF16/32 Unicode format not supported.");
                EXPECT_EQ(good, trace_reports().empty());
            }
        }
    }
}

TEST_F(HostileIniTest, ALineOfAHundredMegabytesIsAnEntry) {
    const std::size_t size = one_line("[s]\nkey=", 100 * megabyte);
    const MemoryUse memory;
    MIniData ini;
    ASSERT_TRUE(ini.Open(m_path));
    ASSERT_NE(nullptr, ini.GetEntry("s", "key"));
    EXPECT_EQ(100 * megabyte, ini.GetEntry("s", "key")->text.size() - 4);
    EXPECT_LT(memory.peak(), 6 * size);
}

TEST_F(HostileIniTest, ALineOfAHundredMegabytesIsRefusedInFewWords) {
    for (const std::string begin : {"", "[", "[s]\n", "[s]\n="}) {
        const std::size_t size = one_line(begin, 100 * megabyte);
        const MemoryUse memory;
        MIniData ini;
        EXPECT_FALSE(ini.Open(m_path));
        EXPECT_LT(memory.peak(), 6 * size) << begin;
        EXPECT_GT(1024U, std::strlen(ini.GetLastError()));
        for (const std::string& report : trace_reports()) EXPECT_GT(200U, report.size());
    }
}

TEST_F(HostileIniTest, AMillionSections) {
    constexpr std::size_t count = 1000000;
    const std::size_t size = make_file([](std::ostream& out) {
        for (std::size_t i = 0; i < count; ++i) out << '[' << i << "]\n";
    });
    const MemoryUse memory;
    MIniData ini;
    ASSERT_TRUE(ini.Open(m_path));
    EXPECT_EQ(count, ini.GetNumSections());
    EXPECT_TRUE(ini.SectionExists("999999"));
    // A section is an object with a list of lines, however short its header is.
    EXPECT_LT(memory.peak(), 40 * size);
    EXPECT_TRUE(ini.Save());
    EXPECT_EQ(size + count, std::filesystem::file_size(m_path));
}

TEST_F(HostileIniTest, AMillionEntriesOfOneName) {
    make_file([](std::ostream& out) {
        out << "[s]\n";
        for (int i = 0; i < 1000000; ++i) out << "a=1\n";
    });
    const MemoryUse memory;
    MIniData ini(MINIDATA_REPLACE_ENTRIES);
    ASSERT_TRUE(ini.Open(m_path));
    EXPECT_EQ(1U, ini.GetNumEntries("s"));
    EXPECT_LT(memory.now(), 100000U);
}

TEST_F(HostileIniTest, AnOrdinaryFileTakesSixTimesItsSizeAtMost) {
    const std::size_t size = make_file([](std::ostream& out) {
        for (int section = 0; section < 2000; ++section) {
            out << "[section number " << section << "]\n; what stands in it\n";
            for (int entry = 0; entry < 20; ++entry) {
                out << "name of entry " << entry << " = a value of some length, " << section * entry << "\n";
            }
        }
    });
    const MemoryUse memory;
    MIniData ini;
    ASSERT_TRUE(ini.Open(m_path));
    EXPECT_LT(memory.peak(), 6 * size);
    ini.Close();
    EXPECT_LT(memory.now(), size / 10);
}

}  // namespace
