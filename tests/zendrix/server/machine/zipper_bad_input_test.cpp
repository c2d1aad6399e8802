#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <functional>
#include <numeric>

#include "faulty_files.h"
#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

const std::string prefix = "MZipper::FilesToZippArchive(): ";
const std::string files_failed = "CreateZipArchive(): Files to zip archive failed";

class ZipperBadInputTest : public ZipperTest {
protected:
    // The reports of this room, without those of the rooms below.
    Texts own_reports() {
        Texts own;
        for (const std::string& text : trace_reports()) {
            if (text.starts_with("MZipper") || text.starts_with("CreateZip")) own.push_back(text);
        }
        return own;
    }

    // Packs the tree, which must fail.
    void expect_refused(const Texts& reports) {
        EXPECT_EQ("", CreateZipArchive(tree.path()));
        EXPECT_EQ(reports, own_reports());
    }
};

// Bytes that don't get shorter.
std::string noise(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 1;
    for (char& c : bytes) {
        state = state * 1664525 + 1013904223;
        c = static_cast<char>(state >> 24);
    }
    return bytes;
}

// Directories

TEST_F(ZipperBadInputTest, ADirectoryThatIsMissingIsReported) {
    const std::string missing = tree.path("missing");
    EXPECT_EQ("", CreateZipArchive(missing));
    EXPECT_EQ((Texts{prefix + "SetPath() failed [" + missing + "/]", files_failed}), own_reports());
    EXPECT_TRUE(archive_is_left());
}

TEST_F(ZipperBadInputTest, AFileIsNoDirectory) {
    const std::string file = tree.file("a", "x");
    EXPECT_EQ("", CreateZipArchive(file));
    EXPECT_EQ((Texts{prefix + "SetPath() failed [" + file + "/]", files_failed}), own_reports());
}

TEST_F(ZipperBadInputTest, ALinkToItselfIsNoDirectory) {
    const std::string link = tree.path("link");
    fs::create_symlink(link, link);
    EXPECT_EQ("", CreateZipArchive(link));
    EXPECT_EQ((Texts{prefix + "SetPath() failed [" + link + "/]", files_failed}), own_reports());
}

TEST_F(ZipperBadInputTest, NoDirectoryAtAllIsNotTheRoot) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    EXPECT_FALSE(zipper.FilesToZippArchive(""));
    EXPECT_EQ((Texts{prefix + "SetPath() failed []"}), own_reports());
    EXPECT_TRUE(zipper.Close());
}

// The system's word counts, since nothing is unreadable for root.
TEST_F(ZipperBadInputTest, AnUnreadableFolderEndsTheWork) {
    fs::create_directory(tree.path("1"));
    fs::create_directory(tree.path("2"));
    tree.file("a", "x");
    tree.file("2/b", "x");
    FaultyFiles files;
    files.fail("find", 4, EACCES);  // of the tree, of the file in it for each look at its size, of the folder
    expect_refused({prefix + "SetPath() failed [" + tree.path("1\\") + "]", files_failed});
    EXPECT_EQ(4, files.calls("find"));
}

// Files

TEST_F(ZipperBadInputTest, ALinkToNowhereFailsAndTheOthersArePacked) {
    tree.file("z", "x");
    fs::create_symlink("nowhere", tree.path("a"));
    recording::set_trace_level(4);
    expect_refused({prefix + " file_size() failed [" + tree.path("a") + "]", files_failed});
    EXPECT_EQ(prefix + "wrote file [" + tree.path("z") + "], size: 1", recording::trace().back().text);
    EXPECT_TRUE(archive_is_left());
    EXPECT_LT(temporary.content("backup_tmp.zip").size(), 22U + 46U) << "no archive, but its beginning";
}

TEST_F(ZipperBadInputTest, AFileThatCannotBeReadIsReported) {
    const std::string file = tree.file("a", "x");
    FaultyFiles files;
    files.fail("read", 1, EIO);
    expect_refused({prefix + "MFastfile_ReadAtOnce(" + file + ", ...) failed", files_failed});
    EXPECT_EQ(0, files.open_handles());
}

