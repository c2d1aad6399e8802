// saver FILE: saves two versions of an ini file by renaming, in turn, until it is killed.
// saver FILE NTH before|within: saves one version; at its call number NTH of the file system it kills itself,
// before the call, or after half of a write. Ends with 0 if there were fewer calls.

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "MIniData.h"
#include "faulty_files.h"
#include "test_process.h"
#include "versions.h"

namespace {

void save(const char* path, int version) {
    MIniData ini(MINIDATA_SAVE_BY_RENAME);
    if (!ini.Open(path) || !ini.SetContentString(version_of_file(version)) || !ini.Save()) std::exit(2);
}

void save_and_die(const char* path, int nth, bool within) {
    FaultyFiles files;
    files.spoil_call(nth, within ? Fault::moves_half : Fault::fails, 0);
    files.on_fault([] { test_support::kill_this_process(); });
    save(path, 1);
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 4) {
        save_and_die(arguments[1], std::atoi(arguments[2]), std::string_view(arguments[3]) == "within");
        return 0;
    }
    for (int version = 1; true; version = 1 - version) {
        save(arguments[1], version);
        std::cout << "saved\n" << std::flush;
    }
}
