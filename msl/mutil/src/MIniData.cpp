#include "MIniData.h"

#include <cstdlib>
#include <cstring>

#include "errtrace.h"
#include "mstr.h"
#include "os/error.h"

namespace {

constexpr const char* source = "msl/mutil/src/MIniData";
constexpr unsigned known_flags = 0x3F;

}  // namespace

MIniData* MIniData_New() { return new MIniData; }
MIniData* MIniData_NewFlags(unsigned flags) { return new MIniData(flags & known_flags); }
void MIniData_Delete(MIniData* ini) { delete ini; }

int MIniData_Open(MIniData* ini, const char* filename) { return ini->Open(filename); }
int MIniData_Close(MIniData* ini) { return ini->Close(); }
int MIniData_Reload(MIniData* ini) { return ini->Reload(); }
int MIniData_Save(MIniData* ini) { return ini->Save(); }
int MIniData_IsOpen(const MIniData* ini) { return ini->IsOpen(); }
int MIniData_IsNew(const MIniData* ini) { return ini->IsNew(); }

int MIniData_GetNumSections(const MIniData* ini) { return static_cast<int>(ini->GetNumSections()); }

int MIniData_SectionExists(const MIniData* ini, const char* section) { return ini->SectionExists(section); }

int MIniData_EntryExists(const MIniData* ini, const char* section, const char* name) {
    return ini->EntryExists(section, name);
}

int MIniData_GetDoubleEntry(const MIniData* ini, const char* section, const char* name, double* target) {
    return ini->GetDoubleEntry(section, name, *target);
}

int MIniData_GetLongEntry(const MIniData* ini, const char* section, const char* name, long* target) {
    return ini->GetLongEntry(section, name, *target);
}

int MIniData_GetLongLongEntry(const MIniData* ini, const char* section, const char* name, long long* target) {
    return ini->GetLongLongEntry(section, name, *target);
}

int MIniData_SetDoubleEntry(MIniData* ini, const char* section, const char* name, double value) {
    return ini->SetDoubleEntry(section, name, value);
}

int MIniData_SetLongEntry(MIniData* ini, const char* section, const char* name, long value) {
    return ini->SetLongEntry(section, name, value);
}

int MIniData_SetLongLongEntry(MIniData* ini, const char* section, const char* name, long long value) {
    return ini->SetLongLongEntry(section, name, value);
}

int MIniData_SetStringEntry(MIniData* ini, const char* section, const char* name, const char* value) {
    return ini->SetStringEntry(section, name, value);
}

int MIniData_DeleteSection(MIniData* ini, const char* section) { return ini->DeleteSection(section); }

int MIniData_DeleteEntry(MIniData* ini, const char* section, const char* name) {
    return ini->DeleteEntry(section, name);
}

int MIniData_SetContentString(MIniData* ini, const char* text) { return ini->SetContentString(text); }

char* MIniData_GetContentString(const MIniData* ini) {
    std::string text;
    ini->GetContentString(text);
    char* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) {
        MERRTRACE_REPORT(source, "MIniData_GetContentString(): malloc() failed: %.50s",
                         os::errno_text().c_str());
        return nullptr;
    }
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

int MIniData_GetStringEntry(const MIniData* ini, const char* section, const char* name, char* target,
                            std::size_t target_size) {
    std::string value;
    if (!ini->GetStringEntry(section, name, value)) return 0;
    if (MStrCopy(target, value.c_str(), target_size)) return 1;
    MERRTRACE_REPORT(source, "MIniData_GetStringEntry(): returned string too long for target (%zu)",
                     target_size);
    return 0;
}
