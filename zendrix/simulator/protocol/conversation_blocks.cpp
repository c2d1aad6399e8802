// Blocks of data, in both directions: how they come in, in one request or in parts, and go out line by line.
#include <algorithm>

#include "faults/misbehave.h"
#include "mbase64.h"
#include "protocol/arguments.h"
#include "protocol/conversation.h"
#include "request.h"
#include "serverline.h"

namespace zendrix::sim {

namespace {

using Outcome = Conversation::Outcome;

constexpr std::size_t most_coming = 4;
constexpr std::size_t line_text = 16384;                  // between the quotes
constexpr std::size_t line_bytes = line_text / 4 * 3;     // of a block in base64
constexpr std::string_view firmware = "firmware.config";  // in the name of a block that is one

bool is_firmware(const std::string& name) { return name.find(firmware) != std::string::npos; }

// Text goes as it stands, all that would break a line in base64.
bool is_text(const std::string& content) {
    return std::none_of(content.begin(), content.end(),
                        [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

void append_base64(std::string& out, std::string_view bytes) {
    const std::size_t begin = out.size();
    out.resize(begin + (bytes.size() + 2) / 3 * 4);
    MBase64_Encode(out.data() + begin, bytes.data(), ~bytes.size());
}

}  // namespace

// What replaces the firmware would get in the way of whatever the machine is doing.
void Conversation::require_takeable(const std::string& name) {
    if (is_firmware(name) && machine().is_busy()) throw Refused{Error::wrong_state};
}

void Conversation::taken(const std::string& name) {
    if (is_firmware(name)) m_hub.restart_soon();
}

Outcome Conversation::send(Arguments& arguments) {
    const std::string name = text(arguments);
    std::string content = text(arguments);
    no_more(arguments);
    require_takeable(name);
    m_hub.blocks().put(name, std::move(content));
    taken(name);
    return Outcome::done;
}

Outcome Conversation::send_begin(Arguments& arguments) {
    const std::string name = text(arguments);
    const std::int64_t size = integer(arguments, 1, std::int64_t{1} << 40);
    no_more(arguments);
    require_takeable(name);
    // A client that gave one up has told nobody.
    if (m_coming.size() >= most_coming) m_coming.pop_front();
    m_coming.emplace_back(
        m_id, std::make_unique<ComingBlock>(m_hub.blocks(), name, static_cast<std::size_t>(size)));
    return Outcome::done;
}

Outcome Conversation::send_part(Arguments& arguments) {
    const std::int64_t id = integer(arguments, 1, wire::max_id);
    const std::string part = text(arguments);
    no_more(arguments);
    const auto coming =
        std::find_if(m_coming.begin(), m_coming.end(), [&](const auto& entry) { return entry.first == id; });
    if (coming == m_coming.end()) throw Refused{Error::wrong_state};
    try {
        coming->second->add(part);
        if (!coming->second->is_whole()) return Outcome::done;
        const std::string name = coming->second->name();
        require_takeable(name);
        coming->second->keep();
        taken(name);
    } catch (const Refused&) {
        m_coming.erase(coming);
        throw;
    }
    m_coming.erase(coming);
    return Outcome::done;
}

Outcome Conversation::receive(Arguments& arguments) {
    const std::string name = text(arguments);
    no_more(arguments);
    const BlockStore::Content content = m_hub.blocks().find(name);
    m_going.push_back({m_id, content, 0, !is_text(*content)});
    return Outcome::sending;
}

void Conversation::go_on() {
    while (!m_going.empty() && !is_congested()) {
        if (m_going.front().done < m_going.front().content->size()) {
            send_block_line(m_going.front());
            continue;
        }
        const std::int64_t id = m_going.front().id;
        m_going.pop_front();
        end(id, Error::none);
    }
}

void Conversation::send_block_line(GoingBlock& block) {
    std::string& out = m_transport.out();
    const std::size_t begin = out.size();
    const std::string_view bytes =
        std::string_view(*block.content).substr(block.done, block.is_coded ? line_bytes : line_text);
    wire::append_data(out, block.id);
    out.append(block.is_coded && block.done == 0 ? " base64 \"" : " \"");
    if (block.is_coded) {
        append_base64(out, bytes);
    } else {
        out.append(bytes);
    }
    out.push_back('"');
    wire::append_end(out);
    block.done += bytes.size();
    for (const PlannedFault& fault : m_hub.faults().count(Place::block_line)) {
        misbehave(fault, m_transport, begin, block.id, m_hub);
    }
    m_transport.sent();
}

// True if a block was on its way with that id.
bool Conversation::stop_sending(std::int64_t id) {
    return std::erase_if(m_going, [id](const GoingBlock& block) { return block.id == id; }) > 0;
}

}  // namespace zendrix::sim
