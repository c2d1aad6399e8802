// Zip archives of directory trees.
//
// Failures are reported to the error trace. An object is used from one thread at a time.
#pragma once

#include <string>

// One archive that is being written. Whole files are held in memory, and each becomes one entry.
class MZipper {
public:
    MZipper();
    // Doesn't close the archive: that is the owner's affair, by Close or Abandon.
    ~MZipper() = default;
    MZipper(const MZipper&) = delete;
    MZipper& operator=(const MZipper&) = delete;

    // Creates an archive in place of an existing file, and closes an open one first. A file that can't be
    // removed is not written to.
    bool Open(const std::string& path);

    // Ends the archive, and its open entry with it. False if any of it could not be written.
    bool Close();

    // Lets go of an open archive without writing more to it; the unfinished file stays.
    void Abandon();

    // Starts an entry, with the time of now, and ends an open one first. Separators at the start of the name
    // are left out. Returns whether an entry is open.
    bool AddEntry(const char* name);
    void CloseEntry();

    // Packs the files of a directory, sorted by name, and then those of its sub-folders, each under the path
    // that was built for it: the directory, which ends in a separator, and the name. Empty files, folders
    // themselves and what lies behind links to directories have no entries. A file that fails, or has 4 GB or
    // more, makes the result false, and the others are packed all the same; a sub-folder that fails ends the
    // work.
    bool FilesToZippArchive(const char* directory);

private:
    bool pack_directory(const std::string& name, const std::string& path);
    bool pack_file(const std::string& name, const std::string& path);
    bool write_entry(const std::string& name, const std::string& data);
    void end_entry();

    bool m_open = false;
    std::string m_path;
    void* m_zip = nullptr;  // minizip's handle; null while closed
    bool m_entryOpen = false;
    bool m_failed = false;     // part of the archive could not be written
    bool m_abandoned = false;  // nothing more is written
};

// Where CreateZipArchive makes its archive: always the same path.
std::string temp_zip_path();

// The bytes of an archive of the directory tree, whose path may lack the separator at its end; empty after a
// failure, and for an empty path. Any thread may call it; in one process archives are made one after the
// other. Another process that makes one at the same time fails, or takes the path over: either way nobody is
// given what the other has written.
std::string CreateZipArchive(const std::string& directory);
