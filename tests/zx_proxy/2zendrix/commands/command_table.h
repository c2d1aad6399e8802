// All commands of the driver with what each of them does on each road, one row a command.
#pragma once

#include <string>
#include <vector>

class MMachAbstract;
class MMachCommand;
class MOutputChannel;

struct CommandRow {
    // What the channel gets for a text that was thrown.
    enum Thrown { once, bare_once, always };

    const char* name;  // of the concrete class, between M2Zendrix and Command
    const char* command_name;
    MMachCommand* (*create)(MMachAbstract& mach, MOutputChannel* channel);
    const char* call;  // the client call with its arguments
    bool takes_machine;
    bool has_id;
    bool aborts;
    bool scans;
    bool receives;
    std::string false_text;  // of the error line when the call answers false
    bool false_once;         // unless the channel has the text already
    std::string false_log;   // of the error log then; empty for nothing
    Thrown thrown;
    std::string thrown_log;  // of the error log for a thrown text "%s"

    std::string operation() const { return std::string(call).substr(0, std::string(call).find('(')); }
};

const std::vector<CommandRow>& command_table();
