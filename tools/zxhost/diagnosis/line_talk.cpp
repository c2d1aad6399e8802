#include "line_talk.h"

#include "request.h"
#include "serverline.h"

namespace zxhost {

using serverdll::Clock;
using std::chrono::milliseconds;

Answer LineTalk::ask(std::string_view words, milliseconds at_most) {
    const Clock::time_point end = Clock::now() + at_most;
    Answer answer;
    wire::RequestWriter request(++m_id, words);
    if (const char* const cause = m_transport->write(request.finish(), at_most)) {
        answer.failure = cause;
        return answer;
    }
    while (!take_lines(answer)) {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now());
        if (left.count() <= 0) {
            answer.failure = "no answer within " + std::to_string(at_most.count()) + " ms";
            return answer;
        }
        const serverdll::ReadResult read = m_transport->read(m_splitter.space(), left);
        if (read.status == serverdll::ReadStatus::ended) {
            answer.failure = read.cause;
            return answer;
        }
        m_splitter.written(read.count);
    }
    return answer;
}

// True at the end of the answer. What speaks of something else is passed over.
bool LineTalk::take_lines(Answer& answer) {
    std::string_view text;
    for (wire::Framing framing; (framing = m_splitter.next(text)) != wire::Framing::none;) {
        wire::ServerLine line;
        if (framing == wire::Framing::too_long || !wire::parse_server_line(text, line) || line.id != m_id)
            continue;
        if (line.keyword == wire::Keyword::ready) return true;
        if (line.keyword == wire::Keyword::data) answer.data.emplace_back(line.body);
        std::string_view words;
        if (line.keyword == wire::Keyword::error)
            answer.error = wire::message_text(line.body, words) && !words.empty() ? words : "an error";
    }
    return false;
}

}  // namespace zxhost
