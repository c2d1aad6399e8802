// zxhost backup: the driver's configuration directory as a zip archive.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "blocks.h"
#include "exit_status.h"
#include "fileops.h"
#include "mmachabstract.h"
#include "new_file.h"
#include "verb_host.h"
#include "verbs.h"
#include "zip_check.h"
#include "zipper.h"

namespace zxhost {
namespace {

struct BackupOptions {
    std::string file;
    bool force = false;
};

// The driver of a private or default configuration has no directory that is worth a backup.
void check_directory(const Settings& settings) {
    if (settings.config.empty())
        throw HostError(ExitStatus::WrongUsage, "a backup is of a configuration directory",
                        "name it, as in: zxhost --config DIR --name NAME backup FILE.zip");
}

// The driver packs it on a thread of its own, without the machine; how far it is shows in its temporary file.
std::string packed_directory(VerbHost& host) {
    std::string archive;
    host.run({.name = "backup",
              .class_name = MMachReceiveCommand::ClassName(),
              .make =
                  [&](MOutputChannel* channel) {
                      return host.machine().NewMMachReceiveCommand(channel, std::string(backup_block));
                  },
              .progress =
                  [] {
                      const std::int64_t size = file_size(temp_zip_path().c_str());
                      return size < 0 ? std::string("packed") : size_text(static_cast<std::uint64_t>(size));
                  },
              .finish =
                  [&](MMachCommand& command) {
                      archive = std::move(static_cast<MMachReceiveCommand&>(command).m_data);
                  },
              .needs_machine = false});
    return archive;
}

void backup(const Settings& settings, const Streams& streams, const BackupOptions& options) {
    check_directory(settings);
    if (!settings.rehearsal) check_new_file(options.file, options.force);
    VerbHost host(settings, streams);
    const std::string archive = packed_directory(host);
    if (settings.rehearsal) return;
    ZipFacts facts;
    write_new_file(options.file, options.force, archive, [&](const std::string& path) {
        host.show_progress("backup: verifying " + size_text(archive.size()));
        facts = check_zip(path);
        host.end_progress();
    });
    host.show({{"files", "files"}, {"bytes", "bytes"}, {"archive", "archive"}, {"file", "file"}},
              Json::array({{{"files", facts.entries},
                            {"bytes", facts.bytes},
                            {"archive", archive.size()},
                            {"file", options.file}}}));
}

}  // namespace

void add_backup(CLI::App& app, Program& program) {
    const auto options = std::make_shared<BackupOptions>();
    CLI::App* const verb =
        app.add_subcommand("backup", "Pack the driver's configuration directory into a zip archive");
    verb->add_option("FILE", options->file,
                     "the archive to write, which is there only when each entry was read back well")
        ->required();
    verb->add_flag("--force", options->force, "replace the file if there is one");
    verb->footer(
        "example: zxhost --config /etc/machines --name lab backup lab.zip\n"
        "Empty files and folders aren't in the archive. The driver packs with a temporary file of a fixed\n"
        "name: make one backup at a time.");
    verb->callback([&program, options] {
        program.verb = [&program, options](const Streams& streams) {
            backup(program.settings, streams, *options);
        };
    });
}

}  // namespace zxhost
