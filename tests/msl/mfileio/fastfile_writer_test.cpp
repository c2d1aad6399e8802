#include <cerrno>
#include <functional>

#include "fastfile.h"
#include "faulty_files.h"
#include "opening_error.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class FastFileWriterTest : public ReportsTest {
protected:
    std::string path() const { return m_directory.path("file"); }
    std::string content() const { return m_directory.content("file"); }

    TemporaryDirectory m_directory;
};

std::string pattern(std::size_t size) {
    std::string text;
    for (std::size_t i = 0; i < size; ++i) text += static_cast<char>('a' + i % 26);
    return text;
}

TEST_F(FastFileWriterTest, ModesDifferInWhatBecomesOfTheOldFile) {
    for (const char* const text : {"one", "two"}) {
        MFastFileWriter writer(path().c_str(), MFASTFILE_APPEND);
        EXPECT_EQ(3, writer.WriteString(text));
    }
    EXPECT_EQ("onetwo", content());
    MFastFileWriter(path().c_str(), MFASTFILE_OVERWRITE).WriteString("3");
    EXPECT_EQ("3", content());
    MFastFileWriter writer;
    EXPECT_FALSE(writer.Open(path().c_str(), MFASTFILE_CREATE_NEW));
    EXPECT_EQ((Texts{"openwritefile(): CreateFile(\"" + path() +
                         "\") failed: " + opening_error(path(), os::OpenMode::CreateNew),
                     "MFastFileWriter::Open(): openwritefile(" + path() + ", 0) failed"}),
              trace_reports());
    EXPECT_TRUE(writer.Open(m_directory.path("new").c_str(), MFASTFILE_CREATE_NEW));
}

TEST_F(FastFileWriterTest, UnknownModesAreReportedWithoutTheFlag) {
    MFastFileWriter writer(path().c_str(), 7);
    EXPECT_EQ((Texts{"openwritefile(): unknown mode 3 for " + path(),
                     "MFastFileWriter::Open(): openwritefile(" + path() + ", 7) failed",
                     "MFastFileWriter::MFastFileWriter(): Open(\"" + path() + "\",7) failed"}),
              trace_reports());
}

TEST_F(FastFileWriterTest, TheFlagAsksForWritingThrough) {
    FaultyFiles files;
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE | MFASTFILE_WRITE_THROUGH);
    EXPECT_TRUE(files.last_open_was_write_through());
    EXPECT_TRUE(writer.Open(path().c_str(), MFASTFILE_OVERWRITE));
    EXPECT_FALSE(files.last_open_was_write_through());
}

struct Portions {
    std::vector<std::size_t> sizes;
    const char* calls;     // what the system is asked for by the writes
    const char* at_close;  // and by the close
};

TEST_F(FastFileWriterTest, LargePortionsGoPastTheBuffer) {
    const Portions cases[] = {
        {{20000}, " w8192 w11808", ""},
        {{16000}, " w8192", " w7808"},
        {{16352}, " w8192", " w8160"},
        {{16353}, " w8192 w8161", ""},
        {{8192}, " w8192", ""},
        {{8191}, "", " w8191"},
        {{10, 8182}, " w8192", ""},
        {{10, 16343}, " w8192 w8161", ""},
        {{10, 16342}, " w8192", " w8160"},
        {{0}, "", ""},
        {{8191, 1, 1}, " w8192", " w1"},
        {{5000, 5000, 5000}, " w8192", " w6808"},
    };
    for (const Portions& portions : cases) {
        FaultyFiles files;
        std::string all;
        MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
        for (const std::size_t size : portions.sizes) {
            const std::string text = pattern(size);
            EXPECT_EQ(static_cast<std::int64_t>(size), writer.Write(text.data(), size));
            all += text;
        }
        EXPECT_EQ(portions.calls, files.sizes());
        EXPECT_TRUE(writer.Close());
        EXPECT_EQ(std::string(portions.calls) + portions.at_close, files.sizes());
        EXPECT_EQ(all, content());
    }
}

