// Paths against the runtime's and the system's own calls, temporary files against the bare file calls.
#include "files.h"
#include "sections.h"

#include <tvut22/files.h>

#include <windows.h>

#include <knownfolders.h>
#include <oleauto.h>
#include <shlobj.h>

#include <array>
#include <cstdlib>

namespace bench {

namespace {

constexpr std::size_t registeredFiles = 10000;

class clsText {
  public:
    clsText() = default;
    ~clsText() { SysFreeString(string_); }
    clsText(const clsText&) = delete;
    clsText& operator=(const clsText&) = delete;
    BSTR* Out() { return &string_; }
    std::wstring Text() const { return {string_, SysStringLen(string_)}; }

  private:
    BSTR string_ = nullptr;
};

// ---- Paths -------------------------------------------------------------------------------------------

// Of different lengths, as the paths of a list of files are.
const std::array<std::wstring, 4> paths{L"C:\\Users\\somebody\\Documents\\Reports\\2018\\summary.prf",
                                        L"D:\\a.txt",
                                        L"C:\\Program Files\\Some Product\\Templates\\Letter.template.html",
                                        L"\\\\server\\share\\Projects\\Bridge\\drawing 12.dwg"};

double Split(std::size_t calls, std::array<clsText, 4>& parts) {
    return PerCall(calls, [&](std::size_t number) {
        UtilPathSplit(paths[number % paths.size()].c_str(), parts[0].Out(), parts[1].Out(), parts[2].Out(),
                      parts[3].Out());
    });
}

double SplitByRuntime(std::size_t calls, std::array<clsText, 4>& parts) {
    wchar_t drive[_MAX_DRIVE], folder[_MAX_DIR], name[_MAX_FNAME], extension[_MAX_EXT];
    return PerCall(calls, [&](std::size_t number) {
        _wsplitpath_s(paths[number % paths.size()].c_str(), drive, _MAX_DRIVE, folder, _MAX_DIR, name,
                      _MAX_FNAME, extension, _MAX_EXT);
        SysReAllocString(parts[0].Out(), drive);
        SysReAllocString(parts[1].Out(), folder);
        SysReAllocString(parts[2].Out(), name);
        SysReAllocString(parts[3].Out(), extension);
    });
}

void MeasurePaths(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 1000 : 50000;
    std::array<clsText, 4> parts, theirParts;
    for (clsText& part : theirParts)
        *part.Out() = SysAllocString(L"");
    const wchar_t* const base = L"C:\\Users\\somebody\\Documents\\Reports";
    const wchar_t* const path = L"..\\Letters/2018\\.\\summary.prf";
    const std::wstring joined = std::wstring(base) + L"\\" + path;
    clsText merged, full;
    *full.Out() = SysAllocString(L"");
    const Round rounds[] = {
        [&] { return Split(calls, parts); },
        [&] { return SplitByRuntime(calls, theirParts); },
        [&] { return PerCall(calls, [&](std::size_t) { UtilPathMerge(base, path, 0, merged.Out()); }); },
        [&] {
            return PerCall(calls, [&](std::size_t) {
                wchar_t text[MAX_PATH];
                GetFullPathNameW(joined.c_str(), MAX_PATH, text, nullptr);
                SysReAllocString(full.Out(), text);
            });
        },
    };
    const auto ns = Race(rounds, settings.rounds);
    Require(parts[2].Text() == theirParts[2].Text() && merged.Text() == full.Text(), "a wrong path");
    report.Against("UtilPathSplit into four strings", ns[0], "_wsplitpath_s, 4 SysReAllocString", ns[1],
                   AtMost(1.2));
    report.Against("UtilPathMerge of 66 characters", ns[2], "GetFullPathNameW, SysReAllocString", ns[3],
                   AtMost(0.7));
}

double AskShell(std::size_t calls, const KNOWNFOLDERID& folder) {
    return PerCall(calls, [&](std::size_t) {
        wchar_t* path = nullptr;
        SHGetKnownFolderPath(folder, KF_FLAG_DEFAULT, nullptr, &path);
        CoTaskMemFree(path);
    });
}

void MeasureTokens(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 10 : 200;
    constexpr std::size_t folders = 16;
    clsText expanded, collapsed;
    const KNOWNFOLDERID* const ids[] = {&FOLDERID_Documents,      &FOLDERID_ProgramData,
                                        &FOLDERID_Desktop,        &FOLDERID_PublicDocuments,
                                        &FOLDERID_Downloads,      &FOLDERID_ProgramFiles,
                                        &FOLDERID_Pictures,       &FOLDERID_ProgramFilesCommon,
                                        &FOLDERID_RoamingAppData, &FOLDERID_Fonts,
                                        &FOLDERID_LocalAppData,   &FOLDERID_SystemX86,
                                        &FOLDERID_Profile,        &FOLDERID_Windows,
                                        &FOLDERID_Music,          &FOLDERID_Videos};
    static_assert(std::size(ids) == folders);
    UtilPathExpand(L"<Documents>\\a.txt", expanded.Out());
    const std::wstring path = expanded.Text();
    const Round rounds[] = {
        [&] {
            return PerCall(calls,
                           [&](std::size_t) { UtilPathExpand(L"<Documents>\\a.txt", expanded.Out()); });
        },
        [&] { return AskShell(calls, FOLDERID_Documents); },
        [&] { return PerCall(calls, [&](std::size_t) { UtilPathCollapse(path.c_str(), collapsed.Out()); }); },
        [&] {
            double sum = 0;
            for (const KNOWNFOLDERID* id : ids)
                sum += AskShell(calls, *id);
            return sum;
        },
    };
    const auto ns = Race(rounds, settings.rounds);
    Require(collapsed.Text() == L"<Documents>\\a.txt", "a wrong token");
    report.Against("UtilPathExpand", ns[0], "SHGetKnownFolderPath", ns[1], AtMost(1.15));
    report.Against("UtilPathCollapse", ns[2], "16 x SHGetKnownFolderPath", ns[3], AtMost(1.15));
}

// ---- Temporary files ---------------------------------------------------------------------------------

double CreateAndRelease(std::size_t files) {
    return PerCall(files, [](std::size_t) {
        clsText path;
        Require(UtilTempFileCreate(nullptr, L"Report.pdf", 0, path.Out()) == UTIL_OK &&
                    UtilTempFileRelease(path.Text().c_str(), FALSE) == UTIL_OK,
                "a temporary file failed");
    });
}

double BareCreateAndDelete(const std::wstring& folder, std::size_t files) {
    const std::wstring path = folder + L"Report.pdf";
    return PerCall(files, [&](std::size_t) {
        const HANDLE file =
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        CloseHandle(file);
        Require(DeleteFileW(path.c_str()) != FALSE, "a file could not be made");
    });
}

// A copy of the library, whose unloading is measured.
class clsLibraryCopy {
  public:
    explicit clsLibraryCopy(const std::wstring& folder) : path_(folder + L"copy.dll") {
        std::wstring original(32768, L'\0');
        original.resize(GetModuleFileNameW(GetModuleHandleW(L"tvUT22.dll"), original.data(), 32768));
        CopyFileW(original.c_str(), path_.c_str(), FALSE);
        library_ = LoadLibraryW(path_.c_str());
        Require(library_ != nullptr, "the library's copy could not be loaded");
        add_ = reinterpret_cast<decltype(add_)>(
            reinterpret_cast<void*>(GetProcAddress(library_, "UtilTempFileAdd")));
    }
    ~clsLibraryCopy() { DeleteFileW(path_.c_str()); }
    clsLibraryCopy(const clsLibraryCopy&) = delete;
    clsLibraryCopy& operator=(const clsLibraryCopy&) = delete;

