#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

#include "measured_process.h"

namespace bench {

namespace {

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

bool write_to(const std::string& file, int stream) {
    const int opened = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    return opened >= 0 && ::dup2(opened, stream) >= 0;
}

}  // namespace

ProcessCost run_measured(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& out_file) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> texts;
    for (std::string& word : words) texts.push_back(word.data());
    texts.push_back(nullptr);

    const auto start = std::chrono::steady_clock::now();
    const pid_t process = ::fork();
    if (process < 0) throw std::runtime_error("no process for " + program);
    if (process == 0) {
        if (!write_to(out_file, STDOUT_FILENO) || !write_to(out_file + ".err", STDERR_FILENO)) ::_exit(127);
        ::execv(program.c_str(), texts.data());
        ::_exit(127);
    }
    int status = 0;
    rusage used{};
    if (::wait4(process, &status, 0, &used) != process) throw std::runtime_error("lost " + program);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, seconds(used.ru_utime) + seconds(used.ru_stime),
            wall.count()};
}

}  // namespace bench
