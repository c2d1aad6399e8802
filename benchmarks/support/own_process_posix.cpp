#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "own_process.h"

namespace bench {

namespace {

constexpr char go = 'g';
constexpr char quit = 'q';

// Does one measure for each `go` until something else comes.
[[noreturn]] void serve(int commands, int results, const std::function<Measure()>& make) {
    Measure measure;
    char command = quit;
    while (::read(commands, &command, 1) == 1 && command == go) {
        if (!measure) measure = make();
        const double cost = measure();
        if (::write(results, &cost, sizeof cost) != static_cast<ssize_t>(sizeof cost)) break;
    }
    std::_Exit(0);
}

class Worker {
public:
    explicit Worker(const std::function<Measure()>& make) {
        std::array<int, 2> commands{};
        std::array<int, 2> results{};
        if (::pipe(commands.data()) != 0 || ::pipe(results.data()) != 0) throw std::runtime_error("pipe");
        m_process = ::fork();
        if (m_process < 0) throw std::runtime_error("fork");
        if (m_process == 0) {
            ::close(commands[1]);
            ::close(results[0]);
            serve(commands[0], results[1], make);
        }
        ::close(commands[0]);
        ::close(results[1]);
        m_commands = commands[1];
        m_results = results[0];
    }

    ~Worker() {
        send(quit);
        ::close(m_commands);
        ::close(m_results);
        ::waitpid(m_process, nullptr, 0);
    }

    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    double measure() {
        double cost = 0.0;
        if (!send(go) || ::read(m_results, &cost, sizeof cost) != static_cast<ssize_t>(sizeof cost)) {
            throw std::runtime_error("a measuring process ended");
        }
        return cost;
    }

private:
    bool send(char command) const { return ::write(m_commands, &command, 1) == 1; }

    pid_t m_process = -1;
    int m_commands = -1;
    int m_results = -1;
};

}  // namespace

Measure in_own_process(std::function<Measure()> make) {
    return [worker = std::make_shared<Worker>(make)] { return worker->measure(); };
}

Measure in_new_process(std::function<Measure()> make) {
    return [make = std::move(make)] { return Worker(make).measure(); };
}

double peak_memory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

}  // namespace bench
