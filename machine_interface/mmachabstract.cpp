#include "mmachabstract.h"

#include "mmachmagazinedb.h"
#include "mmachnotifier.h"
#include "mmachprobesources.h"

namespace {

const std::vector<CProbesystemEntry> no_probesystems;
const std::vector<CProbe> no_probes;

// The bits of a component's state.
constexpr std::int32_t state_bit_0 = 1;
constexpr std::int32_t state_bit_1 = 2;
constexpr std::int32_t state_bit_3 = 8;

bool has_state(const MMachComponentInfo* component, std::int32_t wanted) {
    return component && (component->state & wanted) != 0 && (component->state & state_bit_3) == 0;
}

bool has_any_flag(const MMachAxisInfo* axis, std::uint32_t wanted) {
    return axis && (axis->flags & wanted) != 0;
}

bool is_active(const MMachAxisInfo* axis) { return axis && (axis->flags & MMACH_AXIS_INACTIVE) == 0; }

}  // namespace

MMachAbstract::MMachAbstract(MOutputChannel* output, MMachNotifier* notifier, const std::string& name,
                             const std::string& directory)
    : m_pOutput(output),
      m_pNotifier(notifier),
      m_pProbesystemSource(nullptr),
      m_pProbeSource(nullptr),
      m_pMagazine(nullptr),
      m_name(name),
      m_directory(directory) {}

MMachAbstract::~MMachAbstract() = default;

bool MMachAbstract::TestComponentA(const std::string& name) {
    return has_state(GetComponentInfo(name), state_bit_0);
}

bool MMachAbstract::TestComponentB(const std::string& name) {
    return has_state(GetComponentInfo(name), state_bit_1);
}

bool MMachAbstract::IsAxisDefined(const std::string& axis) { return GetAxisInfo(axis) != nullptr; }

bool MMachAbstract::IsAxisActive(const std::string& axis) { return is_active(GetAxisInfo(axis)); }

bool MMachAbstract::TestAxisA(const std::string& axis) {
    const MMachAxisInfo* info = GetAxisInfo(axis);
    return is_active(info) && has_any_flag(info, MMACH_AXIS_KIND_3 | MMACH_AXIS_UNBOUNDED);
}

bool MMachAbstract::TestAxisB(const std::string& axis) {
    const MMachAxisInfo* info = GetAxisInfo(axis);
    return is_active(info) && has_any_flag(info, MMACH_AXIS_BOUNDED);
}

bool MMachAbstract::TestAxisC(const std::string& axis) {
    const MMachAxisInfo* info = GetAxisInfo(axis);
    return is_active(info) && has_any_flag(info, MMACH_AXIS_KIND_3 | MMACH_AXIS_KIND_0_2);
}

bool MMachAbstract::TestAxisD(const std::string& axis) {
    return has_any_flag(GetAxisInfo(axis), MMACH_AXIS_ROTARY_NAME);
}

bool MMachAbstract::TestAxisE(const std::string& axis) {
    return has_any_flag(GetAxisInfo(axis), MMACH_AXIS_ON_KEYPAD);
}

// The defaults of the virtual operations, in the order of their slots.

