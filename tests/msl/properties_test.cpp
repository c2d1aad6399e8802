// What must hold for any input.

#include <gtest/gtest.h>
// Needs what the line before declares.
#include <rapidcheck/gtest.h>

#include <map>

#include "MIniData.h"
#include "fastfile.h"
#include "mbase64.h"
#include "recording_facilities.h"
#include "stl_utilities.h"
#include "temporary_directory.h"

namespace {

// Bytes, among them many that mean something here.
rc::Gen<std::string> texts(const std::string& special) {
    return rc::gen::container<std::string>(
        rc::gen::weightedOneOf<char>({{3, rc::gen::elementOf(special)}, {1, rc::gen::arbitrary<char>()}}));
}

// The lines of a text, told in the plainest way.
std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
            lines.push_back(line);
            line.clear();
        } else {
            line += text[i];
        }
    }
    if (!line.empty()) lines.push_back(line);
    return lines;
}

std::string with_line_ends(const std::string& text, const std::string& end) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
        out += text[i] == '\r' || text[i] == '\n' ? end : std::string(1, text[i]);
    }
    return out;
}

RC_GTEST_PROP(Base64Property, BothWaysGiveTheBytes, (const std::string& bytes)) {
    std::string s = bytes;
    RC_ASSERT(stl_encode_base64(s));
    std::string plain(MBase64_EncodedSize(bytes.size()), 'x');
    RC_ASSERT(MBase64_Encode(plain.data(), bytes.data(), bytes.size()) == static_cast<long>(s.size()));
    RC_ASSERT(plain == s + '\0');
    RC_ASSERT(stl_decode_base64(s));
    RC_ASSERT(s == bytes);
}

RC_GTEST_PROP(Base64Property, AnyTextIsDecodedWithinBounds, ()) {
    std::string text = *texts("ABCDabcd0189+/==");
    std::string target(text.size() / 4 * 3 + 1, 'x');
    const std::ptrdiff_t count = MBase64_Decode(target.data(), text.data(), text.size());
    RC_ASSERT(count <= static_cast<std::ptrdiff_t>(target.size()) - 1);
    stl_decode_base64(text);
    recording::reset();
}

RC_GTEST_PROP(QuoteProperty, UnquotingUndoesQuoting, ()) {
    const std::string text = *texts("\"\\ ab");
    std::string s = text;
    stl_string_quote_space(s);
    RC_ASSERT(stl_string_unquote_space(s));
    RC_ASSERT(s == text);
}

RC_GTEST_PROP(QuoteProperty, UnquotingAnythingIsSafe, ()) {
    const std::string text = *texts("\"\\ ab");
    std::string s = text;
    if (!stl_string_unquote_space(s)) RC_ASSERT(s == text);
    recording::reset();
}

RC_GTEST_PROP(LineProperty, SplittingDoesNotDependOnWhereTheBufferEnds, ()) {
    const std::string tail = *texts("\r\n\r\nab");
    const auto ahead = *rc::gen::inRange<std::size_t>(8192 - 40, 8192 + 2);
    const std::string text = std::string(ahead, 'x') + tail;
    const TemporaryDirectory directory;
    MFastFileReader reader(directory.file("file", text).c_str());
    std::vector<std::string> lines;
    std::string line;
    while (!reader.IsEOF()) {
        RC_ASSERT(reader.ReadLine(line));
        lines.push_back(line);
    }
    RC_ASSERT(lines == lines_of(text));
}

RC_GTEST_PROP(LineProperty, WritingAndReadingLinesNormalisesThem, ()) {
    const std::string text = *texts("\r\n\r\nab");
    const TemporaryDirectory directory;
    const std::string path = directory.path("file");
    const std::string expanded = with_line_ends(text, "\r\n");
    RC_ASSERT(MFastFile_WriteLinesAtOnce(path.c_str(), text.data(), text.size(), MFASTFILE_BY_RENAME) ==
              static_cast<long>(expanded.size()));
    RC_ASSERT(directory.content("file") == expanded);
    std::string back;
    MFastFile_ReadLinesAtOnce(path.c_str(), back);
    RC_ASSERT(back == with_line_ends(text, "\n"));
}

