#include "line_app.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "command_line.h"
#include "verb_host.h"

namespace zxhost {

LineApp::LineApp(const Settings& settings) : m_program{settings, nullptr} {
    m_app = std::make_unique<CLI::App>("Each line is a verb with its words, as behind zxhost.");
    m_app->allow_windows_style_options(false);
    add_line_verbs(*m_app, m_program);
}

LineApp::~LineApp() = default;

void LineApp::run(std::vector<std::string> words, const Streams& streams) {
    parse_words(*m_app, m_program, std::move(words));
    m_program.verb(streams);
    streams.out.flush();
}

}  // namespace zxhost