// Every call fails once; there is an empty result with a report, or the whole archive.
TEST_F(ZipperBadInputTest, WhateverFailsIsReported) {
    fs::create_directory(tree.path("sub"));
    tree.file("a", "x");
    tree.file("sub/b", "y");
    const std::string whole = ArchiveReader(CreateZipArchive(tree.path())).timeless();
    int calls = 0;
    {
        FaultyFiles counting;
        CreateZipArchive(tree.path());
        calls = static_cast<int>(counting.all_calls().size());
    }
    EXPECT_GT(calls, 15);
    for (int nth = 1; nth <= calls; ++nth) {
        FaultyFiles files;
        files.spoil_call(nth, Fault::fails, EIO);
        const std::string archive = CreateZipArchive(tree.path());
        const Texts reports = own_reports();
        if (archive.empty()) {
            EXPECT_FALSE(reports.empty()) << nth;
        } else {
            EXPECT_EQ(whole, ArchiveReader(archive).timeless()) << nth;
        }
        EXPECT_EQ(0, files.open_handles());
    }
}

// Files that change while they are packed. Their sizes are asked for twice: here, and where they are read.

TEST_F(ZipperBadInputTest, AFileThatVanishesBeforeItsSizeIsAskedForIsReported) {
    const std::string file = tree.file("a", "x");
    FaultyFiles files;
    files.before("info", 1, [&] { fs::remove(file); });
    expect_refused({prefix + " file_size() failed [" + file + "]", files_failed});
}

TEST_F(ZipperBadInputTest, AFileThatVanishesBeforeItIsReadIsReported) {
    const std::string file = tree.file("a", "x");
    FaultyFiles files;
    files.before("open", 2, [&] { fs::remove(file); });  // the first makes the archive
    expect_refused({prefix + "MFastfile_ReadAtOnce(" + file + ", ...) failed", files_failed});
}

TEST_F(ZipperBadInputTest, AFileThatGrowsIsPackedAsItIsRead) {
    const std::string file = tree.file("a", "x");
    FaultyFiles files;
    files.before("info", 2, [&] { tree.file("a", std::string(5000, 'y')); });
    const std::string archive = CreateZipArchive(tree.path());
    const auto entries = ArchiveReader(archive).entries();
    ASSERT_EQ(1U, entries.size());
    EXPECT_EQ(std::string(5000, 'y'), entries[0].data);
}

TEST_F(ZipperBadInputTest, AFileThatGrowsWhileItIsReadIsCutWhereItWas) {
    const std::string file = tree.file("a", "x");
    FaultyFiles files;
    files.before("open", 2, [&] { tree.file("a", std::string(5000, 'y')); });
    const std::string archive = CreateZipArchive(tree.path());
    const auto entries = ArchiveReader(archive).entries();
    ASSERT_EQ(1U, entries.size());
    EXPECT_EQ("y", entries[0].data);
}

TEST_F(ZipperBadInputTest, AFileThatShrinksIsPackedAsItIsRead) {
    const std::string file = tree.file("a", std::string(5000, 'x'));
    FaultyFiles files;
    files.before("open", 2, [&] { tree.file("a", "y"); });
    const std::string archive = CreateZipArchive(tree.path());
    const auto entries = ArchiveReader(archive).entries();
    ASSERT_EQ(1U, entries.size());
    EXPECT_EQ("y", entries[0].data);
}

TEST_F(ZipperBadInputTest, AFileOfFourGigabytesIsRefused) {
    const std::string file = tree.file("a", "x");
    tree.file("b", "x");
    fs::resize_file(file, 0xFFFFFFFF);
    FaultyFiles files;
    expect_refused({prefix + "file is too large [" + file + "]: 4294967295",
                    prefix + "zipWriteInFileInZip() failed [" + file + "]", files_failed});
    EXPECT_EQ(1, files.calls("read")) << "the other file alone";
}

// The temporary archive

// The process's files can't become larger than this while it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

