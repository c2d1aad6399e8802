// Archives of trees as only POSIX has them.
#include <sys/stat.h>

#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

using ZipperTestPosix = ZipperTest;

TEST_F(ZipperTestPosix, TheTemporaryDirectoryIsThatOfTheEnvironment) {
    EXPECT_EQ(temporary.path() + "/backup_tmp.zip", temp_zip_path());
    use_temporary_directory(temporary.path() + "/");
    EXPECT_EQ(temporary.path() + "/backup_tmp.zip", temp_zip_path());
    use_temporary_directory("");
    EXPECT_EQ("/tmp/backup_tmp.zip", temp_zip_path());
}

TEST_F(ZipperTestPosix, LinksToDirectoriesAreNotFollowed) {
    tree.file("a", "x");
    fs::create_directory_symlink(tree.path(), tree.path("itself"));
    fs::create_directory(tree.path("sub"));
    fs::create_directory_symlink("..", tree.path("sub/up"));
    fs::create_symlink(tree.path("a"), tree.path("link"));
    EXPECT_EQ((Texts{in_archive("a"), in_archive("link")}), names(CreateZipArchive(tree.path())));
}

// Nobody waits for what comes out of a pipe.
TEST_F(ZipperTestPosix, WhatIsNoFileHasNoSize) {
    tree.file("a", "x");
    ASSERT_EQ(0, mkfifo(tree.path("pipe").c_str(), 0600));
    EXPECT_EQ((Texts{in_archive("a")}), names(CreateZipArchive(tree.path())));
}

}  // namespace
