// Loading and saving ini files of 10 MB, and the memory of a loaded one, against glib's GKeyFile.
#define SI_NO_CONVERSION  // names and values are bytes
#include <SimpleIni.h>
#include <glib.h>
#include <ini.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "MIniData.h"
#include "comparison.h"
#include "own_process.h"
#include "temporary_directory.h"

namespace {

constexpr std::size_t file_size = 10'000'000;
constexpr int rounds = 9;

struct IniFile {
    std::string path;
    std::size_t lines = 0;
    std::size_t size = 0;
};

// Names and values as settings have them, in no order: about 30 bytes a line.
class Writer {
public:
    std::string name(std::size_t number) {
        static constexpr std::array words{"speed",  "axis",  "limit", "probe", "offset", "accel",
                                          "port",   "retry", "home",  "zero",  "scale",  "temp",
                                          "device", "mode",  "name",  "log"};
        return std::string(words[m_random() % words.size()]) + "_" + words[m_random() % words.size()] +
               std::to_string(number);
    }

    std::string value() {
        switch (m_random() % 3) {
            case 0:
                return std::to_string(m_random() % 100'000);
            case 1:
                return std::to_string(static_cast<double>(m_random() % 1'000'000'000) / 1e6);
            default:
                return "text of " + name(m_random() % 1'000'000);
        }
    }

private:
    std::mt19937_64 m_random{1};
};

IniFile write_ini(const std::string& path, std::size_t sections) {
    Writer writer;
    std::ofstream out(path, std::ios::binary);
    IniFile file{path};
    const auto put = [&](const std::string& line) {
        out << line << '\n';
        ++file.lines;
        file.size += line.size() + 1;
    };
    for (std::size_t section = 0; section < sections; ++section) {
        put("[" + writer.name(section) + "]");
        for (std::size_t entry = 0; file.size < file_size * (section + 1) / sections; ++entry) {
            put(writer.name(entry) + "=" + writer.value());
        }
    }
    return file;
}

// A model of each kind, and loading it.
std::unique_ptr<MIniData> load_ours(const IniFile& file) {
    auto ini = std::make_unique<MIniData>();
    if (!ini->Open(file.path)) std::abort();
    return ini;
}

struct FreeKeyFile {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;
KeyFile load_key_file(const IniFile& file) {
    KeyFile ini(g_key_file_new());
    if (!g_key_file_load_from_file(ini.get(), file.path.c_str(), G_KEY_FILE_NONE, nullptr)) std::abort();
    return ini;
}

std::unique_ptr<CSimpleIniA> load_simple_ini(const IniFile& file) {
    auto ini = std::make_unique<CSimpleIniA>();
    if (ini->LoadFile(file.path.c_str()) != SI_OK) std::abort();
    return ini;
}

// Keeps nothing: the cost of parsing alone.
std::unique_ptr<std::size_t> load_inih(const IniFile& file) {
    auto count = std::make_unique<std::size_t>(0);
    const auto handler = [](void* user, const char*, const char*, const char*) {
        ++*static_cast<std::size_t*>(user);
        return 1;
    };
    if (ini_parse(file.path.c_str(), handler, count.get()) != 0) std::abort();
    return count;
}

// The nanoseconds of processor time a line.
template <class Load>
double load_time(Load load, const IniFile& file) {
    decltype(load(file)) model;
    return bench::processor_time([&] { model = load(file); }, file.lines)();
}

// In a process that does nothing else, as a program does at its start.
template <class Load>
bench::Measure loading(Load load, const IniFile& file) {
    return bench::in_new_process([=] { return [=] { return load_time(load, file); }; });
}

// In a process that loaded the file before, and ended that model.
template <class Load>
bench::Measure loading_again(Load load, const IniFile& file) {
    return bench::in_own_process([=] { return [=] { return load_time(load, file); }; });
}

template <class Load>
bench::Measure loading_and_ending(Load load, const IniFile& file) {
    return bench::in_own_process(
        [=] { return bench::processor_time([=] { load(file).reset(); }, file.lines); });
}

// The bytes that the peak of the process's memory grows by, for each byte of the file.
template <class Load>
bench::Measure memory(Load load, const IniFile& file) {
    return bench::in_new_process([=] {
        return [=] {
            const double before = bench::peak_memory();
            const auto model = load(file);
            return (bench::peak_memory() - before) / static_cast<double>(file.size);
        };
    });
}

int copies = 0;

// `save` gets the model, loaded once, and the file that it was loaded from, which nobody else uses.
template <class Load, class Save>
bench::Measure saving(Load load, const IniFile& file, Save save) {
    IniFile own = file;
    own.path += std::to_string(++copies);
    std::filesystem::copy_file(file.path, own.path);
    return bench::in_own_process([=] {
        const auto model = std::make_shared<decltype(load(own))>(load(own));
        return bench::processor_time(
            [=] {
                if (!save(**model, own)) std::abort();
            },
            own.lines);
    });
}

bool save_ours(MIniData& ini, const IniFile&) { return ini.Save(); }

bool save_ours_by_rename(MIniData& ini, const IniFile& file) {
    ini.SetFlags(MINIDATA_SAVE_BY_RENAME);
    return save_ours(ini, file);
}

bool save_key_file_plainly(GKeyFile& ini, const IniFile& file) {
    gsize size = 0;
    char* const text = g_key_file_to_data(&ini, &size, nullptr);
    const bool ok = g_file_set_contents_full(file.path.c_str(), text, static_cast<gssize>(size),
                                             G_FILE_SET_CONTENTS_NONE, 0666, nullptr);
    g_free(text);
    return ok;
}

bool save_key_file(GKeyFile& ini, const IniFile& file) {
    return g_key_file_save_to_file(&ini, file.path.c_str(), nullptr);
}

bool save_simple_ini(CSimpleIniA& ini, const IniFile& file) {
    return ini.SaveFile(file.path.c_str()) == SI_OK;
}

void compare_loading(const std::string& kind, const IniFile& file, double limit, double aim) {
    bench::compare({.name = "load, " + kind,
                    .ours = loading(load_ours, file),
                    .reference = loading(load_key_file, file),
                    .limit = limit,
                    .aim = aim,
                    .rounds = rounds,
                    .others = {{"inih, which keeps nothing", loading(load_inih, file)},
                               {"SimpleIni", loading(load_simple_ini, file)}}});
    bench::compare({.name = "load again, " + kind,
                    .ours = loading_again(load_ours, file),
                    .reference = loading_again(load_key_file, file),
                    .limit = limit,
                    .aim = aim,
                    .rounds = rounds,
                    .others = {{"SimpleIni", loading_again(load_simple_ini, file)}}});
    bench::compare({.name = "load and end, " + kind,
                    .ours = loading_and_ending(load_ours, file),
                    .reference = loading_and_ending(load_key_file, file),
                    .limit = limit,
                    .aim = aim,
                    .rounds = rounds,
                    .others = {{"SimpleIni", loading_and_ending(load_simple_ini, file)}}});
}

void compare_saving(const std::string& kind, const IniFile& file) {
    bench::compare({.name = "save, " + kind,
                    .ours = saving(load_ours, file, save_ours),
                    .reference = saving(load_key_file, file, save_key_file_plainly),
                    .limit = 0.75,
                    .aim = 0.5,
                    .rounds = rounds,
                    .others = {{"SimpleIni", saving(load_simple_ini, file, save_simple_ini)}}});
    bench::compare({.name = "save by rename, " + kind,
                    .ours = saving(load_ours, file, save_ours_by_rename),
                    .reference = saving(load_key_file, file, save_key_file),
                    .limit = 0.75,
                    .aim = 0.5,
                    .rounds = rounds});
}

void compare_memory(const std::string& kind, const IniFile& file) {
    bench::compare({.name = "memory of the model, " + kind,
                    .ours = memory(load_ours, file),
                    .reference = [] { return 1.0; },
                    .limit = 6.0,
                    .aim = 6.0,
                    .unit = "",
                    .rounds = 1,
                    .others = {{"GKeyFile", memory(load_key_file, file)},
                               {"SimpleIni", memory(load_simple_ini, file)}}});
}

}  // namespace

int main() {
    const TemporaryDirectory directory;
    const IniFile many = write_ini(directory.path("many.ini"), 20'000);
    const IniFile few = write_ini(directory.path("few.ini"), 200);
    const std::string many_sections = "20,000 sections";
    const std::string few_sections = "200 long sections";
    std::printf("%zu and %zu bytes, %zu and %zu lines\n", many.size, few.size, many.lines, few.lines);
    bench::print_head("the byte of the file");
    compare_memory(many_sections, many);
    compare_memory(few_sections, few);
    bench::print_head("glib's GKeyFile; ns a line");
    compare_loading(many_sections, many, 0.85, 0.6);
    compare_loading(few_sections, few, 1.2, 1.0);
    compare_saving(many_sections, many);
    compare_saving(few_sections, few);
}
