// What other programs make of our archives, and of names that only POSIX allows.
#include <fstream>

#include "test_process.h"
#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

class ZipperProgramsTestPosix : public ZipperTest {
protected:
    // Packs the tree, and has the other programs read the archive; the names in it.
    Texts pack_and_test() {
        const std::string archive = CreateZipArchive(tree.path());
        EXPECT_FALSE(archive.empty());
        const std::string path = temporary.file("archive.zip", archive);
        expect_opens("unzip", {"-tqq", path});
        expect_opens("python3", {"-m", "zipfile", "-t", path});
        expect_opens("7z", {"t", "-bd", path});
        return names(archive);
    }

private:
    static void expect_opens(const std::string& program, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), program);
        const auto result = test_support::run_process("/usr/bin/env", arguments, {{"LC_ALL", "C"}});
        EXPECT_EQ(0, result.exit_status) << program << '\n' << result.out << result.err;
    }
};

TEST_F(ZipperProgramsTestPosix, OthersOpenATreeOfTenThousandFiles) {
    Texts expected;
    for (int i = 0; i < 100; ++i) {
        const std::string folder = std::to_string(1000 + i);
        fs::create_directory(tree.path(folder));
        for (int j = 0; j < 100; ++j) {
            const std::string name = std::to_string(1000 + j);
            std::ofstream(tree.path(folder + "/" + name)) << "content of " << i << ", " << j;
            expected.push_back(in_archive(folder + "\\" + name));
        }
    }
    EXPECT_EQ(expected, pack_and_test());
}

TEST_F(ZipperProgramsTestPosix, NamesMayHoldEveryByteOfTheFileSystem) {
    Texts expected;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '/') continue;
        const std::string name = std::string(1, static_cast<char>(byte)) + "x";
        tree.file(name, "content of " + std::to_string(byte));
        expected.push_back(in_archive(name));
    }
    const Texts found = pack_and_test();
    EXPECT_EQ(254U, found.size());
    EXPECT_EQ(expected, found);
}

TEST_F(ZipperProgramsTestPosix, AnEmptyTreeIsAnArchiveForMost) {
    // unzip warns of an archive without entries.
    const std::string path = temporary.file("archive.zip", CreateZipArchive(tree.path()));
    EXPECT_EQ(0, test_support::run_process("/usr/bin/env", {"7z", "t", path}).exit_status);
    EXPECT_EQ(
        0, test_support::run_process("/usr/bin/env", {"python3", "-m", "zipfile", "-t", path}).exit_status);
}

// What looks like a path, or like many names, is the name of one file.
TEST_F(ZipperProgramsTestPosix, NamesThatAPathWouldTakeOtherwiseAreNames) {
    fs::create_directories(tree.path("a"));
    fs::create_directories(tree.path("we\\ird/*.*"));
    tree.file("a/b", "of the folder");
    tree.file("a\\b", "of the file");
    tree.file("*.*", "all");
    tree.file("we\\ird/*", "star");
    tree.file("we\\ird/*.*/c\\", "end");
    tree.file("we\\ird/*.*/?", "question");
    const std::string archive = CreateZipArchive(tree.path());
    Texts found;
    for (const ArchiveEntry& entry : ArchiveReader(archive).entries()) {
        found.push_back(entry.name.substr(tree.path().size()) + " = " + entry.data);
    }
    EXPECT_EQ((Texts{"*.* = all", "a\\b = of the file", "a\\b = of the folder", "we\\ird\\* = star",
                     "we\\ird\\*.*\\? = question", "we\\ird\\*.*\\c\\ = end"}),
              found);
}

}  // namespace
