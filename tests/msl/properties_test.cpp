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

// The plain form, which terminates, and the complement form, which leaves what stands behind.
RC_GTEST_PROP(Base64Property, BothWaysWorkInPlaceInBothForms, (const std::string& bytes)) {
    for (const bool terminated : {true, false}) {
        const auto form = [terminated](std::size_t size) { return terminated ? size : ~size; };
        std::string encoded = bytes;
        stl_encode_base64(encoded);
        std::string buffer = bytes;
        buffer.resize(encoded.size() + 1, 'x');
        buffer.back() = 'y';
        RC_ASSERT(MBase64_Encode(buffer.data(), buffer.data(), form(bytes.size())) ==
                  static_cast<long>(encoded.size()));
        RC_ASSERT(buffer == encoded + (terminated ? '\0' : 'y'));
        const std::size_t size = MBase64_DecodedSize(encoded.data(), form(encoded.size()));
        RC_ASSERT(size == bytes.size() + (terminated ? 1 : 0));
        buffer.back() = 'y';
        RC_ASSERT(MBase64_Decode(buffer.data(), buffer.data(), form(encoded.size())) ==
                  static_cast<long>(bytes.size()));
        RC_ASSERT(buffer.substr(0, bytes.size()) == bytes);
        if (terminated) RC_ASSERT(buffer[bytes.size()] == '\0');
        RC_ASSERT(buffer.size() == encoded.size() + 1);
        RC_ASSERT(buffer.back() == (terminated && bytes.empty() ? '\0' : 'y'));
    }
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

// A text whose interesting part lies about the end of one of the reader's buffers.
std::string text_over_a_buffers_end() {
    const std::size_t buffers = *rc::gen::inRange<std::size_t>(1, 4);
    const auto ahead = *rc::gen::inRange<std::size_t>(buffers * 8192 - 40, buffers * 8192 + 2);
    return std::string(ahead, 'x') + *texts("\r\n\r\nab");
}

RC_GTEST_PROP(LineProperty, SplittingDoesNotDependOnWhereTheBufferEnds, ()) {
    const std::string text = text_over_a_buffers_end();
    const TemporaryDirectory directory;
    const std::string path = directory.file("file", text);
    MFastFileReader reader(path.c_str());
    MFastFileReader c_reader(path.c_str());
    std::vector<std::string> lines;
    std::vector<std::string> c_lines;
    std::string line;
    std::string buffer(text.size() + 2, ' ');
    while (!reader.IsEOF()) {
        RC_ASSERT(reader.ReadLine(line));
        lines.push_back(line);
        const std::int64_t length = c_reader.ReadLine(buffer.data(), text.size() + 1);
        RC_ASSERT(length >= 0);
        c_lines.emplace_back(buffer.data(), static_cast<std::size_t>(length));
    }
    RC_ASSERT(c_reader.IsEOF());
    RC_ASSERT(lines == lines_of(text));
    RC_ASSERT(c_lines == lines);
}

RC_GTEST_PROP(LineProperty, CharactersDoNotDependOnWhereTheBufferEnds, ()) {
    const std::string text = text_over_a_buffers_end();
    const TemporaryDirectory directory;
    MFastFileReader reader(directory.file("file", text).c_str());
    std::string read;
    for (char c = '?'; reader.ReadCharNL(c) == 1;) read += c;
    RC_ASSERT(read == with_line_ends(text, "\n"));
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

// Any bytes that can stand in one line.
std::string line_text(const std::string& special) {
    std::string text = *texts(special);
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
    return text;
}

std::string blanks() { return *rc::gen::container<std::string>(rc::gen::elementOf(std::string(" \t"))); }

std::string plain_line() {
    const char comment = *rc::gen::elementOf(std::string("#*/;"));
    switch (*rc::gen::inRange(0, 3)) {
        case 0:
            return blanks();
        case 1:
            return comment + line_text("[]=;");
        default:
            return blanks() + comment + line_text("[]=;");
    }
}

// A file that can be parsed, with what stands in it.
struct IniFile {
    std::vector<std::string> lines;
    std::map<std::string, std::map<std::string, std::string>> values;
};

void add_entry(IniFile& file, const std::string& section, std::size_t number) {
    // Begins with a letter, and is another one each time.
    std::string name = "e" + std::to_string(number) + line_text("[]; \t#");
    std::erase(name, '=');
    const std::string value = line_text(" =;[]\t\"#");
    file.lines.push_back(blanks() + name + blanks() + "=" + value);
    name.erase(name.find_last_not_of(" \t") + 1);
    file.values[section][name] = value;
}

IniFile any_ini_file() {
    IniFile file;
    const auto some = [] { return *rc::gen::inRange<std::size_t>(0, 5); };
    for (std::size_t i = some(); i > 0; --i) file.lines.push_back(plain_line());
    for (std::size_t s = some(); s > 0; --s) {
        std::string name = line_text("[ =;a") + std::to_string(s);
        std::erase(name, ']');
        file.lines.push_back("[" + name + "]" + *rc::gen::element<std::string>("", "]", " ; tail", "\t"));
        file.values[name];
        for (std::size_t i = some(); i > 0; --i) {
            if (*rc::gen::arbitrary<bool>()) {
                file.lines.push_back(plain_line());
            } else {
                add_entry(file, name, i);
            }
        }
    }
    return file;
}

std::string text_of(const IniFile& file) {
    std::string text = *rc::gen::element<std::string>("", "\xEF\xBB\xBF");
    for (const std::string& line : file.lines) {
        text += line + *rc::gen::element<std::string>("\n", "\r", "\r\n");
    }
    if (!text.empty() && *rc::gen::arbitrary<bool>()) text += "; no end";
    return text;
}

RC_GTEST_PROP(IniProperty, AnyParsableFileIsReadAndSavedAsTheTableSays, ()) {
    const IniFile file = any_ini_file();
    const std::string text = text_of(file);
    const std::size_t mark = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    const TemporaryDirectory directory;
    MIniData ini(*rc::gen::element(0U, 1U, 2U, 8U, 16U, 24U, 32U, 63U));
    RC_ASSERT(ini.Open(directory.file("x.ini", text)));
    RC_ASSERT(ini.GetNumSections() == file.values.size());
    for (const auto& [section, values] : file.values) {
        // The arguments of a query end at their first NUL.
        if (section.find('\0') != section.npos) continue;
        RC_ASSERT(ini.GetNumEntries(section.c_str()) == values.size());
        for (const auto& [name, value] : values) {
            std::string read;
            if (name.find('\0') != name.npos) continue;
            RC_ASSERT(ini.GetStringEntry(section.c_str(), name.c_str(), read));
            RC_ASSERT(read == value);
        }
    }
    RC_ASSERT(ini.Save());
    const std::string saved = directory.content("x.ini");
    RC_ASSERT(saved == saved_form(lines_of(text.substr(mark))));
    RC_ASSERT(ini.Reload());
    RC_ASSERT(ini.Save());
    RC_ASSERT(directory.content("x.ini") == saved);
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
