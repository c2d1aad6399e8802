// The host's view of one action of the machine. The constructor of a command has already started it.
//
// The host polls IsDone until it says true, takes any result, and deletes the object; the channel must
// outlive it. Commands run one after the other or strictly nested. All operations run on the host's thread.
// The order of the virtual operations is a contract between host and plug-in.
#pragma once

class MOutputChannel;

class MMachCommand {
public:
    explicit MMachCommand(MOutputChannel* output) : m_pOutput(output) {}
    virtual ~MMachCommand() = default;
    MMachCommand(const MMachCommand&) = delete;
    MMachCommand& operator=(const MMachCommand&) = delete;

    // True once the action has ended. Each call moves the messages that have arrived to the command's
    // channel.
    virtual bool IsDone() = 0;

    // Asks the machine to end the action; go on polling IsDone.
    virtual void Abort() = 0;

    // The command's word in the machine's language, as "probe load".
    virtual const char* GetCommandName() = 0;

    MOutputChannel* m_pOutput;
};
