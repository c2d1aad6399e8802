// MOutputChannel: the text sink of one transaction.
//
// Errors, warnings, events and data are appended as lines of the machine's text protocol, each ended by CR
// LF:
//     0007<tab>error "invalid axis"
//     0007<tab>data 1.5 -0.25 0
//     0000<tab>event "movement: end"
// Errors, warnings and data carry the channel's transaction id, events always 0. Texts go out as they stand:
// nothing is escaped. The events "capabilities changed" and "machine changed" are held back, and however
// often they are raised, the text has each once, behind all else.
//
// The host owns a channel and keeps it alive as long as the driver or command it was given to. It has no
// lock: one thread at a time. The order of the virtual operations is a contract between host and plug-in, and
// a host may override them.
#pragma once

#include <bitset>
#include <string>
#include <vector>

#include "append_number.h"
#include "os/printf_format.h"

// Two neighbouring overloads of one name that must take their slots in this order. Microsoft's ABI lays such
// neighbours in reverse of their declaration, the others lay them as declared.
#if defined(_MSC_VER)
#define M_SLOT_PAIR(first, second) \
    second;                        \
    first
#else
#define M_SLOT_PAIR(first, second) \
    first;                         \
    second
#endif

class MOutputChannel {
public:
    explicit MOutputChannel(int transaction_id);
    MOutputChannel(const MOutputChannel&) = delete;
    MOutputChannel& operator=(const MOutputChannel&) = delete;

    // Reports to the error log what nobody has collected, a held-back event included.
    virtual ~MOutputChannel();

    // Adds the other channel's text, flags and event bits to this one; the other stays as it was.
    virtual MOutputChannel& append_channel(const MOutputChannel& other);

    // Adds all of this one to the target, then clears this one.
    virtual void transfer_to(MOutputChannel& target);

    // One line of the kind, by number from the catalogue or with a free text, quoted but for data. An error
    // sets the mark of has_error; an event sets its bit.
    M_SLOT_PAIR(virtual void error(int number), virtual void error(const std::string& text));
    M_SLOT_PAIR(virtual void warning(int number), virtual void warning(const std::string& text));
    M_SLOT_PAIR(virtual void data(const std::vector<double>& values),
                virtual void data(const std::string& text));
    M_SLOT_PAIR(virtual void event(const std::string& text), virtual void event(int number));

    // Back to the start, but for the fatal mark, which stays.
    virtual void clear();

    // Moves the text to `out` in place of what stood there and clears the event bits; the flags stay. With
    // `with_pending` the held-back events go with it, else they wait on. True if `out` is not empty.
    virtual bool take_text(std::string& out, bool with_pending);

    // No text; held-back events do not count.
    virtual bool is_empty();

    virtual bool has_error();
    virtual void clear_error();

    // The fatal mark is never taken back.
    virtual void set_fatal();
    virtual bool is_fatal();

    // Has this event been seen? False for a number outside 0 to 96.
    virtual bool test_event_bit(int number);

    // Has any event been seen, a text outside the catalogue included?
    virtual bool any_event_bit();

    // A copy of the text with the lines of the held-back events behind it; changes nothing.
    virtual std::string get_text();

    // Format as by printf, then call the virtual operation of that name; they touch nothing else.
    OS_PRINTF_FORMAT(2, 3) void errorf(const char* format, ...);
    OS_PRINTF_FORMAT(2, 3) void warningf(const char* format, ...);
    OS_PRINTF_FORMAT(2, 3) void dataf(const char* format, ...);
    OS_PRINTF_FORMAT(2, 3) void eventf(const char* format, ...);

    // Marks the event as seen, without a line. A number outside 0 to 96 counts as unknown and is traced.
    void set_event_bit(int number);

    // The same for a full text, as `event "door open"`; its number, 97 if it is unknown.
    int set_event_bit(const std::string& text);

    // Appends the lines of the held-back events to the text.
    void add_pending_events();

protected:
    std::string m_text;    // the lines not yet collected
    std::string m_prefix;  // the transaction id, at least four digits, and a tab
    bool m_error_seen = false;
    bool m_fatal = false;
    bool m_capabilities_pending = false;
    bool m_machine_changed_pending = false;
    std::bitset<98> m_event_bits;  // by number of the event; 97 for the unknown ones

private:
    bool hold_back(int number);
};
