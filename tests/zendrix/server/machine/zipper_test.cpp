#include <ctime>

#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

// One entry at a time

TEST_F(ZipperTest, AnEntryLosesTheSeparatorsAtItsStart) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    EXPECT_TRUE(zipper.AddEntry("\\/\\//a/\\b"));
    EXPECT_TRUE(zipper.AddEntry("C:\\d"));
    zipper.CloseEntry();
    EXPECT_TRUE(zipper.AddEntry("plain"));
    EXPECT_TRUE(zipper.Close());
    EXPECT_EQ((Texts{"a/\\b", "C:\\d", "plain"}), names(left_archive()));
}

TEST_F(ZipperTest, AClosedArchiveTakesNoEntry) {
    MZipper zipper;
    EXPECT_FALSE(zipper.AddEntry("a"));
    zipper.CloseEntry();
    EXPECT_TRUE(zipper.Close());
    ASSERT_TRUE(zipper.Open(archive_path()));
    EXPECT_TRUE(zipper.Close());
    EXPECT_FALSE(zipper.AddEntry("a"));
    EXPECT_EQ(Texts{}, names(left_archive()));
}

TEST_F(ZipperTest, ClosingTheArchiveLeavesTheWordOfAnOpenEntry) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    ASSERT_TRUE(zipper.AddEntry("a"));
    EXPECT_TRUE(zipper.Close());
    EXPECT_TRUE(zipper.AddEntry("b"));
    zipper.CloseEntry();
    EXPECT_FALSE(zipper.AddEntry("b"));
    EXPECT_EQ((Texts{"a"}), names(left_archive()));
}

TEST_F(ZipperTest, AnotherArchiveClosesTheFirst) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(temporary.path("first")));
    ASSERT_TRUE(zipper.AddEntry("a"));
    zipper.CloseEntry();
    ASSERT_TRUE(zipper.Open(temporary.path("second")));
    EXPECT_EQ((Texts{"a"}), names(temporary.content("first")));
    EXPECT_TRUE(zipper.Close());
    EXPECT_EQ(Texts{}, names(temporary.content("second")));
}

TEST_F(ZipperTest, AnArchiveTakesThePlaceOfAFile) {
    temporary.file("backup_tmp.zip", std::string(100'000, 'x'));
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    EXPECT_TRUE(zipper.Close());
    EXPECT_EQ(22U, left_archive().size());
}

TEST_F(ZipperTest, APathMayBeBuiltWithBackslashes) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(temporary.path() + "\\a.zip"));
    EXPECT_TRUE(zipper.Close());
    EXPECT_EQ(22U, temporary.content("a.zip").size());
}

TEST_F(ZipperTest, AnArchiveThatCannotBeMadeIsReported) {
    MZipper zipper;
    const std::string path = temporary.path("missing/a.zip");
    EXPECT_FALSE(zipper.Open(path));
    EXPECT_EQ((Texts{"MZipper::Open(): zipOpen64(" + path + ") failed"}), trace_reports());
    EXPECT_FALSE(zipper.AddEntry("a"));
}

TEST_F(ZipperTest, AnEntryThatCannotBeMadeIsReported) {
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    const std::string name(0x10000, 'n');
    EXPECT_FALSE(zipper.AddEntry(("/" + name).c_str()));
    EXPECT_EQ((Texts{"MZipper::AddEntry(): zipOpenNewFileInZip() failed [" + name + "]: -102"}),
              trace_reports());
    EXPECT_TRUE(zipper.Close());
}

// A tree

TEST_F(ZipperTest, FilesComeSortedAndBeforeThoseOfFolders) {
    fs::create_directories(tree.path("a/deep"));
    fs::create_directories(tree.path("m"));
    tree.file("z.txt", "last");
    tree.file(".hidden", "too");
    tree.file("b.txt", "first");
    tree.file("a/deep/1", "one");
    tree.file("a/2", "two");
    tree.file("m/3", "three");
    const std::string archive = CreateZipArchive(tree.path());
    const auto entries = ArchiveReader(archive).entries();
    EXPECT_EQ((Texts{in_archive(".hidden"), in_archive("b.txt"), in_archive("z.txt"), in_archive("a\\2"),
                     in_archive("a\\deep\\1"), in_archive("m\\3")}),
              names(archive));
    ASSERT_EQ(6U, entries.size());
    EXPECT_EQ("first", entries[1].data);
    EXPECT_EQ("one", entries[4].data);
    EXPECT_FALSE(archive_is_left());
}

TEST_F(ZipperTest, EntriesHaveTheTimeOfNowAndNothingMore) {
    const fs::path file = tree.file("a", std::string(1000, 'a'));
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(9000));
    const auto dos_time = [] {
        const std::time_t now = std::time(nullptr);
        const std::tm t = *std::localtime(&now);
        return static_cast<std::uint32_t>((t.tm_year - 80) << 25 | (t.tm_mon + 1) << 21 | t.tm_mday << 16 |
                                          t.tm_hour << 11 | t.tm_min << 5 | t.tm_sec / 2);
    };
    const std::uint32_t before = dos_time();
    const std::string archive = CreateZipArchive(tree.path());
    const std::uint32_t after = dos_time();
    const auto entries = ArchiveReader(archive).entries();
    ASSERT_EQ(1U, entries.size());
    EXPECT_LE(before, entries[0].time);
    EXPECT_GE(after, entries[0].time);
    EXPECT_EQ(8U, entries[0].method);
    EXPECT_EQ(2U, entries[0].flags) << "the best compression, and nothing else";
    EXPECT_EQ(0U, entries[0].external_attributes);
    EXPECT_EQ(0U, entries[0].extra_size);
    EXPECT_EQ(0U, entries[0].comment_size);
}

