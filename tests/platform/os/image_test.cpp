#include "image.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "library_fault.h"
#include "temporary_directory.h"

namespace {

std::string number(std::uint32_t value, std::size_t size) {
    std::string bytes;
    for (; size > 0; --size, value >>= 8) bytes.push_back(static_cast<char>(value & 0xFF));
    return bytes;
}

std::string elf(std::uint32_t machine) {
    return "\x7F"
           "ELF\x02\x01" +
           std::string(12, '\0') + number(machine, 2) + std::string(64, '\0');
}

std::string pe(std::uint32_t machine) {
    return "MZ" + std::string(58, '\0') + number(64, 4) + std::string("PE\0\0", 4) + number(machine, 2);
}

class ImageTest : public testing::Test {
protected:
    std::string file(const std::string& bytes) { return m_directory.file("file.dll", bytes); }
    std::string kind(const std::string& bytes) { return os::image_kind(file(bytes)).text; }

private:
    TemporaryDirectory m_directory;
};

TEST_F(ImageTest, TellsSystemAndMachine) {
    EXPECT_EQ("a 64-bit x86-64 library for Linux", kind(elf(62)));
    EXPECT_EQ("a 32-bit x86 library for Linux", kind(elf(3)));
    EXPECT_EQ("a 64-bit ARM library for Linux", kind(elf(183)));
    EXPECT_EQ("a machine 8 library for Linux", kind(elf(8)));
    EXPECT_EQ("a 64-bit x86-64 library for Windows", kind(pe(0x8664)));
    EXPECT_EQ("a 32-bit x86 library for Windows", kind(pe(0x14C)));
    EXPECT_EQ("a 32-bit ARM library for Windows", kind(pe(0x1C4)));
}

TEST_F(ImageTest, ReadsNumbersInTheFilesOwnOrder) {
    std::string bytes = elf(0);
    bytes[5] = 2;
    bytes[19] = 22;
    EXPECT_EQ("a machine 22 library for Linux", kind(bytes));
}

TEST_F(ImageTest, TellsWhatIsNoLibrary) {
    EXPECT_EQ("no library", kind("[settings]\n"));
    EXPECT_EQ("no library", kind("MZ"));
    EXPECT_EQ("no library", kind("MZ" + std::string(58, '\0') + number(0xFFFFFFFF, 4)));
    EXPECT_EQ("an empty file", kind(""));
    const std::string nothing = file("");
    std::filesystem::remove(nothing);
    EXPECT_EQ("no file", os::image_kind(nothing).text);
    EXPECT_EQ("no file", os::image_kind(std::filesystem::path(nothing).parent_path().string()).text);
}

TEST_F(ImageTest, WhatIsCutOrWrongHasNoNames) {
    for (const std::string& bytes : {std::string(), elf(62), pe(0x8664), pe(0x8664) + std::string(18, '\xFF'),
                                     pe(0x8664) + std::string(400, '\xFF')}) {
        EXPECT_TRUE(os::image_imports(file(bytes)).empty());
        EXPECT_TRUE(os::image_exports(file(bytes)).empty());
    }
}

TEST_F(ImageTest, WhatIsAsWantedHasNoFault) {
    const std::string good = file(elf(62));
    const auto nowhere = [](const std::string&) { return std::string(); };
    EXPECT_EQ("", os::library_fault(good, good, nowhere));
    EXPECT_EQ("", os::library_fault(good + "x", good, nowhere)) << "the system's words do";
}

}  // namespace
