// A tree to pack, and a directory for the archive that it is packed into.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "archive_reader.h"
#include "reports.h"
#include "temporary_directory.h"
#include "zipper.h"

// What the process takes for the temporary directory and for the local time; empty: the system's own.
void use_temporary_directory(const std::string& path);
void use_time_zone(const std::string& zone);

class ZipperTest : public ReportsTest {
protected:
    void SetUp() override {
        ReportsTest::SetUp();
        use_temporary_directory(temporary.path());
    }
    void TearDown() override {
        use_temporary_directory("");
        ReportsTest::TearDown();
    }

    std::string archive_path() const { return temp_zip_path(); }
    std::string left_archive() const { return temporary.content("backup_tmp.zip"); }
    bool archive_is_left() const { return std::filesystem::exists(archive_path()); }

    // A name in the tree as the archive has it.
    std::string in_archive(const std::string& name) const { return without_root(tree.path()) + "/" + name; }

    static std::string without_root(const std::string& path) {
        return path.substr(path.find_first_not_of("\\/"));
    }

    static std::vector<std::string> names(const std::string& archive) {
        std::vector<std::string> found;
        for (const ArchiveEntry& entry : ArchiveReader(archive).entries()) found.push_back(entry.name);
        return found;
    }

    TemporaryDirectory tree;
    TemporaryDirectory temporary;
};

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

    const std::string prefix = "MZipper::FilesToZippArchive(): ";
    const std::string files_failed = "CreateZipArchive(): Files to zip archive failed";
};

// Bytes that don't get shorter.
inline std::string noise(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 1;
    for (char& c : bytes) {
        state = state * 1664525 + 1013904223;
        c = static_cast<char>(state >> 24);
    }
    return bytes;
}
