#include <cerrno>
#include <cstring>
#include <vector>

#include "fastfile.h"
#include "faulty_files.h"
#include "opening_error.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FastFileReaderTest : public ReportsTest {
protected:
    std::string file(const std::string& content) const { return m_directory.file("file", content); }
    std::string missing() const { return m_directory.path("missing"); }

    TemporaryDirectory m_directory;
};

Texts lines_of(const std::string& path) {
    MFastFileReader reader(path.c_str());
    Texts lines;
    while (!reader.IsEOF()) {
        std::string line;
        EXPECT_TRUE(reader.ReadLine(line));
        lines.push_back(line);
    }
    return lines;
}

Texts c_lines_of(const std::string& path, std::size_t max) {
    MFastFileReader reader(path.c_str());
    Texts lines;
    std::vector<char> buffer(max + 1);
    while (!reader.IsEOF()) {
        const std::int64_t length = reader.ReadLine(buffer.data(), max);
        EXPECT_GE(length, 0);
        EXPECT_EQ('\0', buffer[static_cast<std::size_t>(length)]);
        lines.emplace_back(buffer.data(), static_cast<std::size_t>(length));
    }
    return lines;
}

TEST_F(FastFileReaderTest, LinesEndWithAnyEnd) {
    const std::string path = file("one\ntwo\r\nthree\rfour\n\rsix\r\n\r\neight");
    const Texts expected{"one", "two", "three", "four", "", "six", "", "eight"};
    EXPECT_EQ(expected, lines_of(path));
    EXPECT_EQ(expected, c_lines_of(path, 100));
}

TEST_F(FastFileReaderTest, TheLastLineNeedsNoEnd) {
    EXPECT_EQ(Texts{"abc"}, lines_of(file("abc")));
    EXPECT_EQ(Texts{"abc"}, lines_of(file("abc\r")));
    EXPECT_EQ(Texts{}, lines_of(file("")));
}

TEST_F(FastFileReaderTest, AnEmptyFileGivesAnEmptyLine) {
    MFastFileReader reader(file("").c_str());
    EXPECT_TRUE(reader.IsEOF());
    std::string line = "old";
    EXPECT_TRUE(reader.ReadLine(line));
    EXPECT_EQ("", line);
    char buffer[4] = "old";
    EXPECT_EQ(0, reader.ReadLine(buffer, 3));
    EXPECT_STREQ("", buffer);
    EXPECT_TRUE(reader.IsEOF());
}

TEST_F(FastFileReaderTest, LinesDoNotDependOnWhereTheBufferEnds) {
    for (const std::string end : {"\n", "\r", "\r\n"}) {
        for (std::size_t length = 8180; length < 8200; ++length) {
            const std::string first(length, 'x');
            const std::string path = file(first + end + "b" + end + end + "c");
            EXPECT_EQ((Texts{first, "b", "", "c"}), lines_of(path)) << length;
            EXPECT_EQ((Texts{first, "b", "", "c"}), c_lines_of(path, 10000)) << length;
        }
    }
}

TEST_F(FastFileReaderTest, ACrAsTheLastByteOfTheBufferAndALfAreOneEnd) {
    const std::string first(8191, 'x');
    EXPECT_EQ((Texts{first, "y"}), lines_of(file(first + "\r\ny")));
}

TEST_F(FastFileReaderTest, LinesMayBeLongerThanTheBufferAndHoldAnyByte) {
    std::string all;
    for (int i = 0; i < 256; ++i) {
        if (i != '\n' && i != '\r') all += static_cast<char>(i);
    }
    const std::string longer(100000, 'z');
    EXPECT_EQ((Texts{all, longer, all}), lines_of(file(all + "\n" + longer + "\n" + all)));
}

TEST_F(FastFileReaderTest, ALineOfMaxBytesLeavesItsEndForTheNextCall) {
    EXPECT_EQ((Texts{"abc", "", "de"}), c_lines_of(file("abc\nde"), 3));
    EXPECT_EQ((Texts{"abc", "d", "ef"}), c_lines_of(file("abcd\r\nef"), 3));
    MFastFileReader reader(file("abc").c_str());
    char nothing[1] = {'x'};
    EXPECT_EQ(0, reader.ReadLine(nothing, 0));
    EXPECT_EQ('\0', nothing[0]);
    EXPECT_FALSE(reader.IsEOF());
}