TEST_F(FastFileWriterTest, CharactersFillTheBufferWhole) {
    FaultyFiles files;
    {
        MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
        for (int i = 0; i < 8193; ++i) EXPECT_EQ(1, writer.WriteChar('x'));
        EXPECT_EQ(1, writer.WriteString("y"));
    }
    EXPECT_EQ(" w8192 w2", files.sizes());
    EXPECT_EQ(std::string(8193, 'x') + "y", content());
}

TEST_F(FastFileWriterTest, AFullBufferGoesOutWithTheNextPortion) {
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
    for (int i = 0; i < 8192; ++i) writer.WriteChar('x');
    EXPECT_EQ(0, writer.Write("", 0));
    EXPECT_EQ(std::string(8192, 'x'), content());
}

TEST_F(FastFileWriterTest, LineEndsAreWrittenAsTold) {
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
    EXPECT_EQ(3, writer.WriteString("a\nb"));
    EXPECT_EQ(4, writer.WriteStringNL("c\nd\n"));
    EXPECT_EQ(4, writer.WriteLineNL("e\nf"));
    EXPECT_EQ(4, writer.WriteLine("g\rh"));
    EXPECT_EQ(1, writer.WriteLine(""));
    EXPECT_EQ(1, writer.WriteCharNL('\r'));
    EXPECT_TRUE(writer.Close());
    EXPECT_EQ("a\nbc\r\nd\r\ne\r\nf\r\ng\rh\r\n\r\n\r", content());
}

TEST_F(FastFileWriterTest, ALineMustHoldNoLf) {
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
    EXPECT_EQ(-1, writer.WriteLine("abc\nd"));
    EXPECT_EQ(Texts{"MFastFileWriter::WriteLine(): EOL detected in string at pos 3"}, trace_reports());
    writer.Close();
    EXPECT_EQ("", content());
}

TEST_F(FastFileWriterTest, NumbersComeBackThroughAReader) {
    {
        MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
        EXPECT_EQ(4, writer.WriteInt(-5));
        EXPECT_EQ(2, writer.WriteShort(7));
        EXPECT_EQ(4, writer.WriteLong(-100000));
        EXPECT_EQ(4, writer.WriteFloat(1.5F));
        EXPECT_EQ(8, writer.WriteDouble(-2.25));
    }
    EXPECT_EQ(22U, content().size());
    MFastFileReader reader(path().c_str());
    int i = 0;
    short s = 0;
    long l = 0;
    float f = 0;
    double d = 0;
    reader.ReadInt(i);
    reader.ReadShort(s);
    reader.ReadLong(l);
    reader.ReadFloat(f);
    reader.ReadDouble(d);
    EXPECT_TRUE(i == -5 && s == 7 && l == -100000 && f == 1.5F && d == -2.25);
}

TEST_F(FastFileWriterTest, FlushHandsOverButReportsAnOpenFile) {
    FaultyFiles files;
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
    writer.WriteString("abc");
    EXPECT_FALSE(writer.Flush());
    EXPECT_EQ(Texts{"MFastFileWriter::Flush(): hFile not valid"}, trace_reports());
    EXPECT_EQ("abc", content());
    EXPECT_EQ(0, files.calls("flush"));
    writer.Close();
    EXPECT_FALSE(writer.Flush());
    EXPECT_EQ(Texts{"MFastFileWriter::Flush(): no open file"}, trace_reports());
    EXPECT_EQ("abc", content());
}

TEST_F(FastFileWriterTest, AClosedWriterReportsAndFails) {
    MFastFileWriter writer;
    const std::string closed = "MFastFileWriter::write_to_buffer(): no open file";
    EXPECT_EQ(-1, writer.Write("x", 1));
    EXPECT_EQ((Texts{closed, "MFastFileWriter::WriteString(): write_to_buffer() failed"}), trace_reports());
    EXPECT_EQ(-1, writer.WriteLine("x"));
    EXPECT_EQ((Texts{closed, "MFastFileWriter::WriteLine(): write_to_buffer() failed"}), trace_reports());
    EXPECT_EQ(-1, writer.WriteLineNL("x"));
    EXPECT_EQ((Texts{"MFastFileWriter::WriteChar(): no open file",
                     "MFastFileWriter::WriteCharNL(): WriteChar() failed",
                     "MFastFileWriter::WriteStringNL(): WriteCharNL() failed",
                     "MFastFileWriter::WriteLineNL(): WriteStringNL() failed"}),
              trace_reports());
    EXPECT_EQ(-1, writer.WriteLineNL(""));
    EXPECT_EQ("MFastFileWriter::WriteLineNL(): WriteCharNL() failed", trace_reports().back());
}

