// zxhost blocks, and zxhost send and receive for one of them.
#include <CLI/CLI.hpp>
#include <memory>
#include <nlohmann/json.hpp>

#include "blocks.h"
#include "exit_status.h"
#include "input_bytes.h"
#include "list_verb.h"
#include "new_file.h"
#include "number_text.h"
#include "verb_host.h"

namespace zxhost {
namespace {

struct TransferOptions {
    std::string block;
    std::string file;
    bool force = false;
};

void blocks(const Settings& settings, const Streams& streams, const std::vector<std::string>&) {
    VerbHost host(settings, streams);
    Json rows = Json::array();
    for (const BlockEntry& entry : list_blocks(host))
        rows.push_back({{"block", entry.name}, {"bytes", entry.bytes}});
    host.show({{"block", "block"}, {"bytes", "bytes"}}, rows);
}

void show_transfer(VerbHost& host, const TransferOptions& options, std::size_t bytes) {
    host.show({{"block", "block"}, {"bytes", "bytes"}, {"file", "file"}},
              Json::array({{{"block", options.block}, {"bytes", bytes}, {"file", options.file}}}));
}

void check_block_name(const TransferOptions& options) {
    if (options.block.empty())
        throw HostError(ExitStatus::WrongUsage, "a block needs a name",
                        "see those of the machine with: zxhost blocks");
}

void check_send(const Settings& settings, const TransferOptions& options) {
    check_block_name(options);
    if (options.block.find(firmware_mark) != std::string::npos)
        throw HostError(ExitStatus::WrongUsage,
                        "'" + printable(options.block) +
                            "' is a firmware configuration: the machine starts "
                            "again when it has it",
                        "send it with: zxhost firmware FILE --block NAME");
    if (options.file == standard_stream && settings.borrow)
        throw HostError(ExitStatus::WrongUsage, "standard input belongs to the lines of the shell or script",
                        "name a file");
}

void send(const Settings& settings, const Streams& streams, const TransferOptions& options) {
    check_send(settings, options);
    std::string data;  // in a rehearsal the file may be one that a line before leaves behind
    if (!settings.rehearsal) data = read_bytes(options.file);
    VerbHost host(settings, streams);
    send_block(host, options.block, data);
    show_transfer(host, options, data.size());
}

void check_receive(const TransferOptions& options) {
    check_block_name(options);
    if (options.block == backup_block)
        throw HostError(ExitStatus::WrongUsage, "'" + options.block + "' is no block of the machine",
                        "make a backup of the driver's configuration with: zxhost backup FILE.zip");
}

void write_to_standard_output(std::ostream& out, const std::string& data) {
    out.write(data.data(), static_cast<std::streamsize>(data.size()));
    out.flush();
    if (!out) throw HostError(ExitStatus::WrongUsage, "standard output takes no more");
}

void receive(const Settings& settings, const Streams& streams, const TransferOptions& options) {
    check_receive(options);
    const bool is_for_file = options.file != standard_stream && !settings.rehearsal;
    if (is_for_file) check_new_file(options.file, options.force);
    VerbHost host(settings, streams);
    const std::string data = receive_block(host, options.block);
    if (options.file == standard_stream) return write_to_standard_output(host.out(), data);
    if (is_for_file) write_new_file(options.file, options.force, data);
    show_transfer(host, options, data.size());
}

using RunTransfer = void (*)(const Settings&, const Streams&, const TransferOptions&);

CLI::App& add_transfer(CLI::App& app, Program& program, const char* name, const char* description,
                       const std::shared_ptr<TransferOptions>& options, RunTransfer run) {
    CLI::App* const verb = app.add_subcommand(name, description);
    verb->add_option("BLOCK", options->block, "its name on the machine")->required();
    verb->callback([&program, options, run] {
        program.verb = [&program, options, run](const Streams& streams) {
            run(program.settings, streams, *options);
        };
    });
    return *verb;
}

}  // namespace

void add_blocks(CLI::App& app, Program& program) {
    add_list_verb(app, program,
                  {.name = "blocks",
                   .description = "Show the named blocks of data that the machine keeps",
                   .example = "zxhost blocks"},
                  blocks);
}

void add_send(CLI::App& app, Program& program) {
    const auto options = std::make_shared<TransferOptions>();
    CLI::App& verb = add_transfer(app, program, "send", "Give the machine a named block of data, from a file",
                                  options, send);
    verb.add_option("FILE", options->file, "the file with its bytes; - for standard input")->required();
    verb.footer(
        "example: zxhost send part.prg part.prg\n"
        "         zxhost send notes - < notes.txt");
}

void add_receive(CLI::App& app, Program& program) {
    const auto options = std::make_shared<TransferOptions>();
    CLI::App& verb =
        add_transfer(app, program, "receive", "Fetch a named block of data from the machine into a file",
                     options, receive);
    verb.add_option("FILE", options->file,
                    "the file to write, which is there only when it is whole; - for standard output")
        ->required();
    verb.add_flag("--force", options->force, "replace the file if there is one");
    verb.footer(
        "example: zxhost receive part.prg copy.prg\n"
        "         zxhost receive notes -");
}

}  // namespace zxhost
