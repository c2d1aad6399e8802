#include <aclapi.h>
#include <sddl.h>
#include <windows.h>

#include <filesystem>

#include "file_fixture.h"
#include "os/path.h"

namespace {

using FileTestWin32 = FileTest;

bool is_inherited(os::FileHandle file) {
    DWORD flags = 0;
    EXPECT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(file), &flags));
    return (flags & HANDLE_FLAG_INHERIT) != 0;
}

TEST_F(FileTestWin32, AReaderLetsOthersReadAndWriteAWriterLetsThemRead) {
    m_directory.file("file", "x");
    const std::string name = path("file");
    const os::FileHandle reader = m_files.open(name.c_str(), os::OpenMode::Read, false);
    EXPECT_TRUE(is_inherited(reader));
    const os::FileHandle writer = m_files.open(name.c_str(), os::OpenMode::Append, false);
    EXPECT_NE(os::no_file, writer);
    EXPECT_FALSE(is_inherited(writer));
    EXPECT_EQ(os::no_file, m_files.open(name.c_str(), os::OpenMode::Append, false));
    EXPECT_EQ(ERROR_SHARING_VIOLATION, static_cast<DWORD>(os::last_error()));
    const os::FileHandle second = m_files.open(name.c_str(), os::OpenMode::Read, false);
    EXPECT_NE(os::no_file, second);
    for (const os::FileHandle file : {reader, writer, second}) EXPECT_TRUE(m_files.close(file));
}

TEST_F(FileTestWin32, ADirectoryIsDenied) {
    EXPECT_EQ(os::no_file, m_files.open(path("").c_str(), os::OpenMode::Read, false));
    EXPECT_EQ(ERROR_ACCESS_DENIED, static_cast<DWORD>(os::last_error()));
}

TEST_F(FileTestWin32, AnEmptyDirectoryIsTheCurrentOne) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(path(""));
    std::string made;
    EXPECT_TRUE(m_files.make_temporary("", "ffw", made)) << os::error_text(os::last_error());
    std::filesystem::current_path(before);
    EXPECT_TRUE(made.starts_with(".\\ffw")) << made;
    EXPECT_EQ((Names{std::filesystem::path(made).filename().string()}), names("ffw*.tmp"));
}

TEST_F(FileTestWin32, AttributesTellWhatIsHidden) {
    for (const char* const name : {"hidden", "plain", "system"}) m_directory.file(name, "");
    SetFileAttributesA(path("hidden").c_str(), FILE_ATTRIBUTE_HIDDEN);
    SetFileAttributesA(path("system").c_str(), FILE_ATTRIBUTE_SYSTEM);
    std::string hidden;
    std::vector<os::DirectoryEntry> found;
    ASSERT_TRUE(m_files.find(path("*.*").c_str(), found));
    for (const auto& entry : found) hidden += entry.is_hidden ? entry.name + ' ' : "";
    EXPECT_EQ("hidden system ", hidden);
}

// A file's list of rights, in the text form that the system has for it.
std::string rights(const std::string& file) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    char* text = nullptr;
    EXPECT_EQ(0U, GetNamedSecurityInfoA(file.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, nullptr, nullptr, &descriptor));
    EXPECT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorA(
        descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr));
    const std::string out = text;
    LocalFree(text);
    LocalFree(descriptor);
    return out;
}

// Lets the owner alone do anything.
void make_private(const std::string& file) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA("D:P(A;;FA;;;OW)(A;;FA;;;BA)",
                                                                     SDDL_REVISION_1, &descriptor, nullptr));
    ASSERT_TRUE(SetFileSecurityA(file.c_str(), DACL_SECURITY_INFORMATION, descriptor)) << GetLastError();
    LocalFree(descriptor);
}

TEST_F(FileTestWin32, AFileTakesTheRightsOfAnother) {
    m_directory.file("old", "x");
    make_private(path("old"));
    const os::FileHandle file = m_files.open(path("new").c_str(), os::OpenMode::CreateNew, false);
    ASSERT_NE(os::no_file, file);
    EXPECT_NE(rights(path("old")), rights(path("new")));
    EXPECT_TRUE(m_files.take_rights(file, path("old").c_str())) << os::error_text(os::last_error());
    EXPECT_EQ(rights(path("old")), rights(path("new")));
    EXPECT_TRUE(m_files.close(file));
}

// Deeper than the services that take bytes can follow.
TEST_F(FileTestWin32, LongPathsAreReachedVerbatim) {
    std::string directory = path("") + "\\";
    std::wstring made = L"\\\\?\\" + std::filesystem::path(path("")).make_preferred().wstring();
    for (int depth = 0; depth < 6; ++depth) {
        const std::string name(50, static_cast<char>('a' + depth));
        directory = os::entry_path(directory, name) + "\\";
        made += L"\\" + std::wstring(name.begin(), name.end());
        ASSERT_TRUE(CreateDirectoryW(made.c_str(), nullptr)) << GetLastError();
    }
    ASSERT_TRUE(os::is_verbatim(directory)) << directory;
    const std::string name = os::entry_path(directory, "file");
    const os::FileHandle file = m_files.open(name.c_str(), os::OpenMode::CreateNew, false);
    ASSERT_NE(os::no_file, file) << os::error_text(os::last_error());
    std::uint32_t done = 0;
    EXPECT_TRUE(m_files.write(file, "12345", 5, done));
    EXPECT_TRUE(m_files.close(file));
    std::vector<os::DirectoryEntry> found;
    ASSERT_TRUE(m_files.find(directory.c_str(), found));
    ASSERT_EQ(3U, found.size());
    EXPECT_EQ("file", found[2].name);
    os::FileInfo info;
    EXPECT_TRUE(m_files.info(name.c_str(), info));
    EXPECT_EQ(5, info.size);
    EXPECT_TRUE(m_files.make_writable(name.c_str()));
    EXPECT_TRUE(m_files.remove(name.c_str()));
}

TEST_F(FileTestWin32, ASeparatorBehindADirectoryIsNoMatter) {
    std::filesystem::create_directory(path("dir"));
    os::FileInfo info;
    for (const char* const name : {"dir", "dir/", "dir\\", "dir\\/"}) {
        info.is_directory = false;
        EXPECT_TRUE(m_files.info(path(name).c_str(), info)) << name;
        EXPECT_TRUE(info.is_directory) << name;
    }
    EXPECT_TRUE(m_files.info("c:\\", info));
    EXPECT_TRUE(info.is_directory);
}

}  // namespace
