// What only POSIX has in the way of an archive: links, access rights, limits.
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <iterator>

#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

using ZipperBadInputTestPosix = ZipperBadInputTest;

// Links

TEST_F(ZipperBadInputTestPosix, ALinkToItselfIsNoDirectory) {
    const std::string link = tree.path("link");
    fs::create_symlink(link, link);
    EXPECT_EQ("", CreateZipArchive(link));
    EXPECT_EQ((Texts{prefix + "SetPath() failed [" + link + "/]", files_failed}), own_reports());
}

TEST_F(ZipperBadInputTestPosix, LinksInACircleLeadNowhere) {
    fs::create_symlink("b", tree.path("a"));
    fs::create_symlink("a", tree.path("b"));
    expect_refused({prefix + " file_size() failed [" + tree.path("a") + "]",
                    prefix + " file_size() failed [" + tree.path("b") + "]", files_failed});
}

TEST_F(ZipperBadInputTestPosix, ALinkToNowhereFailsAndTheOthersArePacked) {
    tree.file("z", "x");
    fs::create_symlink("nowhere", tree.path("a"));
    recording::set_trace_level(4);
    expect_refused({prefix + " file_size() failed [" + tree.path("a") + "]", files_failed});
    EXPECT_EQ(prefix + "wrote file [" + tree.path("z") + "], size: 1", recording::trace().back().text);
    EXPECT_TRUE(archive_is_left());
    EXPECT_LT(left_archive().size(), 22U + 46U) << "no archive, but its beginning";
}

TEST_F(ZipperBadInputTestPosix, ALinkIsNotWrittenThrough) {
    tree.file("a", "x");
    temporary.file("precious", "mine");
    fs::create_symlink(temporary.path("precious"), archive_path());
    EXPECT_EQ((Texts{in_archive("a")}), names(CreateZipArchive(tree.path())));
    EXPECT_EQ("mine", temporary.content("precious"));
}

// Access rights

// As long as it lives, root is somebody whom the files of others are closed to.
class OrdinaryUser {
public:
    OrdinaryUser() : m_root(geteuid() == 0) { EXPECT_TRUE(!m_root || seteuid(nobody) == 0); }
    ~OrdinaryUser() { EXPECT_TRUE(!m_root || seteuid(0) == 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    const bool m_root;
};

class ZipperRightsTestPosix : public ZipperBadInputTest {
protected:
    void SetUp() override {
        ZipperBadInputTest::SetUp();
        fs::permissions(temporary.path(), fs::perms::all);
    }
    void TearDown() override {
        for (const std::string& path : m_closed) fs::permissions(path, fs::perms::owner_all);
        ZipperBadInputTest::TearDown();
    }

    void close(const std::string& path, fs::perms left = fs::perms::none) {
        fs::permissions(path, left);
        m_closed.push_back(path);
    }

    void expect_refused_to_others(const Texts& reports) {
        const OrdinaryUser user;
        expect_refused(reports);
    }

private:
    Texts m_closed;
};

TEST_F(ZipperRightsTestPosix, AnUnreadableDirectoryIsReported) {
    tree.file("a", "x");
    close(tree.path());
    expect_refused_to_others({prefix + "SetPath() failed [" + tree.path() + "/]", files_failed});
}

TEST_F(ZipperRightsTestPosix, AnUnreadableFolderEndsTheWork) {
    fs::create_directory(tree.path("sub"));
    tree.file("a", "x");
    close(tree.path("sub"));
    expect_refused_to_others({prefix + "SetPath() failed [" + tree.path("sub\\") + "]", files_failed});
}

TEST_F(ZipperRightsTestPosix, AnUnreadableFileIsReported) {
    const std::string file = tree.file("a", "x");
    close(file);
    expect_refused_to_others({prefix + "MFastfile_ReadAtOnce(" + file + ", ...) failed", files_failed});
}

// The names in it can be read, and nothing of what they stand for.
TEST_F(ZipperRightsTestPosix, AFolderThatMayNotBeEnteredIsReported) {
    fs::create_directory(tree.path("sub"));
    tree.file("sub/a", "x");
    close(tree.path("sub"), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    expect_refused_to_others({prefix + " file_size() failed [" + tree.path("sub\\a") + "]", files_failed});
}

// As in a directory that all may write to.
TEST_F(ZipperRightsTestPosix, AFileOfAnotherOwnerIsNotWrittenTo) {
    tree.file("a", "x");
    fs::permissions(temporary.file("backup_tmp.zip", "mine"), fs::perms::all);
    const bool is_root = geteuid() == 0;
    close(temporary.path(),
          is_root ? fs::perms::all | fs::perms::sticky_bit : fs::perms::owner_read | fs::perms::owner_exec);
    expect_refused_to_others({"MZipper::Open(): zipOpen64(" + archive_path() + ") failed",
                              "CreateZipArchive(): Open zip archive " + archive_path() + " failed"});
    EXPECT_EQ("mine", left_archive());
}

// Room

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

TEST_F(ZipperBadInputTestPosix, WithoutRoomForAFileItIsReported) {
    const std::string file = tree.file("a", noise(1'000'000));
    const FileSizeLimit limit(100'000);
    expect_refused({prefix + "zipWriteInFileInZip() failed [" + file + "]", files_failed});
}

TEST_F(ZipperBadInputTestPosix, HowLittleRoomEverThereIsNoHalfArchive) {
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
TEST_F(ZipperBadInputTestPosix, ARestThatFindsNoRoomFailsTheArchive) {
    tree.file("a", noise(30'000));
    tree.file("b", noise(30'000));
    tree.file("c", noise(30'000));
    const FileSizeLimit limit(40'000);
    EXPECT_EQ("", CreateZipArchive(tree.path()));
    EXPECT_EQ("MZipper::CloseEntry(): zipCloseFileInZip(" + archive_path() + ") failed: -1",
              own_reports().front());
}

TEST_F(ZipperBadInputTestPosix, RoomThatComesBackDoesNotMendAnArchive) {
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

// Handles

std::ptrdiff_t open_files() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

TEST_F(ZipperBadInputTestPosix, AFailureLeavesNoFileOpen) {
    fs::create_symlink("nowhere", tree.path("a"));
    const std::ptrdiff_t before = open_files();
    EXPECT_EQ("", CreateZipArchive(tree.path()));
    EXPECT_EQ(before, open_files());
    EXPECT_EQ(2U, own_reports().size());
}

}  // namespace
