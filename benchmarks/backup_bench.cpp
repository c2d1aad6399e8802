// A backup of 1,000 files, 50 MB, against `zip -9` of the same tree and zlib's bare deflate of the same
// bytes.
#define ZLIB_CONST  // input is only read
#include <zlib.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "comparison.h"
#include "measured_process.h"
#include "temporary_directory.h"
#include "zipper.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t files_in_all = 1000;
constexpr std::size_t files_in_folder = 50;
constexpr std::size_t bytes_in_all = 50'000'000;

// What lies in a directory of configurations: settings, logs, and blocks that nothing makes shorter.
class Writer {
public:
    std::string content(std::size_t number, std::size_t size) {
        std::string text;
        text.reserve(size + 200);
        if (number % 5 == 4) {
            while (text.size() < size) text += static_cast<char>(m_random());
        } else if (number % 2 == 0) {
            while (text.size() < size) text += setting();
        } else {
            while (text.size() < size) text += log_line();
        }
        text.resize(size);
        return text;
    }

    // Many small files and a few large ones, `bytes_in_all` together.
    std::vector<std::size_t> sizes() {
        std::vector<double> shares(files_in_all);
        for (double& share : shares) share = std::exp(static_cast<double>(m_random() % 1000) / 200.0);
        const double unit =
            static_cast<double>(bytes_in_all) / std::accumulate(shares.begin(), shares.end(), 0.0);
        std::vector<std::size_t> sizes;
        for (const double share : shares) sizes.push_back(static_cast<std::size_t>(share * unit));
        return sizes;
    }

private:
    std::string word() {
        static constexpr std::array words{"speed",  "axis", "limit", "probe", "offset", "accel",
                                          "port",   "home", "zero",  "scale", "scan",   "mode",
                                          "device", "name", "log",   "retry"};
        return words[m_random() % words.size()];
    }
    std::string number() { return std::to_string(m_random() % 1'000'000); }

    std::string setting() {
        if (m_random() % 20 == 0) return "[" + word() + "_" + number() + "]\r\n";
        return word() + "." + word() + "=" + number() + "." + number() + "\r\n";
    }
    std::string log_line() {
        m_clock += m_random() % 5000;
        return std::to_string(m_clock) + " " + word() + ": " + word() + " of " + word() + " is " + number() +
               "\n";
    }

    std::mt19937_64 m_random{1};
    std::uint64_t m_clock = 1'700'000'000'000;
};

struct Tree {
    TemporaryDirectory directory;
    std::vector<std::string> contents;
};

void write_tree(Tree& tree) {
    Writer writer;
    const std::vector<std::size_t> sizes = writer.sizes();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const std::string folder = "folder" + std::to_string(i / files_in_folder);
        fs::create_directory(tree.directory.path(folder));
        tree.contents.push_back(writer.content(i, sizes[i]));
        tree.directory.file(folder + "/file" + std::to_string(i), tree.contents.back());
    }
}

std::string back_up(const Tree& tree) {
    std::string archive = CreateZipArchive(tree.directory.path());
    if (archive.empty()) throw std::runtime_error("no archive");
    return archive;
}

// Seconds of the wall clock.
double zip(const Tree& tree, const TemporaryDirectory& work) {
    const std::string archive = work.path("by_zip.zip");
    fs::remove(archive);
    const auto cost = bench::run_measured(
        "/usr/bin/env", {"zip", "-9", "-q", "-r", archive, tree.directory.path()}, work.path("output"));
    if (cost.exit_status != 0) throw std::runtime_error("zip failed");
    return cost.wall;
}

// One stream and one buffer for all, and nothing is kept.
class BareDeflate {
public:
    explicit BareDeflate(const Tree& tree) : m_tree(tree) {
        if (deflateInit2(&m_stream, 9, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
            throw std::bad_alloc();
    }
    ~BareDeflate() { deflateEnd(&m_stream); }
    BareDeflate(const BareDeflate&) = delete;
    BareDeflate& operator=(const BareDeflate&) = delete;

    std::size_t run() {
        std::size_t size = 0;
        for (const std::string& content : m_tree.contents) size += deflated_size(content);
        return size;
    }

private:
    std::size_t deflated_size(const std::string& content) {
        m_out.resize(deflateBound(&m_stream, content.size()));
        m_stream.next_in = reinterpret_cast<const Bytef*>(content.data());
        m_stream.avail_in = static_cast<uInt>(content.size());
        m_stream.next_out = m_out.data();
        m_stream.avail_out = static_cast<uInt>(m_out.size());
        if (deflate(&m_stream, Z_FINISH) != Z_STREAM_END) throw std::runtime_error("deflate failed");
        const std::size_t size = m_stream.total_out;
        deflateReset(&m_stream);
        return size;
    }

    const Tree& m_tree;
    z_stream m_stream{};
    std::vector<Bytef> m_out;
};

void compare_times(const Tree& tree, const TemporaryDirectory& work) {
    const auto ours = [&] { bench::keep(back_up(tree).size()); };
    bench::print_head("zip -9 -r of the same tree; wall clock, ns a byte");
    bench::compare({.name = "CreateZipArchive, 1,000 files, 50 MB",
                    .ours = bench::wall_time(ours, bytes_in_all),
                    .reference = [&] { return zip(tree, work) * 1e9 / bytes_in_all; },
                    .limit = 1.0,
                    .aim = 0.9,
                    .rounds = 5});
    const auto bare = std::make_shared<BareDeflate>(tree);
    bench::print_head("zlib's deflate at level 9 of the same bytes in memory; processor time, ns a byte");
    bench::compare({.name = "CreateZipArchive, 1,000 files, 50 MB",
                    .ours = bench::processor_time(ours, bytes_in_all),
                    .reference = bench::processor_time([bare] { bench::keep(bare->run()); }, bytes_in_all),
                    .limit = 1.03,
                    .aim = 1.01,
                    .rounds = 5});
}

void compare_sizes(const Tree& tree, const TemporaryDirectory& work) {
    const auto per_byte = [](std::size_t size) { return static_cast<double>(size) / bytes_in_all; };
    zip(tree, work);
    bench::print_head("the archive of zip -9; bytes a byte");
    bench::compare({.name = "size of the archive",
                    .ours = [&] { return per_byte(back_up(tree).size()); },
                    .reference = [&] { return per_byte(fs::file_size(work.path("by_zip.zip"))); },
                    .limit = 1.01,
                    .aim = 1.005,
                    .unit = "",
                    .rounds = 1});
}

}  // namespace

int main() {
    const TemporaryDirectory work;
    Tree tree;
    write_tree(tree);
    setenv("TMPDIR", work.path().c_str(), 1);
    compare_sizes(tree, work);
    compare_times(tree, work);
}
