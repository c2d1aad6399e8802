#include "mdirectorywalker.h"

#include <filesystem>

#include "hidden_files.h"
#include "os/path.h"
#include "reports.h"
#include "temporary_directory.h"

namespace {

class DirectoryWalkerTest : public ReportsTest {
protected:
    TemporaryDirectory m_directory;
};

// Names with their types before them.
Texts entries_of(MDirectoryWalker& walker) {
    Texts entries;
    char type = '?';
    for (const char* name = walker.GetFirst(&type); name; name = walker.GetNext(&type)) {
        entries.push_back(std::string(1, type) + name);
    }
    return entries;
}

TEST_F(DirectoryWalkerTest, WalksSortedByName) {
    std::filesystem::create_directory(m_directory.path("sub"));
    m_directory.file("b", "");
    m_directory.file("a.txt", "");
    ASSERT_TRUE(hide(m_directory.file(".hidden", "")));
    MDirectoryWalker walker;
    EXPECT_TRUE(walker.SetPath(m_directory.path().c_str()));
    const Texts expected{"d.", "d..", " .hidden", "-a.txt", "-b", "dsub"};
    EXPECT_EQ(expected, entries_of(walker));
    EXPECT_EQ(nullptr, walker.GetNext(nullptr));
    EXPECT_EQ(expected, entries_of(walker));
    EXPECT_STREQ(".", walker.GetFirst(nullptr));
}

TEST_F(DirectoryWalkerTest, GoesOnFromWhereItIs) {
    std::filesystem::create_directory(m_directory.path("sub"));
    m_directory.file("sub/x", "");
    const auto before = std::filesystem::current_path();
    MDirectoryWalker walker;
    EXPECT_EQ(before.string(), walker.GetPath());
    EXPECT_TRUE(walker.SetPath(m_directory.path().c_str()));
    EXPECT_TRUE(walker.SetPath("sub"));
    EXPECT_EQ((Texts{"d.", "d..", "-x"}), entries_of(walker));
    EXPECT_FALSE(walker.SetPath("none"));
    EXPECT_FALSE(walker.SetPath("x"));
    EXPECT_TRUE(walker.SetPath("..\\sub\\."));
    EXPECT_EQ(os::native_path(m_directory.path("sub")), os::native_path(walker.GetPath()));
    EXPECT_EQ(before, std::filesystem::current_path());
}

TEST_F(DirectoryWalkerTest, ADirectoryThatVanishedIsEmpty) {
    std::filesystem::create_directory(m_directory.path("sub"));
    MDirectoryWalker walker;
    EXPECT_TRUE(walker.SetPath(m_directory.path("sub").c_str()));
    std::filesystem::remove(m_directory.path("sub"));
    EXPECT_EQ(Texts{}, entries_of(walker));
}

}  // namespace