TEST_F(FastFileReaderTest, ReadStringEndsAtTheDelimiter) {
    MFastFileReader reader(file("abc;de;;f").c_str());
    char buffer[11];
    EXPECT_EQ(3, reader.ReadString(buffer, 10, ';'));
    EXPECT_STREQ("abc", buffer);
    EXPECT_EQ(1, reader.ReadString(buffer, 1, ';'));
    EXPECT_STREQ("d", buffer);
    EXPECT_EQ(1, reader.ReadString(buffer, 2, ';'));
    EXPECT_STREQ("e", buffer);
    EXPECT_EQ(0, reader.ReadString(buffer, 10, ';'));
    EXPECT_STREQ(";", buffer);
    EXPECT_EQ(1, reader.ReadString(buffer, 10, ';'));
    EXPECT_STREQ("f", buffer);
    EXPECT_EQ(0, reader.ReadString(buffer, 10, ';'));
    EXPECT_STREQ("", buffer);
}

TEST_F(FastFileReaderTest, ReadStringGoesOverTheEndOfTheBuffer) {
    const std::string text(20000, 'x');
    MFastFileReader reader(file(text + ";y").c_str());
    std::vector<char> buffer(30001);
    EXPECT_EQ(20000, reader.ReadString(buffer.data(), 30000, ';'));
    EXPECT_EQ(text, buffer.data());
    EXPECT_EQ(1, reader.ReadString(buffer.data(), 30000, ';'));
}

TEST_F(FastFileReaderTest, LargeReadsGoPastTheBuffer) {
    std::string content;
    for (int i = 0; i < 20000; ++i) content += static_cast<char>('a' + i % 26);
    FaultyFiles files;
    MFastFileReader reader(file(content).c_str());
    std::vector<char> target(20000);
    EXPECT_EQ(8182, reader.Read(target.data(), 8182));
    EXPECT_EQ(10000, reader.Read(target.data(), 10000));
    EXPECT_EQ(content.substr(8182, 10000), std::string(target.data(), 10000));
    EXPECT_EQ(1818, reader.Read(target.data(), 2000));
    EXPECT_EQ(content.substr(18182), std::string(target.data(), 1818));
    EXPECT_EQ(0, reader.Read(target.data(), 1));
    EXPECT_EQ(" r8192 r9990 r8192 r8192", files.sizes());
}

TEST_F(FastFileReaderTest, ReadOfWhatIsThereAndMore) {
    MFastFileReader reader(file("abcdef").c_str());
    char target[10] = {};
    EXPECT_EQ(0, reader.Read(target, 0));
    EXPECT_EQ(2, reader.Read(target, 2));
    EXPECT_EQ(4, reader.Read(target, 10));
    EXPECT_EQ(std::string("cdef"), std::string(target, 4));
    EXPECT_TRUE(reader.IsEOF());
}

TEST_F(FastFileReaderTest, NumbersLieInTheFileAsInMemory) {
    const int i = -5;
    const short s = 7;
    const std::int32_t l = -100000;
    const float f = 1.5F;
    const double d = -2.25;
    std::string content;
    content.append(reinterpret_cast<const char*>(&i), 4).append(reinterpret_cast<const char*>(&s), 2);
    content.append(reinterpret_cast<const char*>(&l), 4).append(reinterpret_cast<const char*>(&f), 4);
    content.append(reinterpret_cast<const char*>(&d), 8);
    MFastFileReader reader(file(content).c_str());
    int i2 = 0;
    short s2 = 0;
    long l2 = 0;
    float f2 = 0;
    double d2 = 0;
    EXPECT_EQ(4, reader.ReadInt(i2));
    EXPECT_EQ(2, reader.ReadShort(s2));
    EXPECT_EQ(4, reader.ReadLong(l2));
    EXPECT_EQ(4, reader.ReadFloat(f2));
    EXPECT_EQ(8, reader.ReadDouble(d2));
    EXPECT_EQ(i, i2);
    EXPECT_EQ(s, s2);
    EXPECT_EQ(l, l2);
    EXPECT_EQ(f, f2);
    EXPECT_EQ(d, d2);
    EXPECT_EQ(0, reader.ReadInt(i2));
}

