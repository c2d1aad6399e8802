// What the packages hold and say of themselves.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "temporary_directory.h"
#include "test_process.h"

namespace {

namespace fs = std::filesystem;
using test_support::run_process;
using Names = std::set<std::string>;

std::string package(const std::string& name) {
    for (const auto& entry : fs::directory_iterator(PACKAGES)) {
        const std::string file = entry.path().filename().string();
        if (file.starts_with(name + "_" VERSION "-1_") && file.ends_with(".deb"))
            return entry.path().string();
    }
    ADD_FAILURE() << "no package " << name << " in " PACKAGES;
    return "";
}

// The files of a package below /usr, without folders.
Names files_of(const std::string& name) {
    const auto listing = run_process(DPKG_DEB, {"--contents", package(name)});
    EXPECT_EQ(listing.exit_status, 0) << listing.err;
    std::istringstream lines(listing.out);
    Names files;
    for (std::string line; std::getline(lines, line);) {
        const std::string path = line.substr(line.find(" ./") + 2);
        if (path.ends_with('/')) continue;
        EXPECT_TRUE(path.starts_with("/usr/")) << line;
        files.insert(path.substr(5));
    }
    return files;
}

std::string field(const std::string& name, const std::string& field) {
    std::string text = run_process(DPKG_DEB, {"--field", package(name), field}).out;
    while (text.ends_with('\n')) text.pop_back();
    return text;
}

void add_files(Names& names, const std::string& folder, const std::string& ending, const std::string& where) {
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(SOURCES) / folder)) {
        if (entry.path().extension() != ending) continue;
        names.insert(where + fs::relative(entry.path(), fs::path(SOURCES) / folder).generic_string());
    }
}

std::string content(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

bool is_elf(const std::string& bytes) {
    return bytes.starts_with(
        "\x7f"
        "ELF");
}

// Calls visit(path, content) for each unpacked file that is no link.
template <class Visit>
void for_each_file(Visit visit) {
    int visited = 0;
    for (const auto& entry : fs::recursive_directory_iterator(INSTALLED)) {
        if (entry.is_symlink() || !entry.is_regular_file()) continue;
        visit(entry.path().string(), content(entry.path()));
        ++visited;
    }
    EXPECT_GT(visited, 50);
}

TEST(InstalledPackagesPosix, TheToolsAreProgramsLibrariesMachinesAndDocs) {
    Names wanted{"bin/zendrix-sim -> ../lib/m2zendrix/zendrix-sim", "bin/zxhost -> ../lib/m2zendrix/zxhost"};
    for (const char* const file : {"liberrorlog.so", "liberrortrace.so", "libm2zendrix.so", "libserverdll.so",
                                   "libtrace.so", "zendrix-sim", "zendrix-sim.dll", "zxhost"})
        wanted.insert(std::string("lib/m2zendrix/") + file);
    add_files(wanted, "machines", ".ini", "share/m2zendrix/machines/");
    add_files(wanted, "docs", ".md", "share/doc/m2zendrix-tools/");
    EXPECT_EQ(files_of("m2zendrix-tools"), wanted);
}

TEST(InstalledPackagesPosix, TheSdkIsHeadersOneLibraryAndTheExample) {
    Names wanted{"include/m2zendrix/append_number.h",
                 "include/m2zendrix/czendrixcom.h",
                 "include/m2zendrix/merrlog.h",
                 "include/m2zendrix/merrtrace.h",
                 "include/m2zendrix/messagecatalogue.h",
                 "include/m2zendrix/moutputchannel.h",
                 "include/m2zendrix/mtrace.h",
                 "include/m2zendrix/os/library.h",
                 "include/m2zendrix/os/mutex.h",
                 "include/m2zendrix/os/printf_format.h",
                 "lib/cmake/m2zendrix/m2zendrixConfig.cmake",
                 "lib/cmake/m2zendrix/m2zendrixConfigVersion.cmake",
                 "lib/libm2zendrix_host.a",
                 "lib/pkgconfig/m2zendrix.pc",
                 "share/m2zendrix/examples/host/CMakeLists.txt",
                 "share/m2zendrix/examples/host/host.cpp"};
    add_files(wanted, "machine_interface", ".h", "include/m2zendrix/");
    EXPECT_EQ(files_of("m2zendrix-dev"), wanted);
}

TEST(InstalledPackagesPosix, TheirControlFilesSayWhatTheyNeed) {
    EXPECT_EQ(field("m2zendrix-tools", "Version"), VERSION "-1");
    EXPECT_NE(field("m2zendrix-tools", "Maintainer"), "");
    const std::string needed = field("m2zendrix-tools", "Depends");
    for (const char* const library :
         {"libc6 (>= ", "libstdc++6 (>= ", "libgcc-s1 (>= ", "zlib1g (>= ", "libminizip1", "libedit2 (>= "})
        EXPECT_NE(needed.find(library), std::string::npos) << library << " in: " << needed;
    for (const char* const none : {"spdlog", "fmt", "asio", "m2zendrix"})
        EXPECT_EQ(needed.find(none), std::string::npos) << needed;

    EXPECT_EQ(field("m2zendrix-dev", "Version"), VERSION "-1");
    EXPECT_EQ(field("m2zendrix-dev", "Depends"), "m2zendrix-tools (= " VERSION "-1)");
    EXPECT_EQ(field("m2zendrix-dev", "Architecture"), field("m2zendrix-tools", "Architecture"));
}

TEST(InstalledPackagesPosix, NoFileKnowsWhereItWasBuilt) {
    for_each_file([](const std::string& path, const std::string& bytes) {
        for (const char* const folder : {SOURCES, PACKAGES}) {
            const std::size_t at = bytes.find(folder);
            EXPECT_EQ(at, std::string::npos) << path << ": " << bytes.substr(std::min(at, bytes.size()), 100);
        }
    });
}

TEST(InstalledPackagesPosix, LibrariesAreLookedForBesideEachOther) {
    int looked_at = 0;
    for_each_file([&](const std::string& path, const std::string& bytes) {
        if (!is_elf(bytes)) return;
        ++looked_at;
        const std::string tags = run_process(READELF, {"--dynamic", "--wide", path}).out;
        const std::size_t at = tags.find("(RUNPATH)");
        if (at != std::string::npos) {
            const std::string line = tags.substr(at, tags.find('\n', at) - at);
            EXPECT_NE(line.find("[$ORIGIN]"), std::string::npos) << path << ": " << line;
        }
        EXPECT_EQ(tags.find("(RPATH)"), std::string::npos) << path;
    });
    EXPECT_EQ(looked_at, 8);
}

TEST(InstalledPackagesPosix, EveryHeaderFindsWhatItIncludes) {
    const std::string folder = INSTALLED "/include/m2zendrix";
    std::string all;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".h")
            all += "#include \"" + fs::relative(entry.path(), folder).string() + "\"\n";
    const TemporaryDirectory directory;
    const auto compiled = run_process(CXX, {"-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Wpedantic",
                                            "-Werror", "-I" + folder, directory.file("all.cpp", all)});
    EXPECT_EQ(compiled.exit_status, 0) << compiled.err;
}

}  // namespace
