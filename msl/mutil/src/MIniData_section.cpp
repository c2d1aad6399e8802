// Entries, and sections with their lines.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "MIniData.h"
#include "MIniData_text.h"
#include "errtrace.h"
#include "os/error.h"
#include "os/number.h"

using minidata::source;

bool MIniDataEntry::GetDouble(double& out) const {
    const char* const value = text.c_str() + value_pos;
    char* end = nullptr;
    out = os::string_to_double(value, &end);
    return end != value;
}

bool MIniDataEntry::GetLong(long& out) const {
    const char* const value = text.c_str() + value_pos;
    char* end = nullptr;
    out = std::clamp<long>(std::strtol(value, &end, 10), std::numeric_limits<std::int32_t>::min(),
                           std::numeric_limits<std::int32_t>::max());
    return end != value;
}

bool MIniDataEntry::GetLongLong(long long& out) const {
    const char* const value = text.c_str() + value_pos;
    char* end = nullptr;
    out = std::strtoll(value, &end, 10);
    return end != value;
}

void MIniDataEntry::SetDouble(double value) { SetString(minidata::double_text(value)); }
void MIniDataEntry::SetLong(long value) { SetString(minidata::long_text(value)); }
void MIniDataEntry::SetLongLong(long long value) { SetString(std::to_string(value)); }

template <class Compare>
MIniDataSectionT<Compare>::MIniDataSectionT(std::string header, MIniDataLinePool& lines)
    : MIniDataLine(std::move(header)), pool(lines) {
    line_vec.reserve(10);
    line_vec.push_back(this);
}

template <class Compare>
MIniDataSectionT<Compare>::~MIniDataSectionT() {
    for (std::size_t i = 1; i < line_vec.size(); ++i) pool.drop(line_vec[i]);
}

template <class Compare>
MIniDataEntry* MIniDataSectionT<Compare>::GetEntry(const char* name) const {
    const auto found = entry_map.find(minidata::trim_right(name));
    return found == entry_map.end() ? nullptr : found->second;
}

template <class Compare>
void MIniDataSectionT<Compare>::GetEntryNames(std::vector<std::string>& out) const {
    out.clear();
    for (const auto& [name, entry] : entry_map) out.emplace_back(name);
}

template <class Compare>
bool MIniDataSectionT<Compare>::GetDoubleEntry(const char* name, double& out) const {
    const MIniDataEntry* const entry = GetEntry(name);
    return entry && entry->GetDouble(out);
}

template <class Compare>
bool MIniDataSectionT<Compare>::GetLongEntry(const char* name, long& out) const {
    const MIniDataEntry* const entry = GetEntry(name);
    return entry && entry->GetLong(out);
}

template <class Compare>
bool MIniDataSectionT<Compare>::GetLongLongEntry(const char* name, long long& out) const {
    const MIniDataEntry* const entry = GetEntry(name);
    return entry && entry->GetLongLong(out);
}

template <class Compare>
bool MIniDataSectionT<Compare>::GetStringEntry(const char* name, std::string& out) const {
    const MIniDataEntry* const entry = GetEntry(name);
    if (entry) out = entry->GetString();
    return entry != nullptr;
}

template <class Compare>
bool MIniDataSectionT<Compare>::SetDoubleEntry(const char* name, double value) {
    return set_entry(name, minidata::double_text(value), "SetDoubleEntry");
}

template <class Compare>
bool MIniDataSectionT<Compare>::SetLongEntry(const char* name, long value) {
    return set_entry(name, minidata::long_text(value), "SetLongEntry");
}

template <class Compare>
bool MIniDataSectionT<Compare>::SetLongLongEntry(const char* name, long long value) {
    return set_entry(name, std::to_string(value), "SetLongLongEntry");
}

template <class Compare>
bool MIniDataSectionT<Compare>::SetStringEntry(const char* name, const std::string& value) {
    return set_entry(name, value, "SetStringEntry");
}

template <class Compare>
bool MIniDataSectionT<Compare>::set_entry(const char* name, const std::string& value, const char* operation) {
    if (MIniDataEntry* const entry = GetEntry(name)) {
        entry->SetString(value);
        return true;
    }
    if (add_new_entry(name, value)) return true;
    MERRTRACE_REPORT(source, "MIniDataSectionT::%s(): add_new_entry() failed", operation);
    return false;
}

template <class Compare>
bool MIniDataSectionT<Compare>::add_new_entry(const char* name, const std::string& value) {
    const std::string key(minidata::trim_right(name));
    auto* const entry = pool.make<MIniDataEntry>(key + "=" + value, key.size() + 1);
    if (!entry) {
        MERRTRACE_REPORT(source, "MIniDataSectionT::add_new_entry(): new MIniDataEntry() failed: %.50s",
                         os::errno_text().c_str());
        return false;
    }
    entry_map.emplace(key, entry);
    line_vec.push_back(entry);
    return true;
}

template <class Compare>
bool MIniDataSectionT<Compare>::DeleteEntry(const std::string& name) {
    const std::string wanted(minidata::trim_right(name));
    const auto named = entry_map.find(wanted);
    if (named == entry_map.end()) {
        MERRTRACE_REPORT(source, "MIniDataSectionT::DeleteEntry(): entry \"%.40s\" not found in entry_map",
                         wanted.c_str());
        return false;
    }
    for (std::size_t i = 1; i < line_vec.size(); ++i) {
        const std::string& line = line_vec[i]->text;
        const std::size_t begin = minidata::find_text(line);
        if (begin == line.npos || minidata::is_comment_start(line[begin])) continue;
        const std::size_t equals = line.find('=');
        if (equals == line.npos) {
            MERRTRACE_REPORT(source, "MIniDataSectionT::DeleteEntry(): no '=' found in \"%.50s\"",
                             line.c_str());
            return false;
        }
        if (equals <= begin) {
            MERRTRACE_REPORT(source, "MIniDataSectionT::DeleteEntry(): no entry name in \"%.50s\"",
                             line.c_str());
            return false;
        }
        if (minidata::entry_name(line, begin, equals) != wanted) continue;
        erase_line(i, named);
        return true;
    }
    MERRTRACE_REPORT(source, "MIniDataSectionT::DeleteEntry(): entry \"%.40s\" not found in line_vec",
                     wanted.c_str());
    return false;
}

template <class Compare>
void MIniDataSectionT<Compare>::erase_line(std::size_t index, typename EntryMap::const_iterator named) {
    MIniDataLine* const line = line_vec[index];
    const bool is_its_own = named->second == line;
    entry_map.erase(named);
    // By its text the line may be the one of an entry of another name: none shall point at a deleted line.
    if (!is_its_own) {
        const auto other = std::find_if(entry_map.begin(), entry_map.end(),
                                        [line](const auto& item) { return item.second == line; });
        if (other != entry_map.end()) entry_map.erase(other);
    }
    pool.drop(line);
    line_vec.erase(line_vec.begin() + static_cast<std::ptrdiff_t>(index));
}

template class MIniDataSectionT<MIniDataCaseSensitiveCompare>;
