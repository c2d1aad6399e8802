#include "operations.h"

#include <sstream>

#include "MIniData.h"
#include "fastfile.h"
#include "fileops.h"
#include "mdirectorywalker.h"

namespace faults {
namespace {

template <class... Values>
std::string said(const Values&... values) {
    std::ostringstream out;
    out << std::boolalpha;
    const char* separator = "";
    ((out << separator << values, separator = " "), ...);
    return out.str();
}

// A file of the place, opened for reading; and one for writing, with that much in its buffer already.
class Reader : public MFastFileReader {
public:
    Reader(const Place& place, const char* name) : MFastFileReader(place.path(name).c_str()) {}
};

class Writer : public MFastFileWriter {
public:
    Writer(const Place& place, std::size_t buffered)
        : MFastFileWriter(place.path("new").c_str(), MFASTFILE_CREATE_NEW) {
        const std::string text(buffered, 'b');
        Write(text.data(), text.size());
    }
};

constexpr std::size_t full = MFastFile::buffer_size;

template <class Value>
std::string typed_read(const Place& place, std::int64_t (MFastFileReader::*read)(Value&)) {
    Value value{};
    Reader reader(place, "big");
    return said((reader.*read)(value));
}

template <class Value>
std::string typed_write(const Place& place, std::int64_t (MFastFileWriter::*write)(Value)) {
    Writer writer(place, full - 1);
    return said((writer.*write)(Value{}));
}

std::string text_write(const Place& place, std::int64_t (MFastFileWriter::*write)(const char*)) {
    Writer writer(place, full - 1);
    return said((writer.*write)("abc"));
}

std::string open_for_writing(const Place& place, int mode) {
    MFastFileWriter writer;
    const bool opened = writer.Open(place.path("file").c_str(), mode);
    const bool closed = writer.Close();
    return said(opened, closed);
}

std::string write_at_once(const Place& place, int mode) {
    return said(MFastFile_WriteAtOnce(place.path("file").c_str(), "newer", 5, mode));
}

std::string write_lines(const Place& place, int mode) {
    return said(MFastFile_WriteLinesAtOnce(place.path("file").c_str(), "a\nb\n", 4, mode));
}

std::string copy(const Place& place, const char* from, int mode) {
    return said(MFastFile_CopyFile(place.path(from).c_str(), place.path("file").c_str(), mode));
}

std::string state(const MIniData& ini) {
    return said(ini.IsOpen(), ini.IsNew(), ini.IsSaved(), ini.GetNumSections(), ini.GetNumEntries("s"));
}

std::string open_ini(const Place& place, const char* name) {
    MIniData ini;
    const bool opened = ini.Open(place.path(name));
    return said(opened, state(ini));
}

std::string save_ini(const Place& place, unsigned flags) {
    MIniData ini(flags);
    ini.Open(place.path("x.ini"));
    ini.SetContentString("[s]\na=2\nb=3\n");
    const bool saved = ini.Save();
    return said(saved, state(ini));
}

std::string save_new_ini(const Place& place, unsigned flags) {
    MIniData ini(flags);
    ini.Open(place.path("new.ini"));
    ini.SetLongEntry("s", "a", 1);
    const bool saved = ini.Save();
    return said(saved, state(ini));
}

constexpr const char* new_ini = "[s]\r\na=2\r\nb=3\r\n";

// The reader.
std::vector<Operation> reading() {
    return {
        {"reader_constructor",
         [](const Place& place) {
             MFastFileReader reader(place.path("file").c_str());
             return said(reader.IsEOF());
         }},
        {"reader_open_close",
         [](const Place& place) {
             MFastFileReader reader;
             const bool opened = reader.Open(place.path("file").c_str());
             return said(opened, reader.Close());
         }},
        {"reader_open_again",
         [](const Place& place) {
             Reader reader(place, "file");
             return said(reader.Open(place.path("big").c_str()));
         }},
        {"reader_read_small",
         [](const Place& place) {
             char bytes[4];
             Reader reader(place, "file");
             const std::int64_t first = reader.Read(bytes, 3);
             return said(first, reader.Read(bytes, 4));
         }},
        {"reader_read_large",
         [](const Place& place) {
             std::string bytes(20000, ' ');
             Reader reader(place, "big");
             const std::int64_t first = reader.Read(bytes.data(), 10);
             return said(first, reader.Read(bytes.data(), bytes.size()));
         }},
        {"reader_read_line_of_a_string",
         [](const Place& place) {
             Reader reader(place, "big");
             std::string line;
             std::string result;
             for (int i = 0; i < 4; ++i) {
                 const bool read = reader.ReadLine(line);
                 result += said(read, line.size()) + " ";
             }
             return result + said(reader.IsEOF());
         }},
        {"reader_read_line_of_a_buffer",
         [](const Place& place) {
             Reader reader(place, "big");
             std::string buffer(10001, ' ');
             std::string result;
             for (int i = 0; i < 4; ++i) result += said(reader.ReadLine(buffer.data(), 10000)) + " ";
             return result + said(reader.IsEOF());
         }},
        {"reader_read_string",
         [](const Place& place) {
             Reader reader(place, "big");
             std::string buffer(10001, ' ');
             const std::int64_t first = reader.ReadString(buffer.data(), 10000, '\n');
             return said(first, reader.ReadString(buffer.data(), 10000, '\n'));
         }},
        {"reader_read_char",
         [](const Place& place) {
             Reader reader(place, "file");
             char c = '?';
             const int count = reader.ReadChar(c);
             return said(count, c);
         }},
        {"reader_read_char_nl",
         [](const Place& place) {
             Reader reader(place, "big");
             char c = '?';
             std::string bytes(full - 1, ' ');
             reader.Read(bytes.data(), bytes.size());
             int count = reader.ReadCharNL(c);
             const std::string last = said(count, int{c});
             count = reader.ReadCharNL(c);
             return said(last, count, int{c});
         }},
        {"reader_read_int", [](const Place& p) { return typed_read(p, &MFastFileReader::ReadInt); }},
        {"reader_read_short", [](const Place& p) { return typed_read(p, &MFastFileReader::ReadShort); }},
        {"reader_read_long", [](const Place& p) { return typed_read(p, &MFastFileReader::ReadLong); }},
        {"reader_read_float", [](const Place& p) { return typed_read(p, &MFastFileReader::ReadFloat); }},
        {"reader_read_double", [](const Place& p) { return typed_read(p, &MFastFileReader::ReadDouble); }},
    };
}

// The writer.
std::vector<Operation> writing() {
    return {
        {"writer_constructor",
         [](const Place& place) {
             MFastFileWriter writer(place.path("new").c_str(), MFASTFILE_CREATE_NEW);
             return said(writer.WriteChar('c'));
         }},
        {"writer_open_new",
         [](const Place& place) {
             MFastFileWriter writer;
             const bool opened = writer.Open(place.path("new").c_str(), MFASTFILE_CREATE_NEW);
             return said(opened, writer.Close());
         }},
        {"writer_append", [](const Place& p) { return open_for_writing(p, MFASTFILE_APPEND); }},
        {"writer_overwrite", [](const Place& p) { return open_for_writing(p, MFASTFILE_OVERWRITE); }},
        {"writer_write_through",
         [](const Place& p) { return open_for_writing(p, MFASTFILE_OVERWRITE | MFASTFILE_WRITE_THROUGH); }},
        {"writer_open_again",
         [](const Place& place) {
             Writer writer(place, 1);
             return said(writer.Open(place.path("file").c_str(), MFASTFILE_APPEND));
         }},
        {"writer_write_small",
         [](const Place& place) {
             Writer writer(place, 0);
             const std::int64_t count = writer.Write("abc", 3);
             return said(count, writer.Close());
         }},
        {"writer_write_over_the_end_of_the_buffer",
         [](const Place& place) {
             Writer writer(place, 0);
             const std::int64_t count = writer.Write(std::string(16000, 'w').data(), 16000);
             return said(count, writer.Close());
         }},
        {"writer_write_past_the_buffer",
         [](const Place& place) {
             Writer writer(place, 0);
             const std::int64_t count = writer.Write(std::string(20000, 'w').data(), 20000);
             return said(count, writer.Close());
         }},
        {"writer_write_char",
         [](const Place& place) {
             Writer writer(place, full - 1);
             const int last = writer.WriteChar('c');
             return said(last, writer.WriteChar('d'));
         }},
        {"writer_write_char_nl",
         [](const Place& place) {
             Writer writer(place, full - 1);
             return said(writer.WriteCharNL('\n'));
         }},
        {"writer_write_string", [](const Place& p) { return text_write(p, &MFastFileWriter::WriteString); }},
        {"writer_write_string_nl",
         [](const Place& p) { return text_write(p, &MFastFileWriter::WriteStringNL); }},
        {"writer_write_line", [](const Place& p) { return text_write(p, &MFastFileWriter::WriteLine); }},
        {"writer_write_line_whose_end_is_behind_the_buffer",
         [](const Place& place) {
             Writer writer(place, full - 2);
             return said(writer.WriteLine("c"));
         }},
        {"writer_write_line_nl", [](const Place& p) { return text_write(p, &MFastFileWriter::WriteLineNL); }},
        {"writer_write_line_nl_whose_end_is_behind_the_buffer",
         [](const Place& place) {
             Writer writer(place, full - 2);
             return said(writer.WriteLineNL("c"));
         }},
        {"writer_write_int", [](const Place& p) { return typed_write(p, &MFastFileWriter::WriteInt); }},
        {"writer_write_short", [](const Place& p) { return typed_write(p, &MFastFileWriter::WriteShort); }},
        {"writer_write_long", [](const Place& p) { return typed_write(p, &MFastFileWriter::WriteLong); }},
        {"writer_write_float", [](const Place& p) { return typed_write(p, &MFastFileWriter::WriteFloat); }},
        {"writer_write_double", [](const Place& p) { return typed_write(p, &MFastFileWriter::WriteDouble); }},
        {"writer_flush",
         [](const Place& place) {
             Writer writer(place, 3);
             const bool flushed = writer.Flush();
             return said(flushed, writer.Close());
         }},
    };
}

// Whole files.
std::vector<Operation> whole_files() {
    return {
        {"read_at_once",
         [](const Place& place) {
             char bytes[10];
             return said(MFastFile_ReadAtOnce(place.path("file").c_str(), bytes, sizeof bytes));
         }},
        {"read_at_once_to_a_string",
         [](const Place& place) {
             std::string text = "before";
             const std::int64_t count = MFastFile_ReadAtOnce(place.path("file").c_str(), text);
             return said(count, text.size());
         }},
        {"read_lines_at_once",
         [](const Place& place) {
             char bytes[10];
             return said(MFastFile_ReadLinesAtOnce(place.path("file").c_str(), bytes, sizeof bytes));
         }},
        {"read_lines_at_once_to_a_string",
         [](const Place& place) {
             std::string text = "before";
             const std::int64_t count = MFastFile_ReadLinesAtOnce(place.path("file").c_str(), text);
             return said(count, text.size());
         }},
        {"write_at_once_new",
         [](const Place& place) {
             return said(MFastFile_WriteAtOnce(place.path("new").c_str(), "newer", 5, MFASTFILE_CREATE_NEW));
         }},
        {"write_at_once_append", [](const Place& p) { return write_at_once(p, MFASTFILE_APPEND); }},
        {"write_at_once_overwrite", [](const Place& p) { return write_at_once(p, MFASTFILE_OVERWRITE); }},
        {"write_at_once_flushed",
         [](const Place& p) { return write_at_once(p, MFASTFILE_OVERWRITE | MFASTFILE_FLUSH); }},
        {"write_at_once_by_rename", [](const Place& p) { return write_at_once(p, MFASTFILE_BY_RENAME); },
         "file", "newer"},
        {"write_at_once_by_rename_with_the_flag",
         [](const Place& p) { return write_at_once(p, MFASTFILE_BY_RENAME | MFASTFILE_FLUSH); }, "file",
         "newer"},
        {"write_lines_at_once", [](const Place& p) { return write_lines(p, MFASTFILE_OVERWRITE); }},
        {"write_lines_at_once_by_rename", [](const Place& p) { return write_lines(p, MFASTFILE_BY_RENAME); },
         "file", "a\r\nb\r\n"},
        {"copy_file", [](const Place& p) { return copy(p, "x.ini", MFASTFILE_OVERWRITE); }},
        {"copy_file_by_rename", [](const Place& p) { return copy(p, "x.ini", MFASTFILE_BY_RENAME); }, "file",
         "[s]\r\na=1\r\n"},
        {"copy_empty_file", [](const Place& p) { return copy(p, "empty", MFASTFILE_OVERWRITE); }},
        {"copy_empty_file_by_rename", [](const Place& p) { return copy(p, "empty", MFASTFILE_BY_RENAME); },
         "file", ""},
    };
}

// Operations that need no open file.
std::vector<Operation> names() {
    return {
        {"file_type", [](const Place& place) { return said(file_type(place.path("file").c_str())); }},
        {"file_type_of_a_pattern",
         [](const Place& place) { return said(file_type(place.path("fi*").c_str())); }},
        {"file_size", [](const Place& place) { return said(file_size(place.path("file").c_str())); }},
        {"file_exists", [](const Place& place) { return said(file_exists(place.path("file").c_str())); }},
        {"file_remove", [](const Place& place) { return said(file_remove(place.path("file").c_str())); }},
        {"file_rename",
         [](const Place& place) {
             return said(file_rename(place.path("file").c_str(), place.path("empty").c_str()));
         }},
        {"file_make_writable",
         [](const Place& place) { return said(file_make_writable(place.path("file").c_str())); }},
        {"file_is_not_directory",
         [](const Place& place) { return said(file_is_not_directory(place.path("file").c_str())); }},
        {"file_fullpath",
         [](const Place& place) {
             char target[260];
             const char* const full_path = file_fullpath(place.path("sub/../file").c_str(), target);
             return place.plain(full_path ? full_path : "null");
         }},
        {"file_is_inside",
         [](const Place& place) {
             return said(file_is_inside(place.path("sub/in").c_str(), place.path().c_str()));
         }},
        {"walker",
         [](const Place& place) {
             MDirectoryWalker walker;
             if (!walker.SetPath(place.path("sub").c_str())) return said(false);
             std::string result = said(true);
             char type = '?';
             for (const char* name = walker.GetFirst(&type); name; name = walker.GetNext(&type)) {
                 result += " " + said(type) + name;
             }
             return result;
         }},
    };
}

// The ini model, and its flat layer.
std::vector<Operation> ini() {
    return {
        {"ini_open", [](const Place& p) { return open_ini(p, "x.ini"); }},
        {"ini_open_missing", [](const Place& p) { return open_ini(p, "none.ini"); }},
        {"ini_open_empty", [](const Place& p) { return open_ini(p, "empty"); }},
        {"ini_constructor",
         [](const Place& place) {
             const MIniData ini(place.path("x.ini"));
             return state(ini);
         }},
        {"ini_reload",
         [](const Place& place) {
             MIniData ini(place.path("x.ini"));
             ini.SetLongEntry("s", "b", 1);
             const bool reloaded = ini.Reload();
             return said(reloaded, state(ini));
         }},
        {"ini_save", [](const Place& p) { return save_ini(p, 0); }},
        {"ini_save_flushed", [](const Place& p) { return save_ini(p, MINIDATA_FLUSH_ON_SAVE); }},
        {"ini_save_by_rename", [](const Place& p) { return save_ini(p, MINIDATA_SAVE_BY_RENAME); }, "x.ini",
         new_ini},
        {"ini_save_by_rename_flushed",
         [](const Place& p) { return save_ini(p, MINIDATA_SAVE_BY_RENAME | MINIDATA_FLUSH_ON_SAVE); },
         "x.ini", new_ini},
        {"ini_save_new", [](const Place& p) { return save_new_ini(p, 0); }},
        {"ini_save_new_by_rename", [](const Place& p) { return save_new_ini(p, MINIDATA_SAVE_BY_RENAME); }},
        {"flat_ini",
         [](const Place& place) {
             MIniData* const ini = MIniData_NewFlags(MINIDATA_SAVE_BY_RENAME);
             const int opened = MIniData_Open(ini, place.path("x.ini").c_str());
             MIniData_SetLongEntry(ini, "s", "b", 2);
             const int saved = MIniData_Save(ini);
             const int reloaded = MIniData_Reload(ini);
             const std::string result = said(opened, saved, reloaded, MIniData_EntryExists(ini, "s", "b"));
             MIniData_Delete(ini);
             return result;
         }},
    };
}

}  // namespace

const std::vector<Operation>& operations() {
    static const std::vector<Operation> table = [] {
        std::vector<Operation> all;
        for (const auto& some : {reading(), writing(), whole_files(), names(), ini()}) {
            all.insert(all.end(), some.begin(), some.end());
        }
        return all;
    }();
    return table;
}

}  // namespace faults
