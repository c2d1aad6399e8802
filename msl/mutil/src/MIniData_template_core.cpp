// The model as a whole: reading lines into it, its text form, and look-ups.

#include "MIniData_template_core.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <ostream>

#include "MIniData.h"
#include "MIniData_edit.inl"
#include "MIniData_text.h"
#include "errtrace.h"
#include "fastfile.h"
#include "fileops.h"
#include "os/error.h"
#include "stl_utilities.h"

using minidata::source;

namespace {

constexpr std::size_t longest_error = 1023;

// Appends texts, each with a LF behind it.
void append_lines(std::string& out, const std::vector<MIniDataLine*>& lines) {
    for (const MIniDataLine* line : lines) {
        out += line->text;
        out += '\n';
    }
}

std::size_t size_of_lines(const std::vector<MIniDataLine*>& lines) {
    std::size_t size = lines.size();
    for (const MIniDataLine* line : lines) size += line->text.size();
    return size;
}

}  // namespace

template <class Compare>
MIniDataT<Compare>::MIniDataT(const std::string& path) {
    MErrTrace_BeginContext();
    if (!Open(path)) {
        _MErrTrace_Location(0, source, __LINE__);
        _MErrTrace_DumpContextToMErrLog("MIniData::MIniData(): Open(\"%.60s\") failed", path.c_str());
    }
    MErrTrace_EndContext();
}

template <class Compare>
MIniDataT<Compare>::MIniDataT(const MIniDataT& other) {
    *this = other;
}

template <class Compare>
MIniDataT<Compare>& MIniDataT<Compare>::operator=(const MIniDataT& other) {
    if (this == &other) return *this;
    clear();
    filename = other.filename;
    flags = other.flags;
    last_error = other.last_error;
    std::string text;
    other.GetContentString(text);
    SetContentString(text);
    is_open = other.is_open;
    is_new = other.is_new;
    is_saved = other.is_saved;
    return *this;
}

template <class Compare>
MIniDataT<Compare>::~MIniDataT() {
    MErrTrace_BeginContext();
    if (!Close()) {
        _MErrTrace_Location(0, source, __LINE__);
        _MErrTrace_DumpContextToMErrLog("MIniData::~MIniData(): Close() failed");
    }
    MErrTrace_EndContext();
}

template <class Compare>
void MIniDataT<Compare>::clear() {
    for (MIniDataLine* line : header_lines) pool.drop(line);
    header_lines.clear();
    delete_sections();
    section_map.clear();
    current_section = nullptr;
    pool.clear();
}

// In the order of their addresses, for which the allocator has large rooms again and not thousands of small
// ones: the next file loads twice as fast. If there is no memory for that, in the order of their names.
template <class Compare>
void MIniDataT<Compare>::delete_sections() {
    const std::unique_ptr<Section*[]> sections(new (std::nothrow) Section*[section_map.size()]);
    std::size_t count = 0;
    for (const auto& [name, section] : section_map) {
        if (sections) {
            sections[count++] = section;
        } else {
            delete section;
        }
    }
    std::sort(sections.get(), sections.get() + count, std::less<>{});
    for (std::size_t i = 0; i < count; ++i) delete sections[i];
}

template <class Compare>
bool MIniDataT<Compare>::Close() {
    clear();
    filename.clear();
    is_open = false;
    is_new = true;
    return true;
}

template <class Compare>
bool MIniDataT<Compare>::Open(const std::string& path) {
    const std::string own_path = path;  // it may be our file name, which Close empties
    Close();
    filename = own_path;
    if (!file_exists(filename.c_str())) {
        is_new = true;
        is_saved = false;
        is_open = true;
        return true;
    }
    is_new = false;
    if (!read_lines()) return false;
    is_saved = true;
    is_open = true;
    return true;
}

template <class Compare>
bool MIniDataT<Compare>::read_lines() {
    MFastFileReader reader;
    if (!reader.Open(filename.c_str())) {
        MERRTRACE_REPORT(source, "MIniData::Open(): MFastFileReader::Open() failed");
        return false;
    }
    std::string line;
    for (bool first = true; !reader.IsEOF(); first = false) {
        if (!reader.ReadLine(line)) {
            MERRTRACE_REPORT(source, "MIniData::Open(): MFastFileReader::ReadLine() failed");
            return false;
        }
        if (first && !take_byte_order_mark(line)) return false;
        if (line.empty() || line.front() == '\0') continue;
        if (!parse_line(line)) {
            MERRTRACE_REPORT(source, "MIniData::Open(): parse_line(%.60s) failed", line.c_str());
            return false;
        }
    }
    return true;
}