TEST_F(FastFileReaderTest, ReadCharGoesByteByByte) {
    MFastFileReader reader(file("a\r").c_str());
    char c = 'x';
    EXPECT_EQ(1, reader.ReadChar(c));
    EXPECT_EQ('a', c);
    EXPECT_EQ(1, reader.ReadChar(c));
    EXPECT_EQ('\r', c);
    EXPECT_EQ(0, reader.ReadChar(c));
    EXPECT_EQ('\r', c);
}

TEST_F(FastFileReaderTest, ReadCharNlDeliversEveryEndAsOneLf) {
    MFastFileReader reader(file("a\r\nb\rc\n\rd\r").c_str());
    std::string all;
    char c = '\0';
    while (reader.ReadCharNL(c) == 1) all += c;
    EXPECT_EQ("a\nb\nc\n\nd\n", all);
}

TEST_F(FastFileReaderTest, ReadCharNlGoesOverTheEndOfTheBuffer) {
    for (const std::string end : {"\r\n", "\r"}) {
        MFastFileReader reader(file(std::string(8191, 'x') + end + "y").c_str());
        std::string all;
        char c = '\0';
        while (reader.ReadCharNL(c) == 1) all += c;
        EXPECT_EQ(std::string(8191, 'x') + "\ny", all);
    }
}

TEST_F(FastFileReaderTest, UnReadCharGoesBackInTheBuffer) {
    MFastFileReader reader(file("ab").c_str());
    char c = '\0';
    EXPECT_FALSE(reader.UnReadChar());
    EXPECT_EQ(Texts{"MFastFileReader::UnReadChar(): can't rewind"}, trace_reports());
    reader.ReadChar(c);
    reader.ReadChar(c);
    EXPECT_TRUE(reader.UnReadChar());
    EXPECT_TRUE(reader.UnReadChar());
    EXPECT_FALSE(reader.UnReadChar());
    EXPECT_EQ(1U, trace_reports().size());
    EXPECT_EQ(1, reader.ReadChar(c));
    EXPECT_EQ('a', c);
}

TEST_F(FastFileReaderTest, UnReadCharRefusesAfterAReadPastTheBuffer) {
    MFastFileReader reader(file(std::string(20000, 'x')).c_str());
    std::vector<char> target(20000);
    reader.Read(target.data(), 10);
    reader.Read(target.data(), 18000);
    EXPECT_FALSE(reader.UnReadChar());
    EXPECT_EQ(1U, trace_reports().size());
    char c = '\0';
    EXPECT_EQ(1, reader.ReadChar(c));
    EXPECT_TRUE(reader.UnReadChar());
}

TEST_F(FastFileReaderTest, OpenOfAMissingFileReportsAtEachLevel) {
    const std::string path = missing();
    const Texts expected{"openfile(): CreateFile(\"" + path + "\") failed: 2",
                         "MFastFileReader::Open(): openfile(\"" + path + "\") failed: 2"};
    MFastFileReader reader;
    EXPECT_FALSE(reader.Open(path.c_str()));
    EXPECT_EQ(expected, trace_reports());
    EXPECT_EQ("msl/mfileio/src/fastfile", recording::error_trace_places().front().source);
    MFastFileReader constructed(path.c_str());
    Texts more = expected;
    more.push_back("MFastFileReader::MFastFileReader(): Open(\"" + path + "\") failed");
    EXPECT_EQ(more, trace_reports());
}

