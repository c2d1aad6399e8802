// A tree to pack, and a directory for the archive that it is packed into.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "archive_reader.h"
#include "reports.h"
#include "temporary_directory.h"
#include "zipper.h"

class ZipperTest : public ReportsTest {
protected:
    void SetUp() override {
        ReportsTest::SetUp();
        setenv("TMPDIR", temporary.path().c_str(), 1);
    }
    void TearDown() override {
        unsetenv("TMPDIR");
        ReportsTest::TearDown();
    }

    std::string archive_path() const { return temporary.path("backup_tmp.zip"); }
    bool archive_is_left() const { return std::filesystem::exists(archive_path()); }

    // A name in the tree as the archive has it.
    std::string in_archive(const std::string& name) const { return tree.path().substr(1) + "/" + name; }

    static std::vector<std::string> names(const std::string& archive) {
        std::vector<std::string> found;
        for (const ArchiveEntry& entry : ArchiveReader(archive).entries()) found.push_back(entry.name);
        return found;
    }

    TemporaryDirectory tree;
    TemporaryDirectory temporary;
};
