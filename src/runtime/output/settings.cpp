// A value of the environment may grow between the question for its length and the one for its text: it is
// asked for until it fits.
#include "runtime/output/settings.h"

#include "platform/registry.h"

namespace tvut {

namespace {

constexpr const wchar_t* machineKey = L"software\\Velmor";

std::wstring FromEnvironment(const wchar_t* name) {
    std::wstring value;
    DWORD length = GetEnvironmentVariableW(name, nullptr, 0); // with the terminator
    while (length > value.size()) {
        value.resize(length);
        length = GetEnvironmentVariableW(name, value.data(), length);
    }
    value.resize(length);
    return value;
}

bool IsSet(const wchar_t* name) noexcept {
    return PlatformReadDword(HKEY_LOCAL_MACHINE, machineKey, name).value_or(0) != 0;
}

} // namespace

scOutputSettings UtilpReadOutputSettings() {
    scOutputSettings settings;
    settings.logFiles = {FromEnvironment(L"TVUT22_LOG"),
                         PlatformReadText(HKEY_LOCAL_MACHINE, machineKey, L"Debug.LogFilename")};
    settings.flushLogFile = IsSet(L"Debug.LogFile.Flush");
    settings.counterTime = IsSet(L"ForceUsePerfCounters");
    return settings;
}

} // namespace tvut