struct TypedWrite {
    const char* name;
    std::function<std::int64_t(MFastFileWriter&)> write;
};

TEST_F(FastFileWriterTest, TypedWritesReportUnderTheirNames) {
    const TypedWrite cases[] = {
        {"WriteInt", [](MFastFileWriter& w) { return w.WriteInt(1); }},
        {"WriteShort", [](MFastFileWriter& w) { return w.WriteShort(1); }},
        {"WriteLong", [](MFastFileWriter& w) { return w.WriteLong(1); }},
        {"WriteFloat", [](MFastFileWriter& w) { return w.WriteFloat(1); }},
        {"WriteDouble", [](MFastFileWriter& w) { return w.WriteDouble(1); }},
    };
    MFastFileWriter writer;
    for (const TypedWrite& typed : cases) {
        EXPECT_EQ(-1, typed.write(writer));
        EXPECT_EQ("MFastFileWriter::" + std::string(typed.name) + "(): write_to_buffer() failed",
                  trace_reports().back());
    }
}

TEST_F(FastFileWriterTest, AWriteThatFailsIsReportedAndLeavesTheWriterOpen) {
    const Texts to_disk{"write64(): WriteFile() failed: 28",
                        "MFastFileWriter::write_to_disk(): write64() failed"};
    FaultyFiles files;
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
    files.fail("write", 1, ENOSPC);
    Texts expected = to_disk;
    expected.push_back("MFastFileWriter::WriteString(): write_to_buffer() failed");
    EXPECT_EQ(-1, writer.WriteString(std::string(9000, 'x').c_str()));
    EXPECT_EQ(expected, trace_reports());
    EXPECT_TRUE(writer.Close());
    EXPECT_EQ(808U, content().size());

    writer.Open(path().c_str(), MFASTFILE_OVERWRITE);
    for (int i = 0; i < 8192; ++i) writer.WriteChar('x');
    files.fail("write", 1, ENOSPC);
    expected = to_disk;
    expected.push_back("MFastFileWriter::WriteChar(): write_to_disk() failed");
    EXPECT_EQ(-1, writer.WriteChar('y'));
    EXPECT_EQ(expected, trace_reports());
}

TEST_F(FastFileWriterTest, AFailureAtTheEndShowsOnlyInTheTrace) {
    FaultyFiles files;
    MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
    writer.WriteString("abc");
    files.shorten(2);
    EXPECT_TRUE(writer.Close());
    EXPECT_EQ(Texts{"MFastFileWriter::write_to_disk(): wrote only 2 bytes instead of 3 bytes"},
              trace_reports());
}

TEST_F(FastFileWriterTest, ACloseThatFailsIsReportedAndCloses) {
    const std::string failed = "MFastFileWriter::Close(): CloseHandle() failed: 5";
    FaultyFiles files;
    {
        MFastFileWriter writer(path().c_str(), MFASTFILE_OVERWRITE);
        files.fail("close", 1, EIO);
        EXPECT_FALSE(writer.Open(path().c_str(), MFASTFILE_OVERWRITE));
        EXPECT_EQ((Texts{failed, "MFastFileWriter::Open(): Close() failed"}), trace_reports());
        EXPECT_TRUE(writer.Close());
        EXPECT_TRUE(writer.Open(path().c_str(), MFASTFILE_OVERWRITE));
        files.fail("close", 1, EIO);
    }
    EXPECT_EQ((Texts{failed, "MFastFileWriter::~MFastFileWriter(): Close() failed"}), trace_reports());
    EXPECT_EQ(0, files.open_handles());
}

}  // namespace
