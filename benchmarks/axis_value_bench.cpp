// GetAxisValue of a cached axis against the look-up in a map that it must not cost more than.
#include <map>
#include <string>
#include <vector>

#include "comparison.h"
#include "m2zendrixmachabstract.h"
#include "temporary_directory.h"

namespace {

constexpr std::size_t count = 200'000;
const std::vector<std::string> names{"x", "y", "z", "c", "hb", "ha", "ka", "kb", "kx", "ky", "tx", "ty"};

template <class Read>
bench::Measure reading(Read read) {
    return bench::processor_time(
        [read] {
            double sum = 0.0;
            for (std::size_t i = 0; i < count; ++i) sum += read(names[i % names.size()]);
            bench::keep(static_cast<std::size_t>(sum));
        },
        count);
}

}  // namespace

int main() {
    TemporaryDirectory directory;
    std::string list;
    for (const std::string& name : names) list += name + ",";
    // Nobody listens at this port: the caches answer without a machine.
    directory.file("m2zendrix.ini",
                   "[connection]\nhost=127.0.0.1\nport=1\n[Settings]\ncached_axes=" + list + "\n");
    M2ZendrixMachAbstract driver(nullptr, nullptr, "m2zendrix", directory.path());
    driver.Open();
    std::map<std::string, double> map;
    for (const std::string& name : names) map[name] = 0.0;

    bench::print_head("std::map<std::string, double>::find alone");
    bench::compare(
        {.name = "GetAxisValue of a cached axis, 12 axes",
         .ours = reading([&driver](const std::string& name) { return driver.GetAxisValue(name.c_str()); }),
         .reference = reading([&map](const std::string& name) { return map.find(name)->second; }),
         .limit = 1.2,
         .aim = 0.5});
}
