#include "messagetext.h"

std::string bare_message(std::string text) {
    if (text.ends_with('"')) text.pop_back();
    for (const std::string prefix : {"error ", "warning ", "event ", "data "}) {
        if (!text.starts_with(prefix)) continue;
        text.erase(0, prefix.size());
        break;
    }
    if (text.starts_with('"')) text.erase(0, 1);
    return text;
}
