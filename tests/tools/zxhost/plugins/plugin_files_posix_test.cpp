// What Wine doesn't refuse as Windows does: it loads a library without a name that it needs.
#include "plugin_files.h"

namespace zxhost_test {
namespace {

namespace fs = std::filesystem;

class PluginFilesPosix : public PluginFiles {};

TEST_F(PluginFilesPosix, WhoseLibraryLacksAnExport) {
    const std::string plugin = lonely(NEEDY_PLUGIN);
    fs::copy_file(STRANGE_LIBRARY, host.directory.path(fs::path(NEEDED_LIBRARY).filename().string()));
    expect_refusal(plugin, {plugin, "zx_needed"});
}

}  // namespace
}  // namespace zxhost_test
