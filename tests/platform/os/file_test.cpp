#include "os/file.h"

#include <filesystem>

#include "file_fixture.h"
#include "os/path.h"

namespace {

TEST_F(FileTest, ModesDifferInWhatBecomesOfTheOldFile) {
    write("file", os::OpenMode::CreateNew, "one");
    EXPECT_EQ(os::no_file, m_files.open(path("file").c_str(), os::OpenMode::CreateNew, false));
    EXPECT_TRUE(failed_with(std::errc::file_exists)) << os::last_error();
    write("file", os::OpenMode::Append, "two");
    EXPECT_EQ("onetwo", m_directory.content("file"));
    write("file", os::OpenMode::Truncate, "3");
    EXPECT_EQ("3", m_directory.content("file"));
    write("new", os::OpenMode::Append, "x");
    EXPECT_EQ("x", m_directory.content("new"));
}

TEST_F(FileTest, ReadsUpToTheEnd) {
    m_directory.file("file", "0123456789");
    const os::FileHandle file = m_files.open(path("file").c_str(), os::OpenMode::Read, false);
    char buffer[20];
    std::uint32_t done = 99;
    EXPECT_TRUE(m_files.read(file, buffer, 4, done));
    EXPECT_EQ(4U, done);
    EXPECT_TRUE(m_files.read(file, buffer, 20, done));
    EXPECT_EQ(6U, done);
    EXPECT_EQ("456789", std::string(buffer, 6));
    EXPECT_TRUE(m_files.read(file, buffer, 20, done));
    EXPECT_EQ(0U, done);
    EXPECT_FALSE(m_files.write(file, "x", 1, done));
    EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTest, ADirectoryOrNothingCannotBeOpened) {
    EXPECT_EQ(os::no_file, m_files.open(path("").c_str(), os::OpenMode::Read, false));
    EXPECT_EQ(os::no_file, m_files.open(path("").c_str(), os::OpenMode::Truncate, false));
    EXPECT_EQ(os::no_file, m_files.open(path("none").c_str(), os::OpenMode::Read, false));
    EXPECT_TRUE(failed_with(std::errc::no_such_file_or_directory)) << os::last_error();
    std::uint32_t done = 0;
    char c = '\0';
    EXPECT_FALSE(m_files.read(os::no_file, &c, 1, done));
    EXPECT_FALSE(m_files.write(os::no_file, &c, 1, done));
    EXPECT_FALSE(m_files.flush(os::no_file));
    EXPECT_FALSE(m_files.close(os::no_file));
}

TEST_F(FileTest, WriteThroughAsksTheSystemForIt) {
    const os::FileHandle file = m_files.open(path("file").c_str(), os::OpenMode::Truncate, true);
    ASSERT_NE(os::no_file, file);
    EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTest, TemporaryFilesAreNewAndBesideTheTarget) {
    std::string first;
    std::string second;
    ASSERT_TRUE(m_files.make_temporary((path("") + "\\").c_str(), "ffw", first));
    ASSERT_TRUE(m_files.make_temporary(path("").c_str(), "ffw", second));
    EXPECT_NE(first, second);
    EXPECT_EQ(path(""), std::filesystem::path(first).parent_path().string());
    EXPECT_TRUE(std::filesystem::path(first).filename().string().starts_with("ffw"));
    os::FileInfo info;
    EXPECT_TRUE(m_files.info(first.c_str(), info));
    EXPECT_EQ(0, info.size);
    EXPECT_FALSE(m_files.make_temporary(path("none").c_str(), "ffw", first));
}

TEST_F(FileTest, InfoAndAccess) {
    m_directory.file("file", "12345");
    os::FileInfo info;
    EXPECT_TRUE(m_files.info(path("file").c_str(), info));
    EXPECT_EQ(5, info.size);
    EXPECT_FALSE(info.is_directory);
    EXPECT_TRUE(m_files.info(path("").c_str(), info));
    EXPECT_TRUE(info.is_directory);
    EXPECT_FALSE(m_files.info(path("none").c_str(), info));
    EXPECT_TRUE(m_files.access(path("file").c_str(), os::Access::Exists));
    EXPECT_TRUE(m_files.access(path("file").c_str(), os::Access::ReadWrite));
    EXPECT_FALSE(m_files.access(path("none").c_str(), os::Access::Exists));
}

TEST_F(FileTest, RenameReplacesAndRemoveRemoves) {
    m_directory.file("from", "new");
    m_directory.file("to", "old");
    EXPECT_TRUE(m_files.rename(path("from").c_str(), path("to").c_str()));
    EXPECT_EQ("new", m_directory.content("to"));
    EXPECT_FALSE(m_files.rename(path("from").c_str(), path("to").c_str()));
    EXPECT_TRUE(m_files.remove(path("to").c_str()));
    EXPECT_FALSE(m_files.remove(path("to").c_str()));
}

TEST_F(FileTest, MakeWritableLetsTheOwnerWrite) {
    m_directory.file("file", "x");
    std::filesystem::permissions(path("file"), std::filesystem::perms::owner_read);
    EXPECT_TRUE(m_files.make_writable(path("file").c_str()));
    EXPECT_TRUE(m_files.access(path("file").c_str(), os::Access::ReadWrite));
    write("file", os::OpenMode::Truncate, "new");
    EXPECT_FALSE(m_files.make_writable(path("none").c_str()));
}

TEST_F(FileTest, RightsComeFromAFileThatIsThere) {
    m_directory.file("old", "x");
    const os::FileHandle file = m_files.open(path("new").c_str(), os::OpenMode::CreateNew, false);
    ASSERT_NE(os::no_file, file);
    EXPECT_FALSE(m_files.take_rights(file, path("none").c_str()));
    EXPECT_TRUE(failed_with(std::errc::no_such_file_or_directory)) << os::last_error();
    EXPECT_TRUE(m_files.take_rights(file, path("old").c_str())) << os::last_error();
    EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTest, FindListsSortedByName) {
    for (const char* const name : {"b.txt", "a.txt", ".c", "d"}) m_directory.file(name, "");
    EXPECT_EQ((Names{".", "..", ".c", "a.txt", "b.txt", "d"}), names("*.*"));
    EXPECT_EQ((Names{"a.txt", "b.txt"}), names("*.txt"));
    EXPECT_EQ((Names{"a.txt", "b.txt"}), names("?.txt"));
    EXPECT_EQ(Names{"b.txt"}, names("b.txt"));
    EXPECT_EQ(Names{}, names("*.ini"));
    EXPECT_TRUE(failed_with(std::errc::no_such_file_or_directory)) << os::last_error();
    EXPECT_EQ(Names{}, names("none/*.*"));
    EXPECT_EQ(Names{}, names("b[.]*"));
}

TEST_F(FileTest, FindTellsDirectoriesFromFiles) {
    m_directory.file("file", "");
    std::filesystem::create_directory(path("dir"));
    std::vector<os::DirectoryEntry> found;
    ASSERT_TRUE(m_files.find(path("*.*").c_str(), found));
    ASSERT_EQ(4U, found.size());
    EXPECT_TRUE(found[0].is_directory);
    EXPECT_FALSE(found[0].is_hidden);
    EXPECT_EQ("dir", found[2].name);
    EXPECT_TRUE(found[2].is_directory);
    EXPECT_FALSE(found[3].is_directory);
    EXPECT_FALSE(found[3].is_hidden);
    ASSERT_TRUE(m_files.find(path("dir").c_str(), found));
    ASSERT_EQ(1U, found.size());
    EXPECT_TRUE(found[0].is_directory);
}

TEST_F(FileTest, AVerbatimPathLeadsToTheSameFile) {
    m_directory.file("file", "12345");
    std::string full;
    ASSERT_TRUE(os::full_path(path(""), full));
    const std::string verbatim = "\\\\?\\" + full + os::native_separator();
    const std::string name = verbatim + "file";
    std::vector<os::DirectoryEntry> found;
    EXPECT_TRUE(m_files.find(verbatim.c_str(), found));
    ASSERT_EQ(3U, found.size()) << "with . and ..";
    EXPECT_TRUE(m_files.find(name.c_str(), found));
    ASSERT_EQ(1U, found.size());
    EXPECT_EQ("file", found[0].name);
    EXPECT_FALSE(m_files.find((verbatim + "f*").c_str(), found)) << "a name, and no pattern";
    os::FileInfo info;
    EXPECT_TRUE(m_files.info(name.c_str(), info));
    EXPECT_EQ(5, info.size);
    EXPECT_TRUE(m_files.access(name.c_str(), os::Access::ReadWrite));
    const os::FileHandle file = m_files.open(name.c_str(), os::OpenMode::Read, false);
    EXPECT_NE(os::no_file, file);
    EXPECT_TRUE(m_files.close(file));
    EXPECT_TRUE(m_files.rename(name.c_str(), (verbatim + "new").c_str()));
    EXPECT_TRUE(m_files.remove((verbatim + "new").c_str()));
    EXPECT_FALSE(m_files.info(name.c_str(), info));
}

class NoFiles final : public os::FileSystem {
public:
    os::FileHandle open(const char*, os::OpenMode, bool) override { return os::no_file; }
    bool read(os::FileHandle, void*, std::uint32_t, std::uint32_t&) override { return false; }
    bool write(os::FileHandle, const void*, std::uint32_t, std::uint32_t&) override { return false; }
    bool flush(os::FileHandle) override { return false; }
    bool close(os::FileHandle) override { return false; }
    bool make_temporary(const char*, const char*, std::string&) override { return false; }
    bool take_rights(os::FileHandle, const char*) override { return false; }
    bool info(const char*, os::FileInfo&) override { return false; }
    bool access(const char*, os::Access) override { return false; }
    bool find(const char*, std::vector<os::DirectoryEntry>&) override { return false; }
    bool remove(const char*) override { return false; }
    bool rename(const char*, const char*) override { return false; }
    bool make_writable(const char*) override { return false; }
};

TEST_F(FileTest, TheFileSystemCanBeReplacedAndPutBack) {
    NoFiles none;
    EXPECT_EQ(&m_files, os::replace_files(&none));
    EXPECT_EQ(&none, &os::files());
    EXPECT_EQ(&none, os::replace_files(nullptr));
    EXPECT_EQ(&m_files, &os::files());
}

}  // namespace