TEST_F(FastFileReaderTest, ADirectoryIsNoFile) {
    MFastFileReader reader;
    EXPECT_FALSE(reader.Open(m_directory.path().c_str()));
    EXPECT_EQ("openfile(): CreateFile(\"" + m_directory.path() +
                  "\") failed: " + opening_error(m_directory.path(), os::OpenMode::Read),
              trace_reports().front());
}

TEST_F(FastFileReaderTest, OpenAgainClosesFirst) {
    FaultyFiles files;
    MFastFileReader reader(file("first").c_str());
    char c = '\0';
    reader.ReadChar(c);
    EXPECT_TRUE(reader.Open(m_directory.file("other", "second").c_str()));
    EXPECT_EQ(1, files.open_handles());
    reader.ReadChar(c);
    EXPECT_EQ('s', c);
    EXPECT_TRUE(reader.Close());
    EXPECT_TRUE(reader.Close());
    EXPECT_EQ(0, files.open_handles());
}

TEST_F(FastFileReaderTest, ACloseThatFailsIsReportedAndCloses) {
    const std::string close_failed = "MFastFileReader::Close(): CloseHandle() failed: 5";
    FaultyFiles files;
    {
        MFastFileReader reader(file("x").c_str());
        files.fail("close", 1, EIO);
        EXPECT_FALSE(reader.Open(m_directory.path("file").c_str()));
        EXPECT_EQ((Texts{close_failed, "MFastFileReader::Open(): Close() failed"}), trace_reports());
        EXPECT_TRUE(reader.Close());
        EXPECT_TRUE(reader.Open(m_directory.path("file").c_str()));
        files.fail("close", 1, EIO);
    }
    EXPECT_EQ((Texts{close_failed, "MFastFileReader::~MFastFileReader(): Close() failed"}), trace_reports());
    EXPECT_EQ(0, files.open_handles());
}

TEST_F(FastFileReaderTest, AClosedReaderReportsAndFails) {
    MFastFileReader reader;
    char c = '\0';
    int i = 0;
    const std::string no_file = "MFastFileReader::read_char_from_buffer(): no open file";
    EXPECT_EQ(-1, reader.ReadChar(c));
    EXPECT_EQ((Texts{no_file, "MFastFileReader::ReadChar(): read_char_from_buffer() failed"}),
              trace_reports());
    EXPECT_EQ(-1, reader.ReadCharNL(c));
    EXPECT_EQ((Texts{no_file, "MFastFileReader::ReadCharNL: read_char_from_buffer() #1 failed"}),
              trace_reports());
    EXPECT_EQ(-1, reader.ReadInt(i));
    EXPECT_EQ((Texts{"MFastFileReader::read_from_buffer(): no open file",
                     "MFastFileReader::ReadInt(): read_from_buffer() failed"}),
              trace_reports());
    EXPECT_TRUE(reader.IsEOF());
    EXPECT_EQ(Texts{"MFastFileReader::IsEOF(): no open file"}, log_reports());
    std::string line;
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ("MFastFileReader::ReadLine(STL): fill_buffer() failed", trace_reports().back());
}

// A reader whose n-th read of the system fails.
class FailingReadTest : public FastFileReaderTest {
protected:
    MFastFileReader& reader(const std::string& content, int nth) {
        m_reader.Open(file(content).c_str());
        m_files.fail("read", nth, EIO);
        return m_reader;
    }

