// What the plug-in's file offers, and what it needs.
#include <gtest/gtest.h>

#include <algorithm>

#include "linkage.h"

namespace {

const Names closed_libraries{CLOSED_LIBRARIES};
const Names archive_libraries{"zlib1.dll", "libz.so.1", "libminizip.so.1"};
const Names runtime_libraries{"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll",
                              "libstdc++.so.6",  "libgcc_s.so.1",      "libc++.so.1"};
const Names system_libraries{"kernel32.dll",    "msvcrt.dll",          "advapi32.dll", "ws2_32.dll",
                             "mswsock.dll",     "libc.so.6",           "libm.so.6",    "libdl.so.2",
                             "libpthread.so.0", "ld-linux-x86-64.so.2"};
// Of an instrumented build.
const Names sanitizers{"libasan.so.8", "libubsan.so.1", "libtsan.so.2"};

bool is_allowed(const std::string& library) {
    const auto groups = {&closed_libraries, &archive_libraries, &runtime_libraries, &system_libraries,
                         &sanitizers};
    return std::any_of(groups.begin(), groups.end(),
                       [&](const Names* group) { return group->contains(library); });
}

TEST(PluginFile, ExportsThreeNamesAndNotOneMore) {
    EXPECT_EQ(exported_names(PLUGIN), (Names{"IsProxy", "NewMMachAbstract", "SetDefaultTracelevel"}));
}

TEST(PluginFile, NeedsTheSystemTheRuntimeTheArchivesAndTheClosedLibrariesOnly) {
    const Names needed = needed_libraries(PLUGIN);
    for (const std::string& library : needed) EXPECT_TRUE(is_allowed(library)) << library;
    for (const std::string& library : closed_libraries) EXPECT_TRUE(needed.contains(library)) << library;
}

}  // namespace
