// Others that use the same temporary archive.
#include <future>

#include "faulty_files.h"
#include "zipper_fixture.h"

namespace fs = std::filesystem;

namespace {

class ZipperAtOnceTest : public ZipperBadInputTest {
protected:
    // What was done with files, removing and reading alone.
    static Texts removed_and_read(const FaultyFiles& files) {
        Texts calls;
        for (const std::string& call : files.all_calls())
            if (call == "remove" || call == "read") calls.push_back(call);
        return calls;
    }

    TemporaryDirectory other_tree;
};

TEST_F(ZipperAtOnceTest, TheSecondBeginsWhenTheFirstHasEnded) {
    for (int i = 0; i < 100; ++i) tree.file(std::to_string(1000 + i), std::to_string(i));
    other_tree.file("a", noise(1000));
    FaultyFiles files;
    std::future<std::string> second;
    files.before("read", 1, [&] {
        std::promise<void> running;
        second = std::async(std::launch::async, [&, running = &running] {
            running->set_value();
            return CreateZipArchive(other_tree.path());
        });
        running.get_future().wait();
    });
    const std::string first = CreateZipArchive(tree.path());
    EXPECT_EQ((Texts{without_root(other_tree.path()) + "/a"}), names(second.get()));
    EXPECT_EQ(100U, names(first).size());
    Texts expected{"remove"};
    expected.insert(expected.end(), 101, "read");
    expected.insert(expected.end(), {"remove", "remove", "read", "read", "remove"});
    EXPECT_EQ(expected, removed_and_read(files));
}

TEST_F(ZipperAtOnceTest, AnotherProcessMayTakeThePathOver) {
    tree.file("a", noise(1000));
    FaultyFiles files;
    files.before("read", 1, [&] {
        std::error_code where_open_files_stay;
        if (fs::remove(archive_path(), where_open_files_stay)) {
            temporary.file("backup_tmp.zip", std::string(100'000, 'x'));
        }
    });
    const std::string archive = CreateZipArchive(tree.path());
    EXPECT_EQ((Texts{in_archive("a")}), names(archive));
    EXPECT_EQ(noise(1000), ArchiveReader(archive).entries().at(0).data);
}

TEST_F(ZipperAtOnceTest, WhatIsReadBackHasNoBound) {
    for (const std::size_t size : {std::size_t{65'000}, std::size_t{200'000}, std::size_t{1'000'000}}) {
        tree.file("a", noise(size));
        FaultyFiles files;
        files.before("read", 1, [&] {
            std::error_code where_open_files_stay;
            fs::remove(archive_path(), where_open_files_stay);
        });
        const std::string archive = CreateZipArchive(tree.path());
        EXPECT_EQ(noise(size), ArchiveReader(archive).entries().at(0).data);
        EXPECT_GE(1U, own_reports().size()) << "that it can't be removed again, at most";
    }
}

}  // namespace
