#include "output_file.h"

#include <filesystem>
#include <system_error>

#include "exit_status.h"

namespace zxhost {

std::ofstream open_output(const std::string& file) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    if (!out)
        throw HostError(ExitStatus::WrongUsage, "the file " + file + " can't be written",
                        "name a file in a directory where you may write");
    return out;
}

void make_output_directory(const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (!std::filesystem::is_directory(directory, error))
        throw HostError(ExitStatus::WrongUsage, "the directory " + directory + " can't be made",
                        "name another one with --out DIR");
}

void close_output(std::ofstream& out, const std::string& file) {
    out.close();
    if (!out)
        throw HostError(ExitStatus::WrongUsage, "writing " + file + " failed", "is there room on the disk?");
}

}  // namespace zxhost
