// A waiting query through the whole client over loopback, against the plainest exchange of such lines.
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "comparison.h"
#include "czendrixcom.h"
#include "lineresponder.h"

namespace {

constexpr std::size_t queries = 2000;

void compare_on(const char* name, bench::Cores cores) {
    const bench::LineResponder responder(cores, 0);
    bench::stay_on(cores);
    CZendrixCOM client(nullptr, nullptr, ("127.0.0.1 " + responder.port()).c_str(), nullptr);
    bench::BareClient bare(responder.port());
    const std::string line = "0007\tget \"x\"\r\n";
    bench::compare({.name = name,
                    .ours = bench::wall_time(
                        [&client] {
                            double value = 0.0;
                            for (std::size_t i = 0; i < queries; ++i) {
                                if (!client.Get("x", &value)) throw std::runtime_error("a query failed");
                            }
                        },
                        queries),
                    .reference = bench::wall_time(
                        [&] {
                            for (std::size_t i = 0; i < queries; ++i) bench::keep(bare.ask(line));
                        },
                        queries),
                    .limit = 1.5,
                    .aim = 1.1});
}

}  // namespace

int main() try {
    bench::print_head("bare blocking ping-pong of the same lines between two processes");
    compare_on("Get of one axis, both ends on one core", bench::Cores::first);
    compare_on("Get of one axis, placed freely", bench::Cores::any);
    return EXIT_SUCCESS;
} catch (const std::exception& error) {
    std::fprintf(stderr, "query_bench: %s\n", error.what());
    return EXIT_FAILURE;
} catch (const CZendrixError& error) {
    std::fprintf(stderr, "query_bench: %s\n", error.m_text.c_str());
    return EXIT_FAILURE;
}