TEST_F(ZipperBadInputTest, WithoutRoomForAFileItIsReported) {
    const std::string file = tree.file("a", noise(1'000'000));
    const FileSizeLimit limit(100'000);
    expect_refused({prefix + "zipWriteInFileInZip() failed [" + file + "]", files_failed});
}

TEST_F(ZipperBadInputTest, HowLittleRoomEverThereIsNoHalfArchive) {
    for (int i = 0; i < 3; ++i) tree.file(std::to_string(i), noise(400));
    const std::size_t whole = CreateZipArchive(tree.path()).size();
    ASSERT_GT(whole, 1200U);
    for (std::size_t room = 0; room < whole; room += room + 50 < whole ? 50 : 1) {
        const FileSizeLimit limit(room);
        EXPECT_EQ("", CreateZipArchive(tree.path())) << room;
        const Texts reports = own_reports();
        ASSERT_LE(2U, reports.size());
        EXPECT_EQ((Texts{"MZipper::Close(): zipClose(" + archive_path() + ") failed: -1",
                         "CreateZipArchive(): Close zip archive " + archive_path() + " failed"}),
                  Texts(reports.end() - 2, reports.end()));
        EXPECT_FALSE(archive_is_left());
    }
    const FileSizeLimit limit(whole);
    EXPECT_EQ(whole, CreateZipArchive(tree.path()).size());
}

// What is left of a file is written when the next begins.
TEST_F(ZipperBadInputTest, ARestThatFindsNoRoomFailsTheArchive) {
    tree.file("a", noise(30'000));
    tree.file("b", noise(30'000));
    tree.file("c", noise(30'000));
    const FileSizeLimit limit(40'000);
    EXPECT_EQ("", CreateZipArchive(tree.path()));
    EXPECT_EQ("MZipper::CloseEntry(): zipCloseFileInZip(" + archive_path() + ") failed: -1",
              own_reports().front());
}

TEST_F(ZipperBadInputTest, RoomThatComesBackDoesNotMendAnArchive) {
    tree.file("a", noise(30'000));
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.FilesToZippArchive((tree.path() + "/").c_str()));
    {
        const FileSizeLimit limit(10'000);
        zipper.CloseEntry();
    }
    EXPECT_FALSE(zipper.Close());
    EXPECT_EQ((Texts{"MZipper::CloseEntry(): zipCloseFileInZip(" + archive_path() + ") failed: -1"}),
              own_reports());
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.AddEntry("next"));
    EXPECT_TRUE(zipper.Close());
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.AddEntry("the next"));
    EXPECT_TRUE(zipper.Close());
}

TEST_F(ZipperBadInputTest, AfterOneThatWasAbandonedTheNextArchiveIsWhole) {
    tree.file("a", "x");
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.AddEntry("left"));
    zipper.Abandon();
    EXPECT_EQ(34U, temporary.content("backup_tmp.zip").size()) << "the entry's header alone";
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.FilesToZippArchive((tree.path() + "/").c_str()));
    EXPECT_TRUE(zipper.Close());
    EXPECT_EQ((Texts{in_archive("a")}), names(temporary.content("backup_tmp.zip")));
}

TEST_F(ZipperBadInputTest, AnothersFileIsNotWrittenTo) {
    tree.file("a", "x");
    temporary.file("backup_tmp.zip", "mine");
    FaultyFiles files;
    files.fail("remove", 1, EPERM);
    expect_refused({"MZipper::Open(): zipOpen64(" + archive_path() + ") failed",
                    "CreateZipArchive(): Open zip archive " + archive_path() + " failed"});
    EXPECT_EQ("mine", temporary.content("backup_tmp.zip"));
}

TEST_F(ZipperBadInputTest, ALinkIsNotWrittenThrough) {
    tree.file("a", "x");
    temporary.file("precious", "mine");
    fs::create_symlink(temporary.path("precious"), archive_path());
    EXPECT_EQ((Texts{in_archive("a")}), names(CreateZipArchive(tree.path())));
    EXPECT_EQ("mine", temporary.content("precious"));
}

TEST_F(ZipperBadInputTest, ADirectoryInItsPlaceIsReported) {
    fs::create_directory(archive_path());
    expect_refused({"MZipper::Open(): zipOpen64(" + archive_path() + ") failed",
                    "CreateZipArchive(): Open zip archive " + archive_path() + " failed"});
}

TEST_F(ZipperBadInputTest, AnArchiveThatCannotBeReadBackIsReported) {
    tree.file("a", "x");
    FaultyFiles files;
    files.fail("open", 3, EMFILE);
    expect_refused({"CreateZipArchive(): MFastfile_ReadAtOnce(" + archive_path() + ", ...) failed"});
    EXPECT_FALSE(archive_is_left());
}

TEST_F(ZipperBadInputTest, AnArchiveThatCannotBeRemovedIsReportedAndGiven) {
    tree.file("a", "x");
    FaultyFiles files;
    files.fail("remove", 2, EACCES);
    EXPECT_EQ((Texts{in_archive("a")}), names(CreateZipArchive(tree.path())));
    EXPECT_EQ((Texts{"CreateZipArchive(): file_remove(" + archive_path() + ") failed"}), own_reports());
}

std::ptrdiff_t open_files() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

TEST_F(ZipperBadInputTest, AFailureLeavesNoFileOpen) {
    fs::create_symlink("nowhere", tree.path("a"));
    const std::ptrdiff_t before = open_files();
    EXPECT_EQ("", CreateZipArchive(tree.path()));
    EXPECT_EQ(before, open_files());
    EXPECT_EQ(2U, own_reports().size());
}

}  // namespace