// What a load and a save must make of the lines of a file that can be parsed: the sections sorted by name,
// the lines in them as they are, without the empty ones.
std::string saved_form(const std::vector<std::string>& lines) {
    std::string head;
    std::map<std::string, std::string> sections;
    std::string* current = &head;
    for (const std::string& line : lines) {
        if (line.empty() || line[0] == '\0') continue;
        if (line[0] == '[') current = &sections[line.substr(1, line.find(']') - 1)];
        *current += line + "\r\n";
    }
    for (const auto& [name, body] : sections) head += body;
    return head;
}

RC_GTEST_PROP(IniProperty, LoadAndSaveKeepWhatTheyMust, ()) {
    const std::string text = *texts("[[]]==\n\r\n;#abc \t");
    const TemporaryDirectory directory;
    MIniData ini;
    const bool opened = ini.Open(directory.file("x.ini", text));
    recording::reset();
    RC_CLASSIFY(opened);
    if (!opened) return;
    RC_ASSERT(ini.Save());
    RC_ASSERT(directory.content("x.ini") == saved_form(lines_of(text)));
    std::string before;
    ini.GetContentString(before);
    RC_ASSERT(ini.Reload());
    std::string after;
    ini.GetContentString(after);
    RC_ASSERT(before == after);
}

// A file of well-formed lines, so that large ones can be parsed, too.
RC_GTEST_PROP(IniProperty, WellFormedFilesAreParsed, ()) {
    const auto value = texts(" =;[]\t\"x");
    const std::size_t sections = *rc::gen::inRange<std::size_t>(0, 6);
    std::string text;
    for (std::size_t s = 0; s < sections; ++s) {
        text += "[s" + std::to_string(9 - s) + "]\n; note\n";
        const std::size_t entries = *rc::gen::inRange<std::size_t>(0, 6);
        for (std::size_t e = 0; e < entries; ++e) {
            std::string v = *value;
            std::erase_if(v, [](char c) { return c == '\r' || c == '\n'; });
            text += "  e" + std::to_string(e) + " =" + v + "\n";
        }
    }
    const TemporaryDirectory directory;
    MIniData ini(directory.file("x.ini", text));
    RC_ASSERT(ini.IsOpen());
    RC_ASSERT(ini.GetNumSections() == sections);
    RC_ASSERT(ini.Save());
    RC_ASSERT(directory.content("x.ini") == saved_form(lines_of(text)));
}

// Any sequence of changes leaves the model and its text in step, under any flags.
RC_GTEST_PROP(IniProperty, ChangesLeaveNoEntryWithoutItsLine, ()) {
    MIniData ini(*rc::gen::inRange(0U, 64U));
    const auto names = rc::gen::elementOf(std::vector<std::string>{"a", " a", "a=b", "b", "", "[x"});
    const int steps = *rc::gen::inRange(0, 30);
    for (int i = 0; i < steps; ++i) {
        const std::string section = *rc::gen::elementOf(std::vector<std::string>{"s", "t"});
        const std::string name = *names;
        switch (*rc::gen::inRange(0, 5)) {
            case 0:
                ini.SetStringEntry(section.c_str(), name.c_str(), *names);
                break;
            case 1:
                ini.DeleteEntry(section.c_str(), name.c_str());
                break;
            case 2:
                ini.RenameSection(section.c_str(), section == "s" ? "t" : "s");
                break;
            case 3:
                ini.DeleteSection(section);
                break;
            default:
                ini.SetContentString("[s]\n" + name + "=1\nlax\n" + name + "=2\n");
                break;
        }
        std::vector<std::string> entries;
        for (const char* const s : {"s", "t"}) {
            ini.GetEntryNames(s, entries);
            std::string value;
            for (const std::string& entry : entries) {
                RC_ASSERT(ini.GetSection(s)->GetEntry(entry.c_str()) != nullptr);
                RC_ASSERT(ini.GetStringEntry(s, entry.c_str(), value));
            }
        }
    }
    recording::reset();
}

}  // namespace
