// The in-memory model of an ini file: the file's own lines, so that comments and the exact form of every
// entry survive, with ordered maps beside them for look-ups by name.
//
//     # comment                    Sections begin with '[' in the first column. A line whose first byte that
//     [section]                    is no blank or tab is one of # * / ; is a comment. All else is an entry: a
//     name = value                 name, trimmed, and behind the first '=' the value, byte for byte.
//
// Names are compared as bytes. An object is used from one thread at a time. What goes wrong is told by the
// result, by GetLastError, and in the error trace.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "MIniData_map.h"
#include "MIniData_pool.h"

enum : unsigned {
    MINIDATA_LAX_ENTRIES = 1,  // lines without '=', or without a name before it, are entries
    MINIDATA_REPLACE_SECTIONS =
        2,  // a second section of one name takes the first one's place; and lax entries
    MINIDATA_RESERVED_4 = 4,
    MINIDATA_FLUSH_ON_SAVE = 8,
    MINIDATA_SAVE_BY_RENAME = 16,   // the old file stays whole until the new one is
    MINIDATA_REPLACE_ENTRIES = 32,  // a second entry of one name takes the first one's place
};

struct MIniDataCaseSensitiveCompare {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const { return a < b; }
};

// One line as it was read, without its end.
class MIniDataLine {
public:
    explicit MIniDataLine(std::string line) : text(std::move(line)) {}
    virtual ~MIniDataLine() = default;
    MIniDataLine(const MIniDataLine&) = delete;
    MIniDataLine& operator=(const MIniDataLine&) = delete;

    std::string text;
};

// A line with a value. The getters store the 0 of a conversion that finds no number and return false; what
// stands behind a number doesn't matter.
class MIniDataEntry : public MIniDataLine {
public:
    MIniDataEntry(std::string line, std::size_t pos) : MIniDataLine(std::move(line)), value_pos(pos) {}

    std::string GetString() const { return text.substr(value_pos); }
    bool GetDouble(double& out) const;
    bool GetLong(long& out) const;  // held to 32 bits
    bool GetLongLong(long long& out) const;

    // Replace the value; the name, and all up to the '=', stay.
    void SetString(const std::string& value) { text.replace(value_pos, text.npos, value); }
    void SetDouble(double value);
    void SetLong(long value);  // 32 bits of it
    void SetLongLong(long long value);

    std::size_t value_pos;  // where the value begins in `text`
};

// Where lines live.
using MIniDataLinePool = MIniDataPool<MIniDataLine, MIniDataEntry>;

// A section is the first line of its own lines.
template <class Compare>
class MIniDataSectionT : public MIniDataLine {
public:
    using EntryMap = MIniDataMap<MIniDataEntry, Compare>;

    // The lines come from the pool, which must outlive the section.
    MIniDataSectionT(std::string header, MIniDataLinePool& lines);
    ~MIniDataSectionT() override;

    std::size_t GetNumEntries() const { return entry_map.size(); }
    bool EntryExists(const char* name) const { return GetEntry(name) != nullptr; }

    // Null if there is none. Blanks and tabs at the end of `name` don't count.
    MIniDataEntry* GetEntry(const char* name) const;

    // Names in the order of the map.
    void GetEntryNames(std::vector<std::string>& out) const;

    // False, and `out` as it was, for a missing entry.
    bool GetDoubleEntry(const char* name, double& out) const;
    bool GetLongEntry(const char* name, long& out) const;
    bool GetLongLongEntry(const char* name, long long& out) const;
    bool GetStringEntry(const char* name, std::string& out) const;

    // Replace the value, or add the entry behind the last line.
    bool SetDoubleEntry(const char* name, double value);
    bool SetLongEntry(const char* name, long value);
    bool SetLongLongEntry(const char* name, long long value);
    bool SetStringEntry(const char* name, const std::string& value);

    // Looks for the entry's line by its text; a line before it that is no entry by the strict rules makes it
    // fail.
    bool DeleteEntry(const std::string& name);

    EntryMap entry_map;                   // doesn't own
    std::vector<MIniDataLine*> line_vec;  // owns all, from the pool, but the first, which is this

private:
    bool set_entry(const char* name, const std::string& value, const char* operation);
    bool add_new_entry(const char* name, const std::string& value);
    void erase_line(std::size_t index, typename EntryMap::const_iterator named);

    MIniDataLinePool& pool;
};

template <class Compare>
class MIniDataT {
public:
    using Section = MIniDataSectionT<Compare>;

