// Buffered files of bytes.
//
// Counts are 64-bit, -1 for failure; a bool is true for success. A failure adds its report to the error trace
// at each level that it passes; nothing is thrown but by the allocation of strings. An object is used from
// one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "os/file.h"

// What reader and writer have in common: a buffer inside the object, so that opening costs no allocation, and
// the file behind it.
class MFastFile {
public:
    static constexpr std::size_t buffer_size = 8192;

    MFastFile(const MFastFile&) = delete;
    MFastFile& operator=(const MFastFile&) = delete;

protected:
    MFastFile() = default;
    ~MFastFile() = default;

    bool is_closed() const { return state != 0; }

    std::array<char, buffer_size> buffer;
    char* limit = buffer.data();   // reader: behind the last valid byte; writer: behind the buffer
    char* cursor = buffer.data();  // the next byte to read or write
    os::FileHandle file = os::no_file;
    std::int32_t state = -1;  // 0 open, -1 closed
    std::string filename;
};

// Reads a file from its start to its end.
class MFastFileReader : public MFastFile {
protected:
    // Reads the buffer anew; at the end of the file it stays empty. Stands first in the table of virtual
    // operations.
    virtual bool fill_buffer();

public:
    MFastFileReader() = default;

    // A failure leaves a closed reader.
    explicit MFastFileReader(const char* path);
    virtual ~MFastFileReader();

    // Closes an open file first.
    bool Open(const char* path);
    bool Close();

    // Count read; fewer than `size` means the end of the file.
    std::int64_t Read(void* target, std::size_t size);

    // Replaces `target` by the bytes up to the next CR, LF or CR LF, which is taken from the file but not
    // stored, or to the end of the file. An empty line and the end of the file are told apart by IsEOF.
    bool ReadLine(std::string& target);

    // The same into a buffer of at least max + 1 bytes; always terminated by NUL. Returns the bytes stored. A
    // line of `max` or more bytes goes on at the next call, with what is left of it, be it empty.
    std::int64_t ReadLine(char* target, std::size_t max);

    // Reads up to `max` bytes, and no more than up to a delimiter, into a buffer of at least max + 1 bytes.
    // Returns the count without the delimiter, in whose place the terminating NUL then stands; but if the
    // delimiter comes first, the count is 0, and `target` holds the delimiter and NUL.
    std::int64_t ReadString(char* target, std::size_t max, char delimiter);

    // 1, 0 at the end of the file, -1 on failure. The second delivers every line end as one LF.
    int ReadChar(char& c);
    int ReadCharNL(char& c);

    // Goes back over the byte read last, as long as it stands in the buffer: one byte is safe after ReadChar.
    bool UnReadChar();

    // Bytes as they lie in memory: 4, 2, 4, 4 and 8. Count read.
    std::int64_t ReadInt(int& value);
    std::int64_t ReadShort(short& value);
    std::int64_t ReadLong(long& value);
    std::int64_t ReadFloat(float& value);
    std::int64_t ReadDouble(double& value);

    // A closed reader, and one that can't read, count as being at the end; the reason goes to the error log.
    bool IsEOF() { return (is_closed() || buffered() == 0) && is_at_end(); }

private:
    std::int64_t read_from_buffer(void* target, std::size_t size);
    int read_char_from_buffer(char& c);
    std::size_t buffered() const { return static_cast<std::size_t>(limit - cursor); }
    bool refill();
    bool is_at_end();
    bool take_line_end();
    const char* find_line_end(const char* end);

    char* rewind_limit = buffer.data();  // UnReadChar goes back no further
    const char* next_cr = nullptr;  // the first CR at `cursor` or behind, else `limit`; null if not known
};

// How a file is written. A writer takes the first four; with the flag each write returns only when the data
// is on the disk.
//
// A whole file is written in these modes, too, or through a temporary file beside it, which is flushed and
// then takes the place and the access rights of the old one, so that there is always a whole file. The flag
// means there that the file is flushed to the disk before it is closed.
enum : int {
    MFASTFILE_CREATE_NEW = 0,  // fails if the file exists
    MFASTFILE_APPEND = 1,
    MFASTFILE_OVERWRITE = 2,
    MFASTFILE_WRITE_THROUGH = 4,
    MFASTFILE_FLUSH = 4,
    MFASTFILE_BY_RENAME = 10,
};

// Writes a file from its start, or on from its end. After a failed write the object stays open.
class MFastFileWriter : public MFastFile {
public:
    MFastFileWriter() { limit = buffer.data() + buffer.size(); }

    // A failure leaves a closed writer.
    MFastFileWriter(const char* path, int mode);
    virtual ~MFastFileWriter();

    // Closes an open file first.
    bool Open(const char* path, int mode);

    // Whether the last bytes could be written doesn't enter the result; the error trace has it.
    bool Close();

    // Bytes as they are. Count, or -1.
    std::int64_t Write(const void* data, std::size_t size);
    std::int64_t WriteString(const char* text);

    // 1 or -1. The second writes LF as CR LF.
    int WriteChar(char c);
    int WriteCharNL(char c);

    // Each byte through WriteCharNL; the second adds one line end. Count of bytes of `text`, and of the line
    // end as one, or -1.
    std::int64_t WriteStringNL(const char* text);
    std::int64_t WriteLineNL(const char* text);

    // The text, which must hold no LF, and CR LF. Count of bytes of `text` plus 1, or -1.
    std::int64_t WriteLine(const char* text);

    // Bytes as they lie in memory: 4, 2, 4, 4 and 8. Count, or -1.
    std::int64_t WriteInt(int value);
    std::int64_t WriteShort(short value);
    std::int64_t WriteLong(long value);
    std::int64_t WriteFloat(float value);
    std::int64_t WriteDouble(double value);

    // Hands what is buffered to the system. It doesn't reach the disk's flush, and the result is false: for
    // data on the disk there are MFASTFILE_WRITE_THROUGH and the flag of MFastFile_WriteAtOnce.
    bool Flush();

private:
    bool write_to_disk(const void* data, std::size_t size);
    std::int64_t write_to_buffer(const void* data, std::size_t size);
    bool write_buffered();
    std::size_t used() const { return static_cast<std::size_t>(cursor - buffer.data()); }
};

// Whole files. Reading returns the count, or -1; the string is sized by the file. It is empty after a
// failure, but if there is no such file it stays as it was.
std::int64_t MFastFile_ReadAtOnce(const char* filename, void* target, std::size_t size);
std::int64_t MFastFile_ReadAtOnce(const char* filename, std::string& target);

// The same with CR and CR LF turned to LF.
std::int64_t MFastFile_ReadLinesAtOnce(const char* filename, void* target, std::size_t size);
std::int64_t MFastFile_ReadLinesAtOnce(const char* filename, std::string& target);

// Count written, or -1.
std::int64_t MFastFile_WriteAtOnce(const char* filename, const void* data, std::size_t size, int mode);

// The same with CR LF for each LF, CR and CR LF of the text. The count is that after the conversion.
std::int64_t MFastFile_WriteLinesAtOnce(const char* filename, const char* text, std::size_t size, int mode);

// False also if not all of it could be read or written.
bool MFastFile_CopyFile(const char* source, const char* target, int mode);
