#include "platform/drive_paths.h"

#include "platform/wide.h"

#include <windows.h>

namespace tvut {

void clsDrivePaths::Look() noexcept {
    const DWORD present = GetLogicalDrives();
    for (std::size_t i = 0; i < drives_.size(); ++i) {
        scDrive& drive = drives_[i];
        drive.length = 0;
        drive.letter = static_cast<char16_t>(u'A' + i);
        const wchar_t name[] = {static_cast<wchar_t>(drive.letter), L':', L'\0'};
        wchar_t device[MAX_PATH];
        if ((present >> i & 1) == 0 || QueryDosDeviceW(name, device, MAX_PATH) == 0)
            continue;
        const std::u16string_view text(FromWide(std::wstring_view(device)));
        if (text.size() < drive.device.size())
            drive.length = text.copy(drive.device.data(), text.size());
    }
}

} // namespace tvut
