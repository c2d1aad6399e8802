// Changes of the model, and saving it: part of MIniData_template_core.cpp, which instantiates it.
#pragma once

#include <cerrno>
#include <new>
#include <utility>

#include "MIniData.h"
#include "MIniData_text.h"
#include "errtrace.h"
#include "fastfile.h"
#include "stl_utilities.h"

namespace minidata {

// Operations name themselves so in the error trace.
inline constexpr const char* class_name = "MIniDataT<struct MIniDataCaseSensitiveCompare>";

inline bool is_comment(std::string_view name) {
    const std::size_t begin = find_text(name);
    return begin != name.npos && is_comment_start(name[begin]);
}

}  // namespace minidata

template <class Compare>
bool MIniDataT<Compare>::SetDoubleEntry(const char* section, const char* name, double value) {
    if (minidata::is_comment(name)) {
        return refuse_comment("SetDoubleEntry",
                              stl_string_format("cannot add comment as an entry: \"%s=%g\"", name, value));
    }
    Section* const target = section_to_set(section, "SetDoubleEntry");
    return changed(target && target->SetDoubleEntry(name, value));
}

template <class Compare>
bool MIniDataT<Compare>::SetLongEntry(const char* section, const char* name, long value) {
    if (minidata::is_comment(name)) {
        return refuse_comment("SetLongEntry",
                              stl_string_format("cannot add comment as an entry: \"%s=%ld\"", name, value));
    }
    Section* const target = section_to_set(section, "SetLongEntry");
    return changed(target && target->SetLongEntry(name, value));
}

template <class Compare>
bool MIniDataT<Compare>::SetLongLongEntry(const char* section, const char* name, long long value) {
    if (minidata::is_comment(name)) {
        // Under the name of its sibling, as readers of the log know it.
        return refuse_comment("SetLongEntry",
                              stl_string_format("cannot add comment as an entry: \"%s=%lld\"", name, value));
    }
    Section* const target = section_to_set(section, "SetLongLongEntry");
    return changed(target && target->SetLongLongEntry(name, value));
}

template <class Compare>
bool MIniDataT<Compare>::SetStringEntry(const char* section, const char* name, const std::string& value) {
    if (minidata::is_comment(name)) {
        return refuse_comment("SetStringEntry", stl_string_format("cannot add comment as an entry: \"%s=%s\"",
                                                                  name, value.c_str()));
    }
    Section* const target = section_to_set(section, "SetStringEntry");
    return changed(target && target->SetStringEntry(name, value));
}

template <class Compare>
bool MIniDataT<Compare>::refuse_comment(const char* operation, const std::string& error) {
    MERRTRACE_REPORT(minidata::source, "%s::%s(): %s", minidata::class_name, operation, error.c_str());
    return fail(error);
}

template <class Compare>
bool MIniDataT<Compare>::changed(bool ok) {
    if (ok) is_saved = false;
    return ok;
}

template <class Compare>
auto MIniDataT<Compare>::section_to_set(const char* section, const char* operation) -> Section* {
    if (Section* const found = GetSection(section)) return found;
    Section* const added = add_new_section(section);
    if (!added) MERRTRACE_REPORT(minidata::source, "MIniData::%s(): add_new_section() failed", operation);
    return added;
}

template <class Compare>
auto MIniDataT<Compare>::add_new_section(const std::string& name) -> Section* {
    auto* const section = new (std::nothrow) Section("[" + name + "]", pool);
    if (!section) {
        out_of_memory("MIniData::SetDoubleEntry(): new MIniDataSectionT()");
        return nullptr;
    }
    section_map.emplace(name, section);
    return section;
}

template <class Compare>
bool MIniDataT<Compare>::AddSection(const char* section) {
    if (SectionExists(section)) return true;
    if (changed(add_new_section(section) != nullptr)) return true;
    MERRTRACE_REPORT(minidata::source, "MIniData::AddSection(): add_new_section() failed");
    return false;
}

template <class Compare>
bool MIniDataT<Compare>::DeleteSection(const std::string& section) {
    const auto found = section_map.find(section);
    if (found == section_map.end()) {
        MERRTRACE_REPORT(minidata::source, "MIniData::DeleteSection(): section \"%.40s\" not found",
                         section.c_str());
        return false;
    }
    if (current_section == found->second) current_section = nullptr;
    delete found->second;
    section_map.erase(found);
    is_saved = false;
    return true;
}

template <class Compare>
bool MIniDataT<Compare>::DeleteEntry(const char* section, const char* name) {
    Section* const found = GetSection(section);
    if (!found) {
        MERRTRACE_REPORT(minidata::source, "MIniData::DeleteEntry(): section \"%.40s\" not found", section);
        return false;
    }
    if (!found->DeleteEntry(name)) {
        MERRTRACE_REPORT(
            minidata::source,
            "MIniData::DeleteEntry(): MIniDataSectionT::DeleteEntry() failed (\"%.30s\",\"%.30s\")", section,
            name);
        return false;
    }
    is_saved = false;
    return true;
}

template <class Compare>
bool MIniDataT<Compare>::RenameSection(const char* old_name, const char* new_name) {
    if (SectionExists(new_name)) {
        MERRTRACE_REPORT(minidata::source, "%s::RenameSection(): section \"%s\" already exists",
                         minidata::class_name, new_name);
        return false;
    }
    Section* const from = GetSection(old_name);
    if (!from) {
        MERRTRACE_REPORT(minidata::source, "%s::RenameSection(): the source section \"%s\" doesn't exists",
                         minidata::class_name, old_name);
        return false;
    }
    Section* const to = add_new_section(new_name);
    if (!to) return false;
    to->entry_map.swap(from->entry_map);
    to->line_vec.swap(from->line_vec);
    to->line_vec.front() = to;
    from->line_vec.front() = from;
    return DeleteSection(old_name);
}

template <class Compare>
bool MIniDataT<Compare>::Save() {
    int mode = MFASTFILE_OVERWRITE;
    if (flags & MINIDATA_FLUSH_ON_SAVE) mode += MFASTFILE_FLUSH;
    if (flags & MINIDATA_SAVE_BY_RENAME) mode += MFASTFILE_BY_RENAME - MFASTFILE_OVERWRITE;
    std::string text;
    GetContentString(text);
    if (MFastFile_WriteLinesAtOnce(filename.c_str(), text.data(), text.size(), mode) < 0) {
        MERRTRACE_REPORT(minidata::source, "MIniData::Save(): MFastFile_WriteLinesAtOnce(\"%.40s\") failed",
                         filename.c_str());
        return false;
    }
    is_new = false;
    is_saved = true;
    return true;
}
