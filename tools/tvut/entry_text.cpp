#include "entry_text.h"

#include "json_object.h"

namespace tool::tvut {

namespace {

std::wstring Digits(unsigned number, std::size_t width) {
    std::wstring text = std::to_wstring(number);
    return std::wstring(width - std::min(width, text.size()), L'0') + text;
}

std::wstring Text(const SYSTEMTIME& time, const wchar_t* between) {
    return Digits(time.wYear, 4) + L"-" + Digits(time.wMonth, 2) + L"-" + Digits(time.wDay, 2) + between +
           Digits(time.wHour, 2) + L":" + Digits(time.wMinute, 2) + L":" + Digits(time.wSecond, 2);
}

bool IsKnown(const FILETIME& time) {
    return (time.dwHighDateTime | time.dwLowDateTime) != 0;
}

} // namespace

std::wstring LocalTimeText(const FILETIME& time) {
    SYSTEMTIME utc, local;
    if (!IsKnown(time) || !FileTimeToSystemTime(&time, &utc) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return {};
    return Text(local, L" ");
}

std::wstring UtcTimeText(const FILETIME& time) {
    SYSTEMTIME utc;
    if (!IsKnown(time) || !FileTimeToSystemTime(&time, &utc))
        return {};
    return Text(utc, L"T") + L"Z";
}

std::wstring JsonLine(const UtilZipEntry& entry, const std::wstring& error) {
    clsJsonObject json;
    json.AddText(L"name", entry.name);
    if ((entry.flags & UTIL_ZIP_IS_FOLDER) != 0)
        json.AddFlag(L"folder", true);
    json.AddNumber(L"bytes", entry.bytes);
    json.AddNumber(L"packed", entry.packed);
    if (const std::wstring time = UtcTimeText(entry.modified); !time.empty())
        json.AddText(L"modified", time);
    if ((entry.flags & UTIL_ZIP_IS_ENCRYPTED) != 0)
        json.AddFlag(L"encrypted", true);
    if ((entry.flags & UTIL_ZIP_IS_LINK) != 0)
        json.AddFlag(L"link", true);
    if (entry.target)
        json.AddText(L"target", entry.target);
    if (!error.empty())
        json.AddText(L"error", error);
    return std::move(json).Close();
}

} // namespace tool::tvut