    void Add(const std::wstring& file) const { Require(add_(file.c_str()) == UTIL_OK, "a file was refused"); }
    void Unload() const { FreeLibrary(library_); }

  private:
    std::wstring path_;
    HMODULE library_;
    decltype(UtilTempFileAdd)* add_;
};

double RemoveAtTheEnd(const std::wstring& folder, std::size_t count) {
    const std::wstring many = folder + L"many";
    const auto files = MakeManyFiles(many, count);
    const clsLibraryCopy library(folder);
    for (const std::wstring& file : files)
        library.Add(file);
    const double ns = Timed([&] { library.Unload(); });
    Require(GetFileAttributesW(files.front().c_str()) == INVALID_FILE_ATTRIBUTES, "a file was left");
    RemoveManyFolders(many, count);
    return ns;
}

double BareRemove(const std::wstring& folder, std::size_t count) {
    const std::wstring many = folder + L"many";
    const auto files = MakeManyFiles(many, count);
    const double ns = Timed([&] {
        for (auto file = files.rbegin(); file != files.rend(); ++file)
            DeleteFileW(file->c_str());
    });
    RemoveManyFolders(many, count);
    return ns;
}

void MeasureTempFiles(const scSettings& settings, clsReport& report) {
    const std::size_t files = settings.quick ? 50 : 1000;
    const std::size_t many = settings.quick ? 500 : registeredFiles;
    const Round making[] = {[&] { return CreateAndRelease(files); },
                            [&] { return BareCreateAndDelete(settings.folder, files); }};
    const auto made = Race(making, settings.rounds);
    report.Against("UtilTempFileCreate, Release", made[0], "CreateFile, CloseHandle, DeleteFile", made[1],
                   AtMost(1.3));
    const Round removing[] = {[&] { return RemoveAtTheEnd(settings.folder, many); },
                              [&] { return BareRemove(settings.folder, many); }};
    const auto removed = Race(removing, std::min(settings.rounds, 5));
    report.Against("10,000 files removed at the end", removed[0], "DeleteFile of each", removed[1],
                   AtMost(1.2));
    const double characters =
        static_cast<double>(settings.folder.size()) + 4 + 10; // "\\?\" before, "many\0\0" after
    const auto bytes = static_cast<double>(RunMemoryProbe(L"temporary", settings.folder + L"many")) /
                       static_cast<double>(registeredFiles);
    report.Bytes("a registered file", bytes, "its path", 2 * characters, AtMost(64 + 2 * characters));
}

} // namespace

void RegisterTempFiles(const std::vector<std::wstring>& files) {
    for (const std::wstring& file : files)
        Require(UtilTempFileAdd(file.c_str()) == UTIL_OK, "a file was refused");
}

void MeasureFiles(const scSettings& settings, clsReport& report) {
    report.Section("Files: paths, folders of the system, temporary files");
    MeasurePaths(settings, report);
    MeasureTokens(settings, report);
    MeasureTempFiles(settings, report);
    report.Remark("Split: paths of four kinds in turn, so that no string keeps its length. Merge: both hand "
                  "over a string. "
                  "Folders: SHGetKnownFolderPath as programs call it, which also looks whether the folder is "
                  "there; for two "
                  "tokens that the shell does not know two other folders are in its sum. Temporary files: "
                  "empty ones. At the "
                  "end: in folders of a hundred, since the system that this runs on looks at all names of a "
                  "folder for each "
                  "new one; a copy of the library is unloaded. A registered file: committed private bytes of "
                  "a fresh process "
                  "for 10,000 of them, less before.");
}

} // namespace bench
