#include <cerrno>

#include "faulty_files.h"
#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

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

TEST_F(ZipperBadInputTest, NoDirectoryAtAllIsNotTheRoot) {
    EXPECT_EQ("", CreateZipArchive(""));
    EXPECT_EQ((Texts{prefix + "SetPath() failed []", files_failed}), own_reports());
}

TEST_F(ZipperBadInputTest, AFolderThatVanishesBeforeItsTurnEndsTheWork) {
    fs::create_directory(tree.path("1"));
    fs::create_directory(tree.path("2"));
    tree.file("2/b", "x");
    tree.file("a", "x");
    FaultyFiles files;
    files.before("read", 1, [&] { fs::remove(tree.path("1")); });
    recording::set_trace_level(4);
    expect_refused({prefix + "SetPath() failed [" + tree.path("1\\") + "]", files_failed});
    EXPECT_EQ(prefix + "Start with [" + tree.path("1\\") + "]", recording::trace().back().text);
}

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
    files.before("open", 3, [&] { fs::remove(file); });  // two are of the archive
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
    files.before("open", 3, [&] { tree.file("a", std::string(5000, 'y')); });
    const std::string archive = CreateZipArchive(tree.path());
    const auto entries = ArchiveReader(archive).entries();
    ASSERT_EQ(1U, entries.size());
    EXPECT_EQ("y", entries[0].data);
}

TEST_F(ZipperBadInputTest, AFileThatShrinksIsPackedAsItIsRead) {
    const std::string file = tree.file("a", std::string(5000, 'x'));
    FaultyFiles files;
    files.before("open", 3, [&] { tree.file("a", "y"); });
    const std::string archive = CreateZipArchive(tree.path());
    const auto entries = ArchiveReader(archive).entries();
    ASSERT_EQ(1U, entries.size());
    EXPECT_EQ("y", entries[0].data);
}

TEST_F(ZipperBadInputTest, FilesFromFourGigabytesOnAreRefused) {
    const std::string file = tree.file("a", "x");
    const std::string larger = tree.file("b", "x");
    tree.file("c", "x");
    fs::resize_file(file, 0xFFFFFFFF);
    fs::resize_file(larger, 5'000'000'000);
    FaultyFiles files;
    expect_refused({prefix + "file is too large [" + file + "]: 4294967295",
                    prefix + "zipWriteInFileInZip() failed [" + file + "]",
                    prefix + "file is too large [" + larger + "]: 5000000000",
                    prefix + "zipWriteInFileInZip() failed [" + larger + "]", files_failed});
    EXPECT_EQ(1, files.calls("read")) << "the other file alone";
}

// The temporary archive

TEST_F(ZipperBadInputTest, AfterOneThatWasAbandonedTheNextArchiveIsWhole) {
    tree.file("a", "x");
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.AddEntry("left"));
    zipper.Abandon();
    EXPECT_EQ(34U, left_archive().size()) << "the entry's header alone";
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.FilesToZippArchive((tree.path() + "/").c_str()));
    EXPECT_TRUE(zipper.Close());
    EXPECT_EQ((Texts{in_archive("a")}), names(left_archive()));
}

TEST_F(ZipperBadInputTest, AnothersFileIsNotWrittenTo) {
    tree.file("a", "x");
    temporary.file("backup_tmp.zip", "mine");
    FaultyFiles files;
    files.fail("remove", 1, EPERM);
    expect_refused({"MZipper::Open(): zipOpen64(" + archive_path() + ") failed",
                    "CreateZipArchive(): Open zip archive " + archive_path() + " failed"});
    EXPECT_EQ("mine", left_archive());
}

TEST_F(ZipperBadInputTest, ADirectoryInItsPlaceIsReported) {
    fs::create_directory(archive_path());
    expect_refused({"MZipper::Open(): zipOpen64(" + archive_path() + ") failed",
                    "CreateZipArchive(): Open zip archive " + archive_path() + " failed"});
}

TEST_F(ZipperBadInputTest, WithoutATemporaryDirectoryItIsReported) {
    use_temporary_directory(temporary.path("missing"));
    expect_refused({"MZipper::Open(): zipOpen64(" + archive_path() + ") failed",
                    "CreateZipArchive(): Open zip archive " + archive_path() + " failed"});
}

TEST_F(ZipperBadInputTest, AnArchiveThatCannotBeReadBackIsReported) {
    tree.file("a", "x");
    // The archive is opened for that as soon as it is there, and read behind the file.
    for (const char* operation : {"open", "read"}) {
        FaultyFiles files;
        files.fail(operation, 2, EIO);
        expect_refused({"CreateZipArchive(): MFastfile_ReadAtOnce(" + archive_path() + ", ...) failed"});
        EXPECT_FALSE(archive_is_left());
        EXPECT_EQ(0, files.open_handles());
    }
}

TEST_F(ZipperBadInputTest, AnArchiveThatCannotBeRemovedIsReportedAndGiven) {
    tree.file("a", "x");
    FaultyFiles files;
    files.fail("remove", 2, EACCES);
    EXPECT_EQ((Texts{in_archive("a")}), names(CreateZipArchive(tree.path())));
    EXPECT_EQ((Texts{"CreateZipArchive(): file_remove(" + archive_path() + ") failed"}), own_reports());
}

}  // namespace
