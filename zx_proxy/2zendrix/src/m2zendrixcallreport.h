// How a command tells the host that its client call failed: a constant record per command.
#pragma once

// The call answered false.
struct M2ZendrixFalseReport {
    enum Way {
        LineOnce,  // the catalogue's whole line as a text, unless the channel has it already
        Number,    // the catalogue's number
        Text       // a text of the command's own
    };
    Way way;
    int number = 0;              // for the first two
    const char* text = nullptr;  // for the last
    const char* log = nullptr;   // goes to the error log before; null for nothing
};

// The call threw a text.
struct M2ZendrixThrownReport {
    enum Way {
        Once,      // the text, unless the channel has it already
        BareOnce,  // the same without the protocol's keyword and quotes
        Always     // the text, whatever the channel has
    };
    Way way;
    const char* operation;  // as the error log names it
};

struct M2ZendrixCallReport {
    M2ZendrixFalseReport on_false;
    M2ZendrixThrownReport on_thrown;
};

namespace call_report {

constexpr M2ZendrixFalseReport line_once(int number, const char* log = nullptr) {
    return {.way = M2ZendrixFalseReport::LineOnce, .number = number, .log = log};
}
constexpr M2ZendrixFalseReport number(int number, const char* log) {
    return {.way = M2ZendrixFalseReport::Number, .number = number, .log = log};
}
constexpr M2ZendrixFalseReport text(const char* text) {
    return {.way = M2ZendrixFalseReport::Text, .text = text};
}

constexpr M2ZendrixThrownReport once(const char* operation) {
    return {M2ZendrixThrownReport::Once, operation};
}
constexpr M2ZendrixThrownReport bare_once(const char* operation) {
    return {M2ZendrixThrownReport::BareOnce, operation};
}
constexpr M2ZendrixThrownReport always(const char* operation) {
    return {M2ZendrixThrownReport::Always, operation};
}

}  // namespace call_report
