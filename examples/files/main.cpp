// An export: where it goes, its name, and the copy that a viewer gets and that is gone afterwards.
#include <cstdio>
#include <string>
#include <tvut22/files.h>

namespace {

// A string that a call returns.
class Text {
  public:
    Text() = default;
    ~Text() { SysFreeString(string_); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    BSTR* out() { return &string_; }
    std::wstring get() const { return {string_, SysStringLen(string_)}; }

  private:
    BSTR string_ = nullptr;
};

// The folder of the last export, as it is kept in a profile that goes from machine to machine.
void keepFolder() {
    Text folder, kept, again;
    UtilPathExpand(L"<Documents>\\Exports", folder.out());
    UtilPathCollapse(folder.get().c_str(), kept.out());
    UtilPathExpand(kept.get().c_str(), again.out());
    std::printf("kept as:            %ls\n", kept.get().c_str());
    std::printf("the same folder:    %s\n", again.get() == folder.get() ? "yes" : "no");
}

// Names that come with a mail.
void unpack() {
    for (const wchar_t* name :
         {L"pictures/roof.jpg", L"..\\..\\autoexec.bat", L"C:\\Windows\\win.ini", L"aux.txt"}) {
        Text target;
        const INT result = UtilPathMerge(L"C:\\Mail", name, UTIL_PATH_INSIDE, target.out());
        std::printf("%-20ls%ls (%d)\n", name, target.get().c_str(), result);
    }
}

void showParts(const std::wstring& path) {
    Text root, folder, name, extension;
    UtilPathSplit(path.c_str(), root.out(), folder.out(), name.out(), extension.out());
    std::printf("made for a viewer:  [%ls] [%ls]\n", name.get().c_str(), extension.get().c_str());
}

// Called twice it makes two; neither is there when this program runs again.
void showReport() {
    Text path;
    if (UtilTempFileCreate(L".", L"Sales 3/4: \"North\".txt", 0, path.out()) != UTIL_OK)
        return;
    if (std::FILE* const file = _wfopen(path.get().c_str(), L"w")) {
        std::fputs("42\n", file);
        std::fclose(file);
    }
    showParts(path.get());
}

} // namespace

int main() {
    keepFolder();
    unpack();
    std::printf("from the last run:  %s\n",
                GetFileAttributesW(L"Sales 3_4_ _North_.txt") == INVALID_FILE_ATTRIBUTES ? "nothing"
                                                                                         : "a report");
    showReport();
    showReport();
}