// Takes the mark of UTF-8 off the line, and refuses those of the wider encodings.
template <class Compare>
bool MIniDataT<Compare>::take_byte_order_mark(std::string& line) {
    using namespace std::string_view_literals;
    const bool is_utf32 = line.starts_with("\x00\x00\xFE\xFF"sv) || line.starts_with("\xFF\xFE\x00\x00"sv);
    if (!is_utf32 && line.starts_with("\xEF\xBB\xBF"sv)) {
        line.erase(0, 3);
        return true;
    }
    if (!is_utf32 && !line.starts_with("\xFE\xFF"sv) && !line.starts_with("\xFF\xFE"sv)) return true;
    last_error = "UTF16/32 Unicode format not supported.";
    MERRTRACE_REPORT(source, "MIniData::Open(\"%.80s\"): UTF16/32 Unicode format not supported",
                     filename.c_str());
    return false;
}

template <class Compare>
bool MIniDataT<Compare>::Reload() {
    return is_open && Open(filename);
}

template <class Compare>
bool MIniDataT<Compare>::fail(const std::string& error) {
    last_error = error.substr(0, longest_error);
    return false;
}

template <class Compare>
bool MIniDataT<Compare>::fail_in_parse(const std::string& error) {
    fail(error);
    MERRTRACE_REPORT(source, "MIniData::parse_line(): %.70s", last_error.c_str());
    return false;
}

// `what` could not be made.
template <class Compare>
bool MIniDataT<Compare>::out_of_memory(const char* what) {
    const std::string reason = os::errno_text();
    MERRTRACE_REPORT(source, "%s failed: %.50s", what, reason.c_str());
    return fail(stl_string_format("out of memory (%s)", reason.c_str()));
}

template <class Compare>
bool MIniDataT<Compare>::parse_line(const std::string& line) {
    const std::size_t begin = minidata::find_text(line);
    if (begin == line.npos || (line[0] != '[' && minidata::is_comment_start(line[begin]))) {
        return parse_plain(line);
    }
    return line[0] == '[' ? parse_section(line) : parse_entry(line, begin);
}

template <class Compare>
bool MIniDataT<Compare>::parse_plain(const std::string& line) {
    auto* const plain = pool.make<MIniDataLine>(line);
    if (!plain) return out_of_memory("MIniData::parse_line(): new MIniDataLine()");
    (current_section ? current_section->line_vec : header_lines).push_back(plain);
    return true;
}

template <class Compare>
bool MIniDataT<Compare>::parse_section(const std::string& line) {
    const std::size_t end = line.find(']');
    if (end == line.npos) {
        return fail_in_parse(stl_string_format("no matching ']' found in \"%.50s\"", line.c_str()));
    }
    const std::string_view name = std::string_view(line).substr(1, end - 1);
    auto place = section_map.lower_bound(name);
    if (section_map.is_at(place, name)) {
        if (!replace_section(std::string(name))) return false;
        place = section_map.lower_bound(name);
    }
    auto* const section = new (std::nothrow) Section(line, pool);
    if (!section) return out_of_memory("MIniData::parse_line(): new MIniDataSectionT()");
    section_map.emplace_hint(place, name, section);
    current_section = section;
    return true;
}

// Makes way for another section of this name, if the flags let it.
template <class Compare>
bool MIniDataT<Compare>::replace_section(const std::string& name) {
    if (!(flags & MINIDATA_REPLACE_SECTIONS)) {
        return fail_in_parse(stl_string_format("Section [%s] seen twice", name.c_str()));
    }
    if (DeleteSection(name)) return true;
    MERRTRACE_REPORT(source, "MIniData::parse_line(): DeleteSection() failed");
    return fail(stl_string_format("Section [%s] deleting previous version failed", name.c_str()));
}

template <class Compare>
bool MIniDataT<Compare>::parse_entry(const std::string& line, std::size_t begin) {
    if (!current_section) {
        return fail_in_parse(
            stl_string_format("Possible entry \"%s\" found before first section", line.c_str()));
    }
    const char* const header = current_section->text.c_str();
    const std::size_t equals = line.find('=');
    if (equals == line.npos && !is_lax()) {
        return fail_in_parse(
            stl_string_format("No '=' found in \"%.50s\" in section %s", line.c_str(), header));
    }
    if (equals == begin && !is_lax()) {
        return fail_in_parse(stl_string_format("No entry name found before '=' in \"%s\" in section %s",
                                               line.c_str(), header));
    }
    const std::string_view name = minidata::entry_name(line, begin, equals);
    auto& entries = current_section->entry_map;
    auto place = entries.lower_bound(name);
    if (entries.is_at(place, name)) {
        if (!replace_entry(std::string(name))) return false;
        place = entries.lower_bound(name);
    }
    // Without a '=' the position wraps to 0: the value is the whole line.
    auto* const entry = pool.make<MIniDataEntry>(line, equals + 1);
    if (!entry) return out_of_memory("MIniData::parse_line(): new MIniDataEntry()");
    entries.emplace_hint(place, name, entry);
    current_section->line_vec.push_back(entry);
    return true;
}

