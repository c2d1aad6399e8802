// The numbered vocabulary of the machine's protocol: errors 1 to 50, warnings 10000 to 10004, events 1 to 96
// (68, 86 and 87 are unassigned).
//
// A full text is the quoted form that stands on a line, as `error "aborted"`. The pointers are to constant
// texts; that of a number outside the table, as `error "unknown error number 99"`, is overwritten by the
// thread's next such call of the same function. No function fails; any thread may call.
#pragma once

const char* error_text(int number);
const char* warning_text(int number);
const char* event_text(int number);

// An event's text without keyword and quotes, as `keypad: changed`.
const char* event_name(int number);

// The number of a full text, compared exactly; 0 if there is none. `text` is not null. The formed text of
// error 51 is found too. For events see MOutputChannel::set_event_bit.
int error_number(const char* text);
int warning_number(const char* text);
