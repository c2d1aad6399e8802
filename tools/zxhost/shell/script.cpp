#include "script.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string_view>

#include "bounded_lines.h"
#include "exit_status.h"
#include "interrupt.h"
#include "line_app.h"
#include "line_words.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

constexpr std::string_view byte_order_mark = "\xef\xbb\xbf";

using EachLine = std::function<void(std::uint64_t number, std::string_view line)>;

// A file that can't be read is told in the words of scripts.
template <class Function>
auto reading(Function&& function) {
    try {
        return function();
    } catch (const HostError& error) {
        throw HostError(error.status, error.what(), "name a file with one verb on each line");
    }
}

void for_each_line(const std::string& file, const EachLine& run) {
    const auto lines = reading([&] { return std::make_unique<BoundedLines>(file); });
    for (;;) {
        std::string_view line;
        const BoundedLines::Kind kind = reading([&] { return lines->next(line); });
        if (kind == BoundedLines::Kind::End) return;
        if (lines->line() == 1 && line.starts_with(byte_order_mark))
            line.remove_prefix(byte_order_mark.size());
        run(lines->line(), line);
        if (kind == BoundedLines::Kind::TooLong) return;  // its rest is no line; this one has failed
    }
}

std::string where(const std::string& file, std::uint64_t line) { return file + ":" + std::to_string(line); }

// The settings of the script's lines, which know that they are played by it.
Settings inside(const std::string& file, const Settings& settings) {
    std::error_code ignored;
    const std::string path = std::filesystem::weakly_canonical(file, ignored).string();
    const auto& playing = settings.scripts;
    if (std::find(playing.begin(), playing.end(), path) != playing.end())
        throw HostError(ExitStatus::WrongUsage, "the script " + file + " plays itself",
                        "take the line out: it would never end");
    if (playing.size() >= deepest_script)
        throw HostError(ExitStatus::WrongUsage,
                        "more than " + std::to_string(deepest_script) + " scripts play each other",
                        "play the innermost ones from fewer others");
    Settings lines = settings;
    lines.scripts.push_back(path);
    return lines;
}

// What the verb that the words name would do wrong. Nothing of it is shown.
void examine(const std::vector<std::string>& words, const Settings& settings, ScriptReport& report,
             std::uint64_t line) {
    std::ostream nowhere(nullptr);
    Rehearsal& rehearsal = *settings.rehearsal;
    try {
        LineApp(settings).run(words, {nowhere, nowhere});
    } catch (const RehearsalIsOver&) {
    } catch (const HostError& error) {
        if (error.status == ExitStatus::NoConnection) throw;
        if (!rehearsal.has_examined())
            report.remarks.push_back({line, error.status, {true, error.what(), error.way_out}});
    }
    for (Remark& remark : rehearsal.take_remarks())
        report.remarks.push_back({line, ExitStatus::MachineError, std::move(remark)});
}

}  // namespace

void play_script(const std::string& file, const Settings& settings, const Streams& streams) {
    const Settings lines = inside(file, settings);
    for_each_line(file, [&](std::uint64_t number, std::string_view line) {
        try {
            const std::vector<std::string> words = words_of(line);
            if (!words.empty()) LineApp(lines).run(words, streams);
            if (InterruptMemory::take()) throw HostError(ExitStatus::MachineError, "aborted");
        } catch (const HostError& error) {
            throw HostError(error.status, where(file, number) + ": " + error.what(), error.way_out);
        }
    });
}

ScriptReport check_script(const std::string& file, const Settings& settings) {
    const Settings lines = inside(file, settings);
    ScriptReport report;
    for_each_line(file, [&](std::uint64_t number, std::string_view line) {
        try {
            const std::vector<std::string> words = words_of(line);
            if (words.empty()) return;
            ++report.lines;
            examine(words, lines, report, number);
        } catch (const HostError& error) {
            if (error.status == ExitStatus::NoConnection) throw;
            report.remarks.push_back({number, error.status, {true, error.what(), error.way_out}});
        }
    });
    return report;
}

}  // namespace zxhost
