// The viewer refuses the pages of such files since it cannot know who wrote them; the program that shows its
// own help file does. A copy has the size and time of its file, which is how it is known to be still right;
// the mark, a stream of the file's own, is left behind. The folder is the user's alone: nobody else can put a
// file there.
#include "window/help_copy.h"

#include "files/path_root.h"
#include "platform/file.h"
#include "platform/file_calls.h"
#include "platform/known_folders.h"
#include "platform/long_path.h"
#include "platform/private_folder.h"
#include "platform/wide.h"
#include "window/help_target.h"

#include <array>
#include <vector>

namespace tvut {

namespace {

constexpr std::size_t copyBlock = std::size_t{64} * 1024; // bytes

bool IsOnOtherDrive(const std::wstring& file) {
    const std::u16string_view path = FromWide(file);
    const std::size_t root = UtilpRootOf(path).length;
    if (!UtilpBeginsWithDrive(path))
        return path.size() > 1 && UtilpIsSeparator(path[0]) && UtilpIsSeparator(path[1]);
    const UINT type = GetDriveTypeW(file.substr(0, root).c_str());
    return type == DRIVE_REMOTE || type == DRIVE_REMOVABLE;
}

bool IsMarked(const std::wstring& file) {
    const clsFileHandle mark(CreateFileW(PlatformLongPath(file + L":Zone.Identifier").c_str(), GENERIC_READ,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    std::array<char, 4096> text;
    DWORD length = 0;
    return mark && ReadFile(mark.Get(), text.data(), static_cast<DWORD>(text.size()), &length, nullptr) &&
           UtilpIsFromOutside({text.data(), length});
}

struct scFileState {
    DWORD sizeHigh = 0, sizeLow = 0;
    FILETIME written{};

    bool operator==(const scFileState& other) const noexcept {
        return sizeHigh == other.sizeHigh && sizeLow == other.sizeLow &&
               CompareFileTime(&written, &other.written) == 0;
    }
};

scFileState StateOf(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION information{};
    PlatformRequire(GetFileInformationByHandle(file, &information), "help file cannot be asked");
    return {information.nFileSizeHigh, information.nFileSizeLow, information.ftLastWriteTime};
}

bool IsCopyOf(const std::wstring& copy, const scFileState& state) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    return GetFileAttributesExW(copy.c_str(), GetFileExInfoStandard, &data) &&
           scFileState{data.nFileSizeHigh, data.nFileSizeLow, data.ftLastWriteTime} == state;
}

// Makes a folder, or finds it: then it is the user's own.
bool MakeOwnFolder(const std::wstring& folder) {
    const std::wstring path = PlatformLongPath(folder);
    const DWORD error = PlatformMakePrivateFolder(path.c_str());
    return error == ERROR_SUCCESS || (error == ERROR_ALREADY_EXISTS && PlatformIsOwnFolder(path.c_str()));
}

// Where the copy of a file belongs; empty when there can be no such folder.
std::wstring CopyPath(const std::wstring& file) {
    std::wstring path = ToWide(clsKnownFolders().Folder(KnownFolder::temp).c_str());
    if (path.empty())
        return {};
    path.append(path.ends_with(L'\\') ? L"" : L"\\").append(L"tvUT22.help");
    if (!MakeOwnFolder(path))
        return {};
    path.append(L"\\").append(ToWide(UtilpHelpCopyFolder(FromWide(file)).c_str()));
    if (!MakeOwnFolder(path))
        return {};
    return path.append(file, file.find_last_of(L"\\/"));
}

void WriteCopy(HANDLE file, const scFileState& state, const std::wstring& copy) {
    clsFileSource source(file);
    clsBesideFile target(copy);
    std::vector<unsigned char> block(copyBlock);
    while (const std::size_t count = source.Read(block.data(), block.size()))
        target.Write(block.data(), count);
    PlatformRequire(SetFileTime(target.Handle(), nullptr, nullptr, &state.written),
                    "copy cannot be given its time");
    target.Close();
    if (const DWORD error = target.PutInPlace(true))
        throw clsException("copy cannot be put in its place", error);
}

// Throws clsException.
std::wstring MakeCopy(const std::wstring& file) {
    const std::wstring copy = CopyPath(file);
    if (copy.empty())
        throw clsException("there is no folder for copies", ERROR_PATH_NOT_FOUND);
    DWORD error = 0;
    clsPatience patience(openPatience);
    const clsFileHandle source =
        PlatformOpenFile(FromWide(PlatformLongPath(file).c_str()), openToRead, patience, error);
    if (!source)
        throw clsException("help file cannot be opened", error);
    const scFileState state = StateOf(source.Get());
    const std::wstring systemPath = PlatformLongPath(copy);
    if (!IsCopyOf(systemPath, state))
        WriteCopy(source.Get(), state, systemPath);
    return copy;
}

} // namespace

std::wstring UtilpHelpFileToShow(const std::wstring& file) {
    if (!IsOnOtherDrive(file) && !IsMarked(file))
        return file;
    try {
        return MakeCopy(file);
    } catch (const clsException&) { // shown from where it is: some settings of the system allow it
        return file;
    }
}

} // namespace tvut
