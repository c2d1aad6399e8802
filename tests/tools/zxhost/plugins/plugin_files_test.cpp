// Files that are no plug-in, or one that can't be used: zxhost says which, what was found and what was
// wanted.
#include "plugin_files.h"

namespace zxhost_test {
namespace {

namespace fs = std::filesystem;

// The head of a 32-bit library for Linux.
std::string elf_32() {
    std::string bytes(52, '\0');
    const std::string head =
        "\x7F"
        "ELF"
        "\x01\x01\x01";
    bytes.replace(0, head.size(), head);
    bytes[16] = 3;  // a shared library
    bytes[18] = 3;  // for x86
    return bytes;
}

// The head of a 32-bit library for Windows.
std::string pe_32() {
    std::string bytes(0x80 + 24, '\0');
    bytes.replace(0, 2, "MZ");
    bytes[0x3C] = static_cast<char>(0x80);  // where the head proper begins
    bytes.replace(0x80, 2, "PE");
    bytes.replace(0x84, 2, "\x4C\x01");  // for x86
    return bytes;
}

TEST_F(PluginFiles, OfAnotherMachineOrSystem) {
    const std::string elf = host.directory.file("elf.so", elf_32());
    expect_refusal(elf, {"elf.so is a 32-bit x86 library for Linux" + wanted});
    const std::string pe = host.directory.file("pe.dll", pe_32());
    expect_refusal(pe, {"pe.dll is a 32-bit x86 library for Windows" + wanted});
}

TEST_F(PluginFiles, ThatAreNone) {
    const std::string empty = host.directory.file("empty.dll", "");
    expect_refusal(empty, {"empty.dll is an empty file" + wanted});
    const std::string text = host.directory.file("text.dll", "a text\n");
    expect_refusal(text, {"text.dll is no library" + wanted});
    const std::string cut = host.directory.file("cut.dll", host.directory.content("text.dll").substr(0, 1));
    expect_refusal(cut, {"cut.dll is no library" + wanted});
    const std::string none = host.directory.path("none.dll");
    expect_refusal(none, {none});
}

TEST_F(PluginFiles, ThatLackAnExport) {
    expect_refusal(HALF_PLUGIN, {HALF_PLUGIN,
                                 " is no machine driver: it lacks NewMMachAbstract; wanted are IsProxy, "
                                 "NewMMachAbstract and SetDefaultTracelevel"});
}

TEST_F(PluginFiles, WhoseLibraryIsMissing) {
    const std::string plugin = lonely(NEEDY_PLUGIN);
    expect_refusal(plugin, {plugin, fs::path(NEEDED_LIBRARY).filename().string()});
}

}  // namespace
}  // namespace zxhost_test