TEST_F(ZipperTest, AnEmptyDirectoryGivesAnArchiveWithoutEntries) {
    EXPECT_EQ(Texts{}, names(CreateZipArchive(tree.path())));
    EXPECT_FALSE(archive_is_left());
}

TEST_F(ZipperTest, EmptyFilesAndFoldersLeaveNoTrace) {
    fs::create_directories(tree.path("empty/too"));
    tree.file("nothing", "");
    tree.file("something", "x");
    EXPECT_EQ((Texts{in_archive("something")}), names(CreateZipArchive(tree.path())));
}

TEST_F(ZipperTest, ADirectoryMayEndInASeparatorOrNot) {
    tree.file("a", "x");
    EXPECT_EQ((Texts{in_archive("a")}), names(CreateZipArchive(tree.path() + "/")));
    EXPECT_EQ((Texts{without_root(tree.path()) + "\\a"}), names(CreateZipArchive(tree.path() + "\\")));
}

TEST_F(ZipperTest, TheWalkAddsNoSeparator) {
    tree.file("a", "x");
    MZipper zipper;
    ASSERT_TRUE(zipper.Open(archive_path()));
    EXPECT_FALSE(zipper.FilesToZippArchive(tree.path().c_str()));
    const Texts reports = trace_reports();
    ASSERT_EQ(2U, reports.size());
    EXPECT_EQ("MZipper::FilesToZippArchive():  file_size() failed [" + tree.path() + "a]", reports[1]);
    EXPECT_TRUE(zipper.Close());
}

TEST_F(ZipperTest, ARelativeDirectoryStartsFromTheCurrentOne) {
    fs::create_directory(tree.path("sub"));
    tree.file("sub/a", "x");
    const fs::path before = fs::current_path();
    fs::current_path(tree.path());
    const auto found = names(CreateZipArchive("sub"));
    EXPECT_TRUE(fs::equivalent(tree.path(), fs::current_path()));
    fs::current_path(before);
    EXPECT_EQ((Texts{"sub/a"}), found);
}

TEST_F(ZipperTest, TheSameTreePackedTwiceDiffersInTheTimesAlone) {
    fs::create_directory(tree.path("sub"));
    for (int i = 0; i < 20; ++i) {
        tree.file("sub/" + std::to_string(i), std::string(static_cast<std::size_t>(i) * 1000, 'a'));
    }
    const std::string first = CreateZipArchive(tree.path());
    use_time_zone("EST5");  // another hour of the day
    const std::string second = CreateZipArchive(tree.path());
    use_time_zone("");
    EXPECT_NE(first, second);
    EXPECT_EQ(ArchiveReader(first).timeless(), ArchiveReader(second).timeless());
}

TEST_F(ZipperTest, TheTraceTellsOfTheWalk) {
    fs::create_directory(tree.path("sub"));
    tree.file("full", "12345");
    tree.file("empty", "");
    recording::set_trace_level(4);
    CreateZipArchive(tree.path());
    recording::set_trace_level(3);
    CreateZipArchive(tree.path());
    const std::string start = "MZipper::FilesToZippArchive(): ";
    const std::string root = tree.path() + "/";
    Texts lines;
    for (const auto& line : recording::trace()) {
        EXPECT_EQ("default", line.channel);
        EXPECT_EQ(4, line.level);
        lines.push_back(line.text);
    }
    EXPECT_EQ(
        (Texts{start + "Start with [" + root + "]", start + "found file [" + root + "empty]",
               start + "found file [" + root + "full]", start + "found sub-folder [sub]",
               start + "found file with size=0 [" + root + "empty]",
               start + "wrote file [" + root + "full], size: 5", start + "Start with [" + root + "sub\\]"}),
        lines);
}

TEST_F(ZipperTest, TheTemporaryArchiveStandsInTheSystemsDirectory) {
    const fs::path path = temp_zip_path();
    EXPECT_EQ("backup_tmp.zip", path.filename());
    EXPECT_TRUE(fs::equivalent(temporary.path(), path.parent_path()));
}

// The unfinished archive is packed as it is found.
TEST_F(ZipperTest, TheTemporaryArchiveMayLieInTheTree) {
    tree.file("a", noise(100'000));
    use_temporary_directory(tree.path());
    tree.file("backup_tmp.zip", "an old one");
    tree.file("c", "x");
    const std::string archive = CreateZipArchive(tree.path());
    EXPECT_EQ((Texts{in_archive("a"), in_archive("backup_tmp.zip"), in_archive("c")}), names(archive));
    EXPECT_FALSE(archive_is_left());
}

}  // namespace