// Makes way for another entry of this name, if the flags let it.
template <class Compare>
bool MIniDataT<Compare>::replace_entry(const std::string& name) {
    if (!(flags & MINIDATA_REPLACE_ENTRIES)) {
        return fail_in_parse(stl_string_format("Entry \"%s\" seen twice in section %s", name.c_str(),
                                               current_section->text.c_str()));
    }
    if (current_section->DeleteEntry(name)) return true;
    MERRTRACE_REPORT(source, "MIniData::parse_line(): DeleteEntry() failed");
    return fail(stl_string_format("Entry \"%s\" deleting previous version failed", name.c_str()));
}

template <class Compare>
void MIniDataT<Compare>::GetContentString(std::string& out) const {
    std::size_t size = size_of_lines(header_lines);
    for (const auto& [name, section] : section_map) size += size_of_lines(section->line_vec);
    out.clear();
    out.reserve(size);
    append_lines(out, header_lines);
    for (const auto& [name, section] : section_map) append_lines(out, section->line_vec);
}

template <class Compare>
bool MIniDataT<Compare>::SetContentString(const std::string& text) {
    clear();
    is_saved = false;
    const char* at = text.c_str();
    const char* const text_end = at + std::strlen(at);
    std::string line;
    while (at != text_end) {
        const char* const end = std::find_if(at, text_end, [](char c) { return c == '\r' || c == '\n'; });
        line.assign(at, end);
        if (!parse_line(line)) {
            MERRTRACE_REPORT(source, "MIniData::SetContentString(): parse_line() failed");
            return false;
        }
        at = end;
        if (at != text_end) at += at[0] == '\r' && at[1] == '\n' ? 2 : 1;
    }
    return true;
}

template <class Compare>
auto MIniDataT<Compare>::GetSection(const char* section) const -> Section* {
    const auto found = section_map.find(section);
    return found == section_map.end() ? nullptr : found->second;
}

template <class Compare>
void MIniDataT<Compare>::GetSectionNames(std::vector<std::string>& out) const {
    out.clear();
    for (const auto& [name, section] : section_map) out.emplace_back(name);
}

template <class Compare>
std::size_t MIniDataT<Compare>::GetNumEntries(const char* section) const {
    const Section* const found = GetSection(section);
    return found ? found->GetNumEntries() : 0;
}

template <class Compare>
MIniDataEntry* MIniDataT<Compare>::GetEntry(const char* section, const char* name) const {
    const Section* const found = GetSection(section);
    return found ? found->GetEntry(name) : nullptr;
}

template <class Compare>
void MIniDataT<Compare>::GetEntryNames(const char* section, std::vector<std::string>& out) const {
    out.clear();
    if (const Section* const found = GetSection(section)) found->GetEntryNames(out);
}

template <class Compare>
bool MIniDataT<Compare>::GetDoubleEntry(const char* section, const char* name, double& out) const {
    const MIniDataEntry* const entry = GetEntry(section, name);
    return entry && entry->GetDouble(out);
}

template <class Compare>
bool MIniDataT<Compare>::GetLongEntry(const char* section, const char* name, long& out) const {
    const MIniDataEntry* const entry = GetEntry(section, name);
    return entry && entry->GetLong(out);
}

template <class Compare>
bool MIniDataT<Compare>::GetLongLongEntry(const char* section, const char* name, long long& out) const {
    const MIniDataEntry* const entry = GetEntry(section, name);
    return entry && entry->GetLongLong(out);
}

template <class Compare>
bool MIniDataT<Compare>::GetStringEntry(const char* section, const char* name, std::string& out) const {
    const Section* const found = GetSection(section);
    return found && found->GetStringEntry(name, out);
}

template <class Compare>
bool MIniDataT<Compare>::operator==(const MIniDataT& other) const {
    std::string ours;
    std::string theirs;
    GetContentString(ours);
    other.GetContentString(theirs);
    return ours == theirs;
}

template <class Compare>
std::ostream& operator<<(std::ostream& stream, const MIniDataT<Compare>& ini) {
    std::string text;
    ini.GetContentString(text);
    return stream << text;
}

template class MIniDataT<MIniDataCaseSensitiveCompare>;
template std::ostream& operator<<(std::ostream&, const MIniData&);
