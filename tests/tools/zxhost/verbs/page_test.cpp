// The examples of the host tool's page for the machine that has everything.
#include "rich_machine.h"

namespace zxhost_test {
namespace {

// The words of a line as a shell takes them: separated by blanks, double quotes keep them together.
Words words_of(const std::string& line) {
    Words words;
    bool is_quoted = false, is_open = false;
    for (const char c : line) {
        if (c == '"') is_quoted = !is_quoted;
        const bool is_gap = c == ' ' && !is_quoted;
        if (!is_gap && !is_open) words.emplace_back();
        is_open = !is_gap;
        if (!is_gap && c != '"') words.back() += c;
    }
    return words;
}

class HostToolPage : public VerbTest {
protected:
    HostToolPage() {
        directory.file("notes.txt", "notes");
        directory.file("new.config", "settings");
        directory.file("magazine.ini",
                       "[Fixed head_1_slot1]\nload.program=l\nunload.program=u\n"
                       "[Fixed head_1_slot2]\nload.program=l\nunload.program=u\n");
    }

    // The files of the examples lie in this test's own directory.
    Words own_files(Words words) const {
        for (std::string& word : words)
            for (const char* name : {"notes.txt", "copy.txt", "new.config", "magazine.ini"})
                if (word == name) word = directory.path(name);
        return words;
    }
};

TEST_F(HostToolPage, ItsExamplesOfTheRichMachineWork) {
    const std::string prompt = "rich$ zxhost ";
    std::ifstream page(ZX_HOST_TOOL_PAGE);
    int count = 0;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind(prompt, 0) != 0) continue;
        const ProcessResult result = run(own_files(words_of(line.substr(prompt.size()))));
        EXPECT_EQ(result.exit_status, 0) << line << "\n" << result.err;
        ++count;
    }
    EXPECT_GE(count, 48);
}

TEST_F(HostToolPage, ShowsARasterAsItIs) {
    std::ifstream in(ZX_HOST_TOOL_PAGE);
    const std::string page{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NE(page.find("rich$ zxhost raster x c\n" + said({"raster", "x", "c"})), std::string::npos);
}

}  // namespace
}  // namespace zxhost_test