void MMachAbstract::EnableCommand(const std::string& class_name) {
    os::LockGuard guard(m_commandsLock);
    m_commands[class_name] = true;
}
void MMachAbstract::DisableCommand(const std::string& class_name) {
    os::LockGuard guard(m_commandsLock);
    m_commands[class_name] = false;
}
bool MMachAbstract::Notify() { return m_pNotifier->Notify(); }
bool MMachAbstract::QueryNotifier() { return m_pNotifier->HasNotification() != 0; }
bool MMachAbstract::IsCommandEnabled(const std::string& class_name) {
    os::LockGuard guard(m_commandsLock);
    const auto entry = m_commands.find(class_name);
    return entry != m_commands.end() && entry->second;
}
const MMachComponentInfo* MMachAbstract::GetComponentInfo(const std::string&) { return nullptr; }
const MMachComponentInfo* MMachAbstract::GetFirstComponentInfo() { return nullptr; }
const MMachComponentInfo* MMachAbstract::GetNextComponentInfo() { return nullptr; }
const MMachComponentInfo* MMachAbstract::GetFirstOptionInfo() { return nullptr; }
const MMachComponentInfo* MMachAbstract::GetNextOptionInfo() { return nullptr; }
double MMachAbstract::GetDefaultConstant() { return 5.0; }
bool MMachAbstract::IsScanningPossibleWith(const AxisSet&) { return false; }
bool MMachAbstract::IsMovePossibleWith(const AxisSet&) { return false; }
bool MMachAbstract::IsLimitMovePossibleWith(const AxisSet&) { return false; }
bool MMachAbstract::IsZeroMovePossibleWith(const AxisSet&) { return false; }
bool MMachAbstract::Reserved27() { return false; }
bool MMachAbstract::Reserved28() { return false; }
void* MMachAbstract::Reserved29() { return nullptr; }
bool MMachAbstract::HasKeypad() { return false; }
const char* MMachAbstract::GetFirstKeypadAxis() { return nullptr; }
const char* MMachAbstract::GetNextKeypadAxis() { return nullptr; }
const char* MMachAbstract::GetFirstActiveKeypadAxis() { return nullptr; }
const char* MMachAbstract::GetNextActiveKeypadAxis() { return nullptr; }
bool MMachAbstract::IsKeypadAxis(const std::string&) { return false; }
bool MMachAbstract::HasSpin() { return false; }
const char* MMachAbstract::GetFirstSpinAxis() { return nullptr; }
const char* MMachAbstract::GetNextSpinAxis() { return nullptr; }
const char* MMachAbstract::GetFirstActiveSpinAxis(double*) { return nullptr; }
const char* MMachAbstract::GetNextActiveSpinAxis(double*) { return nullptr; }
bool MMachAbstract::IsSpinAxis(const std::string&) { return false; }
bool MMachAbstract::Reserved42() { return false; }
bool MMachAbstract::StartAutoinfo(unsigned long long, unsigned, const std::vector<std::string>&) {
    return false;
}
void MMachAbstract::StopAutoinfo() {}
bool MMachAbstract::GetAutoinfo(std::vector<double>&) { return false; }
bool MMachAbstract::IsAutoinfoActive() { return false; }
bool MMachAbstract::Reserved47() { return false; }
bool MMachAbstract::Reserved48() { return false; }
void MMachAbstract::Reserved49() {}
bool MMachAbstract::Reserved50() { return false; }
bool MMachAbstract::Reserved51() { return false; }
bool MMachAbstract::Reserved52() { return false; }
bool MMachAbstract::Reserved53() { return false; }
bool MMachAbstract::Reserved54() { return false; }
bool MMachAbstract::Reserved55() { return false; }
bool MMachAbstract::Reserved56() { return false; }
bool MMachAbstract::Reserved57() { return false; }
bool MMachAbstract::Reserved58() { return false; }
bool MMachAbstract::Reserved59() { return false; }
bool MMachAbstract::Reserved60() { return false; }
bool MMachAbstract::Reserved61() { return false; }
bool MMachAbstract::HasProbesystems() { return m_pProbesystemSource != nullptr; }
bool MMachAbstract::IsProbesystemDefined(const std::string& name) {
    return m_pProbesystemSource ? m_pProbesystemSource->IsProbesystemDefined(name) : false;
}
const std::string* MMachAbstract::GetFirstSupportedProbesystem() {
    return m_pProbesystemSource ? m_pProbesystemSource->GetFirstSupportedProbesystem() : nullptr;
}
const std::string* MMachAbstract::GetNextSupportedProbesystem() {
    return m_pProbesystemSource ? m_pProbesystemSource->GetNextSupportedProbesystem() : nullptr;
}
bool MMachAbstract::IsProbesystemIdDefined(const std::string& name, long id) {
    return m_pProbesystemSource ? m_pProbesystemSource->IsProbesystemIdDefined(name, id) : false;
}
std::vector<CProbesystemEntry> MMachAbstract::ListProbesystems(const std::string& name, long id) {
    return m_pProbesystemSource ? m_pProbesystemSource->ListProbesystems(name, id) : no_probesystems;
}
bool MMachAbstract::IsProbesystemLoaded() {
    return m_pProbesystemSource ? m_pProbesystemSource->IsProbesystemLoaded() : false;
}
bool MMachAbstract::IsProbesystemSupported(const std::string& name) {
    return m_pProbesystemSource ? m_pProbesystemSource->IsProbesystemSupported(name) : false;
}
std::string MMachAbstract::GetActiveProbesystemName() {
    return m_pProbesystemSource ? m_pProbesystemSource->GetActiveProbesystemName() : std::string();
}
long MMachAbstract::GetActiveProbesystemIdNum() {
    return m_pProbesystemSource ? m_pProbesystemSource->GetActiveProbesystemIdNum() : 0;
}
MMachProbesystemType MMachAbstract::GetActiveProbesystemType() {
    return m_pProbesystemSource ? m_pProbesystemSource->GetActiveProbesystemType()
                                : MMachProbesystemType{.type = 1};
}
bool MMachAbstract::Reserved73() { return false; }
void* MMachAbstract::Reserved74() { return nullptr; }
void* MMachAbstract::Reserved75() { return nullptr; }
void* MMachAbstract::Reserved76() { return nullptr; }
void* MMachAbstract::Reserved77() { return nullptr; }
MMachReservedRecord MMachAbstract::Reserved78() { return {}; }
bool MMachAbstract::HasProbes() { return m_pProbeSource != nullptr; }
bool MMachAbstract::IsProbeDefined(long probe) {
    return m_pProbeSource ? m_pProbeSource->IsProbeDefined(probe) : false;
}
bool MMachAbstract::IsTipDefined(long probe, long tip) {
    return m_pProbeSource ? m_pProbeSource->IsTipDefined(probe, tip) : false;
}
std::vector<CProbe> MMachAbstract::ListProbes(long probe, long tip) {
    return m_pProbeSource ? m_pProbeSource->ListProbes(probe, tip) : no_probes;
}
int MMachAbstract::GetMaxProbeNum() { return m_pProbeSource ? m_pProbeSource->GetMaxProbeNum() : 0; }
int MMachAbstract::GetMinProbeNum() { return m_pProbeSource ? m_pProbeSource->GetMinProbeNum() : 0; }
int MMachAbstract::GetActiveProbeNum() { return m_pProbeSource ? m_pProbeSource->GetActiveProbeNum() : 0; }
int MMachAbstract::GetActiveTipNum() { return m_pProbeSource ? m_pProbeSource->GetActiveTipNum() : 0; }
bool MMachAbstract::HasMagazine() { return m_pMagazine != nullptr; }
std::uint32_t MMachAbstract::GetSlotOfProbe(std::uint32_t probe) {
    return HasMagazine() ? m_pMagazine->GetSlotOfProbe(probe) : 0;
}
bool MMachAbstract::IsSlotDefined(std::uint32_t slot) {
    return HasMagazine() ? m_pMagazine->IsSlotDefined(slot) : false;
}
bool MMachAbstract::SetSlot(std::uint32_t slot, std::uint32_t probe) {
    return HasMagazine() ? m_pMagazine->SetSlot(slot, probe) : false;
}
bool MMachAbstract::GetLoadProgram(std::string& out, std::uint32_t slot) {
    if (!HasMagazine()) return false;
    out = m_pMagazine->GetLoadProgram(slot);
    return !out.empty();
}
bool MMachAbstract::GetUnloadProgram(std::string& out, std::uint32_t slot) {
    if (!HasMagazine()) return false;
    out = m_pMagazine->GetUnloadProgram(slot);
    return !out.empty();
}
bool MMachAbstract::GetChangeProgram(std::string& out, std::uint32_t from, std::uint32_t to) {
    if (!HasMagazine()) return false;
    out = m_pMagazine->GetChangeProgram(from, to);
    return !out.empty();
}
std::map<std::uint32_t, std::uint32_t> MMachAbstract::GetSlots(const std::string& name, std::uint32_t id) {
    return HasMagazine() ? m_pMagazine->GetSlots(name, id) : std::map<std::uint32_t, std::uint32_t>();
}
std::string MMachAbstract::Reserved95() { return {}; }
void MMachAbstract::GetWobbleParameters(MMachWobbleParameters& parameters) {
    parameters = MMachWobbleParameters();
}
bool MMachAbstract::HasInitList() { return false; }
bool MMachAbstract::IsInInitList(const std::string&) { return false; }
bool MMachAbstract::IsAxisInitialized(const std::string&) { return true; }
bool MMachAbstract::Reserved101() { return false; }
bool MMachAbstract::Reserved102() { return false; }
bool MMachAbstract::Reserved103() { return false; }
bool MMachAbstract::Reserved104() { return false; }
