// A CZendrixCOM without a machine, in place of the real client: it records every call with its arguments,
// answers what the test has laid out, fails where it is told, and lets the test play the client's thread.
//
// One script serves all clients. Its operations may be called from any thread, also while callbacks run.
//
//     scripted::script().reset();                            // at the start of each test
//     scripted::script().answer_false("Move");               // every Move answers false
//     scripted::script().throw_error("Get", "no such axis", 2);  // the second Get throws
//     ... drive ...
//     EXPECT_EQ(scripted::script().take_calls(), (std::vector<std::string>{"GetMachine(0)", ...}));
//     scripted::script().fire_complete(scripted::script().last_id());
//
// Calls read like "Move(2, x=1.5 flag -1, y=2 flag 3)"; a null pointer reads "null", an id to be written
// isn't shown. Installed callbacks read "SetErrorMsgCallback(f1, u1)": functions and user pointers are
// numbered in the order in which the script meets them, unless the test has given them names.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "czendrixcom.h"

namespace scripted {

// The exception that no handler of the driver knows.
struct Foreign {};

// What the machine of the script answers. Set it while no other thread is in a client.
struct Answers {
    bool connected = true;  // what HasConnection says, of every client
    long major_revision = 2;
    long minor_revision = 2;
    long latency = 100;
    std::string machine_name = "scripted machine";
    std::string machine_revision = "1.0";
    std::string serial_number = "4711";
    std::map<std::string, std::string> components;
    std::map<std::string, std::string> options;
    std::vector<std::string> command_words;
    std::map<std::string, CAxis> capabilities;
    std::map<std::string, CAxis> pseudo_capabilities;  // added when all are asked for
    std::vector<std::string> init_list, init_active;
    std::vector<std::string> keypad_list, keypad_active;
    std::vector<std::string> spin_list, spin_active;
    std::vector<double> spin_values;
    std::map<std::string, double> values;  // of the axes; an axis that isn't here keeps what it had
    bool scan_axis = true;
    double wobble[6] = {};
    std::vector<std::string> probesystem_names;
    std::vector<CProbesystemList> probesystem_records;
    std::string probesystem_name;
    long probesystem_id = 0;
    Probesystemtype probesystem_type;
    std::vector<CProbe> probes;
    std::vector<std::string> execute_reply;
    std::map<long, std::vector<std::string>> reply_lines;  // what TakeReplyLine gives, by id
    std::size_t per_line_size = 1024;
    long next_id = 1;        // each transaction that is told to succeed takes one
    long id_on_failure = 0;  // what *tid holds after a transaction that fails
};

class Script {
public:
    // Forgets calls, orders and names, and puts the answers back. Clients that still live stay.
    void reset();

    Answers answers;

    // Orders: what the n-th call of an operation does from now on, n from 1; 0 means every call. The
    // operation has the name it has in the class, "CZendrixCOM" for the constructor, and Get for both of its
    // forms.
    void answer_false(const std::string& operation, int nth = 0);
    void throw_error(const std::string& operation, const std::string& text, int nth = 0);
    void throw_foreign(const std::string& operation, int nth = 0);
    void succeed(const std::string& operation);  // takes all of its orders back

    // Runs this on every call of the operation, before its outcome and with no lock held: to play the
    // client's thread in the middle of a call, to wait, or to change the answers. Null takes it back.
    void on_call(const std::string& operation, std::function<void()> action);

    // Names to print in place of f<n> and u<n>.
    void name_function(void (*function)(), const std::string& name);
    void name_user(const void* user, const std::string& name);
    template <class Function>
    void name_callback(Function* function, const std::string& name) {
        name_function(reinterpret_cast<void (*)()>(function), name);
    }

    // The calls of all clients since the last reset or take, in order.
    std::vector<std::string> calls();
    std::vector<std::string> take_calls();
    // Those of one operation.
    std::vector<std::string> calls_of(const std::string& operation);
    long last_id();  // the newest id that a transaction was given

    // Living clients, the oldest first; the newest, or null.
    std::vector<CZendrixCOM*> clients();
    CZendrixCOM* live();

    // Play the client's thread on the calling thread, for the newest client or the one given. False if no
    // such callback is installed.
    bool fire_async(const std::string& text, CZendrixCOM* client = nullptr);
    bool fire_error(long tid, const std::string& text, CZendrixCOM* client = nullptr);
    bool fire_warning(long tid, const std::string& text, CZendrixCOM* client = nullptr);
    bool fire_complete(long tid, CZendrixCOM* client = nullptr);
    bool fire_scan(std::vector<double> values, CZendrixCOM* client = nullptr);
    bool fire_watch(std::vector<double> values, CZendrixCOM* client = nullptr);

    // What a client has installed; null for none.
    struct Slots {
        std::pair<ZXAsyncCallback, void*> async{};
        std::pair<ZXMessageCallback, void*> error{};
        std::pair<ZXMessageCallback, void*> warning{};
        std::pair<ZXCompleteCallback, void*> complete{};
        std::pair<ZXDataCallback, void*> scan{};
        std::pair<ZXDataCallback, void*> watch{};
        SyncType mode = ZX_ASYNC;
    };
    Slots slots(CZendrixCOM* client = nullptr);

    // For the operations of the client.
    // Records the call, runs its action, and throws or answers false if so ordered.
    bool outcome(const std::string& operation, const std::string& arguments);
    // The same for a transaction: *tid gets its id first.
    bool transaction(const std::string& operation, const std::string& arguments, long* tid);
    std::string label(void (*function)(), const void* user);
    void enter(CZendrixCOM* client);
    void leave(CZendrixCOM* client);
    void change_slots(CZendrixCOM* client, const std::function<void(Slots&)>& change);

private:
    enum class Result { answer_false, throw_error, throw_foreign };
    struct Order {
        int nth;
        Result result;
        std::string text;
    };
    void add_order(const std::string& operation, Order order);
    std::string number_of(std::map<const void*, std::string>& names, const void* pointer, char prefix);

    std::mutex m_mutex;
    std::vector<std::string> m_calls;
    std::vector<std::string> m_operations;  // of each call
    std::map<std::string, int> m_counts;
    std::map<std::string, std::vector<Order>> m_orders;
    std::map<std::string, std::function<void()>> m_actions;
    std::map<const void*, std::string> m_functionNames, m_userNames;
    std::vector<std::pair<CZendrixCOM*, Slots>> m_clients;
    long m_lastId = 0;
};

Script& script();

}  // namespace scripted