    // The reports of a failed refill and what the caller adds.
    static Texts refill_and(const Texts& more) {
        Texts all{"read64(): ReadFile() failed: 5", "MFastFileReader::fill_buffer(): read64() failed"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    FaultyFiles m_files;
    MFastFileReader m_reader;
    char m_c = '\0';
};

TEST_F(FailingReadTest, Read) {
    std::vector<char> target(10000);
    EXPECT_EQ(-1, reader("x", 1).Read(target.data(), 1));
    EXPECT_EQ(refill_and({"MFastFileReader::read_from_buffer(): fill_buffer() failed",
                          "MFastFileReader::Read(): read_from_buffer() failed"}),
              trace_reports());
    EXPECT_EQ(-1, reader("x", 1).Read(target.data(), 9000));
    EXPECT_EQ((Texts{"read64(): ReadFile() failed: 5",
                     "MFastFileReader::read_from_buffer(): read64(..,9000,..) failed",
                     "MFastFileReader::Read(): read_from_buffer() failed"}),
              trace_reports());
}

TEST_F(FailingReadTest, TypedReads) {
    int i = 0;
    short s = 0;
    long l = 0;
    float f = 0;
    double d = 0;
    EXPECT_EQ(-1, reader("x", 1).ReadInt(i));
    EXPECT_EQ("MFastFileReader::ReadInt(): read_from_buffer() failed", trace_reports().back());
    EXPECT_EQ(-1, reader("x", 1).ReadShort(s));
    EXPECT_EQ("MFastFileReader::ReadShort(): read_from_buffer() failed", trace_reports().back());
    EXPECT_EQ(-1, reader("x", 1).ReadLong(l));
    EXPECT_EQ("MFastFileReader::ReadLong(): read_from_buffer() failed", trace_reports().back());
    EXPECT_EQ(-1, reader("x", 1).ReadFloat(f));
    EXPECT_EQ("MFastFileReader::ReadFloat(): read_from_buffer() failed", trace_reports().back());
    EXPECT_EQ(-1, reader("x", 1).ReadDouble(d));
    EXPECT_EQ("MFastFileReader::ReadDouble(): read_from_buffer() failed", trace_reports().back());
}

TEST_F(FailingReadTest, Characters) {
    EXPECT_EQ(-1, reader("x", 1).ReadChar(m_c));
    EXPECT_EQ(refill_and({"MFastFileReader::read_char_from_buffer(): fill_buffer() failed",
                          "MFastFileReader::ReadChar(): read_char_from_buffer() failed"}),
              trace_reports());
    EXPECT_EQ(-1, reader("\r", 2).ReadCharNL(m_c));
    EXPECT_EQ(refill_and({"MFastFileReader::read_char_from_buffer(): fill_buffer() failed",
                          "MFastFileReader::ReadCharNL(): read_char_from_buffer() #2 failed"}),
              trace_reports());
}

TEST_F(FailingReadTest, Lines) {
    std::string line;
    EXPECT_FALSE(reader("x", 2).ReadLine(line));
    EXPECT_EQ("x", line);
    EXPECT_EQ(refill_and({"MFastFileReader::ReadLine(STL): fill_buffer() failed"}), trace_reports());
    EXPECT_FALSE(reader("x\r", 2).ReadLine(line));
    EXPECT_EQ(refill_and({"MFastFileReader::ReadLine(STL):fill_buffer() failed"}), trace_reports());
    char target[10] = "old";
    EXPECT_EQ(-1, reader("xy", 2).ReadLine(target, 9));
    EXPECT_STREQ("xy", target);
    EXPECT_EQ(refill_and({"MFastFileReader::ReadLine(): fill_buffer() failed"}), trace_reports());
    EXPECT_EQ(-1, reader("x\r", 2).ReadLine(target, 9));
    EXPECT_EQ(refill_and({"MFastFileReader::ReadLine(): fill_buffer() failed"}), trace_reports());
    EXPECT_EQ(-1, reader("xy", 2).ReadString(target, 9, ';'));
    EXPECT_STREQ("xy", target);
    EXPECT_EQ(refill_and({"MFastFileReader::ReadString(): fill_buffer() failed"}), trace_reports());
}

TEST_F(FailingReadTest, IsEofTakesAFailureForTheEndAndLogsIt) {
    EXPECT_TRUE(reader("x", 1).IsEOF());
    EXPECT_EQ(Texts{"MFastFileReader::IsEOF(): fill_buffer() failed"}, log_reports());
    EXPECT_EQ(refill_and({}), trace_reports());
    EXPECT_FALSE(m_reader.IsEOF());
}

TEST_F(FastFileReaderTest, ASystemThatReadsInSmallPiecesChangesNothing) {
    FaultyFiles files;
    files.shorten(3);
    EXPECT_EQ((Texts{"0123456789", "x"}), lines_of(file("0123456789\r\nx")));
}

}  // namespace
