// The system makes the file and closes it; it is opened again with the flag that removes it when its handle
// is closed, however the process ends.
#include "platform/temporary_file.h"

#include <array>

namespace tvut {

clsTemporaryFile::clsTemporaryFile(const wchar_t* prefix) {
    std::array<wchar_t, MAX_PATH + 1> folder;
    std::array<wchar_t, MAX_PATH> name;
    const DWORD length = GetTempPathW(static_cast<DWORD>(folder.size()), folder.data());
    if (length == 0 || length >= folder.size() || !GetTempFileNameW(folder.data(), prefix, 0, name.data()))
        return;
    file_ =
        clsFileHandle(CreateFileW(name.data(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (!file_) {
        const clsLastErrorKept lastError;
        DeleteFileW(name.data());
    }
}

} // namespace tvut
