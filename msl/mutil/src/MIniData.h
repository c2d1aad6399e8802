// The ini model with names compared byte by byte, and a flat layer over it for callers that hold only a
// pointer.
#pragma once

#include <cstddef>

#include "MIniData_template_core.h"

using MIniDataSection = MIniDataSectionT<MIniDataCaseSensitiveCompare>;
using MIniData = MIniDataT<MIniDataCaseSensitiveCompare>;

extern template class MIniDataSectionT<MIniDataCaseSensitiveCompare>;
extern template class MIniDataT<MIniDataCaseSensitiveCompare>;

// The caller owns the model and gives it back with MIniData_Delete. Only the flags told in
// MIniData_template_core.h pass.
MIniData* MIniData_New();
MIniData* MIniData_NewFlags(unsigned flags);

// A null pointer is accepted.
void MIniData_Delete(MIniData* ini);

// Each of these does what the operation of that name does, with 1 for true and 0 for false.
int MIniData_Open(MIniData* ini, const char* filename);
int MIniData_Close(MIniData* ini);
int MIniData_Reload(MIniData* ini);
int MIniData_Save(MIniData* ini);
int MIniData_IsOpen(const MIniData* ini);
int MIniData_IsNew(const MIniData* ini);
int MIniData_GetNumSections(const MIniData* ini);
int MIniData_SectionExists(const MIniData* ini, const char* section);
int MIniData_EntryExists(const MIniData* ini, const char* section, const char* name);
int MIniData_GetDoubleEntry(const MIniData* ini, const char* section, const char* name, double* target);
int MIniData_GetLongEntry(const MIniData* ini, const char* section, const char* name, long* target);
int MIniData_GetLongLongEntry(const MIniData* ini, const char* section, const char* name, long long* target);
int MIniData_SetDoubleEntry(MIniData* ini, const char* section, const char* name, double value);
int MIniData_SetLongEntry(MIniData* ini, const char* section, const char* name, long value);
int MIniData_SetLongLongEntry(MIniData* ini, const char* section, const char* name, long long value);
int MIniData_SetStringEntry(MIniData* ini, const char* section, const char* name, const char* value);
int MIniData_DeleteSection(MIniData* ini, const char* section);
int MIniData_DeleteEntry(MIniData* ini, const char* section, const char* name);
int MIniData_SetContentString(MIniData* ini, const char* text);

// A copy that the caller frees with free(); null, reported to the error trace, if memory is exhausted.
char* MIniData_GetContentString(const MIniData* ini);

// Copies the value into a buffer of `target_size` bytes. 0, reported to the error trace, if it doesn't fit;
// the buffer then holds what fits, with a NUL.
int MIniData_GetStringEntry(const MIniData* ini, const char* section, const char* name, char* target,
                            std::size_t target_size);