    explicit MIniDataT(unsigned start_flags = 0) : flags(start_flags) {}

    // Opens the file; what fails goes to the error log, and IsOpen tells.
    explicit MIniDataT(const std::string& path);
    MIniDataT(const MIniDataT& other);
    MIniDataT& operator=(const MIniDataT& other);
    ~MIniDataT();

    // Reads the file into the model, which is emptied first. A missing file makes an empty, open, new model.
    // On failure what was read so far stays, and the model isn't open.
    bool Open(const std::string& path);

    // Empties the model; nothing is saved.
    bool Close();

    // Opens the same file again; false if the model isn't open.
    bool Reload();

    // Writes the model to its file, with CR LF behind each line, as the flags say. On failure nothing about
    // the model changes.
    bool Save();

    // All lines, each with a LF behind it, the sections sorted by name.
    void GetContentString(std::string& out) const;

    // The other way round. Lines end with CR, LF or CR LF, the text with its first NUL.
    bool SetContentString(const std::string& text);

    bool IsOpen() const { return is_open; }
    bool IsNew() const { return is_new; }      // there is no such file yet
    bool IsSaved() const { return is_saved; }  // the file says the same as the model
    const char* GetFilename() const { return filename.c_str(); }
    const char* GetLastError() const { return last_error.c_str(); }
    void SetFlags(unsigned new_flags) { flags = new_flags; }

    std::size_t GetNumSections() const { return section_map.size(); }
    bool SectionExists(const char* section) const { return GetSection(section) != nullptr; }

    // Null if there is none. The model owns it.
    Section* GetSection(const char* section) const;

    // Names in the order of the map.
    void GetSectionNames(std::vector<std::string>& out) const;

    std::size_t GetNumEntries(const char* section) const;
    bool EntryExists(const char* section, const char* name) const {
        return GetEntry(section, name) != nullptr;
    }
    MIniDataEntry* GetEntry(const char* section, const char* name) const;

    // Emptied if there is no such section.
    void GetEntryNames(const char* section, std::vector<std::string>& out) const;

    // False, and `out` as it was, for a missing section or entry; false with 0 for a value without a number.
    bool GetDoubleEntry(const char* section, const char* name, double& out) const;
    bool GetLongEntry(const char* section, const char* name, long& out) const;
    bool GetLongLongEntry(const char* section, const char* name, long long& out) const;
    bool GetStringEntry(const char* section, const char* name, std::string& out) const;

    // Replace the value, or add the entry at the end of the section, which is added if need be. A name that
    // would read as a comment is refused.
    bool SetDoubleEntry(const char* section, const char* name, double value);
    bool SetLongEntry(const char* section, const char* name, long value);  // 32 bits of the value
    bool SetLongLongEntry(const char* section, const char* name, long long value);
    bool SetStringEntry(const char* section, const char* name, const std::string& value);

    // True also if the section is there already.
    bool AddSection(const char* section);

    bool DeleteSection(const std::string& section);
    bool DeleteEntry(const char* section, const char* name);

    // The lines stay; what stood behind the ']' of the header is lost.
    bool RenameSection(const char* old_name, const char* new_name);

    bool operator==(const MIniDataT& other) const;

private:
    void clear();
    void delete_sections();
    bool read_lines();
    bool take_byte_order_mark(std::string& line);
    bool parse_line(const std::string& line);
    bool parse_plain(const std::string& line);
    bool parse_section(const std::string& line);
    bool parse_entry(const std::string& line, std::size_t begin);
    bool replace_section(const std::string& name);
    bool replace_entry(const std::string& name);
    Section* add_new_section(const std::string& name);
    Section* section_to_set(const char* section, const char* operation);
    bool refuse_comment(const char* operation, const std::string& error);
    bool changed(bool ok);
    bool fail(const std::string& error);
    bool fail_in_parse(const std::string& error);
    bool out_of_memory(const char* what);
    bool is_lax() const { return (flags & (MINIDATA_LAX_ENTRIES | MINIDATA_REPLACE_SECTIONS)) != 0; }

    bool is_open = false;
    bool is_new = true;
    bool is_saved = false;
    std::string filename;
    unsigned flags = 0;
    std::vector<MIniDataLine*> header_lines;    // before the first section; owned
    MIniDataMap<Section, Compare> section_map;  // owned
    Section* current_section = nullptr;         // the one that lines go to
    std::string last_error;
    MIniDataLinePool pool;  // of all lines but the headers of sections
};

template <class Compare>
std::ostream& operator<<(std::ostream& stream, const MIniDataT<Compare>& ini);
