// A backup of a project's folder: packed with a password, listed, tested, unpacked; and an archive of a
// stranger.
#include <cstdio>
#include <string_view>
#include <tvut22/zip.h>

namespace {

void write(const char* file, const char* text) {
    if (std::FILE* const out = std::fopen(file, "wb")) {
        std::fputs(text, out);
        std::fclose(out);
    }
}

void makeProject() {
    for (const char* folder : {"project", "project\\pictures", "project\\empty"})
        CreateDirectoryA(folder, nullptr);
    write("project\\readme.txt", "A project.\n");
    write("project\\pictures\\roof.svg", "<svg/>\n");
}

UtilZipOptions with(const wchar_t* password, UtilZipCallback callback = nullptr) {
    UtilZipOptions options = {};
    options.size = sizeof options;
    options.password = password;
    options.callback = callback;
    return options;
}

INT pack() {
    const UtilZipOptions options = with(L"sesame");
    const UtilZip zip = UtilZIPCreate(L"backup.zip", &options);
    if (!zip)
        return UTIL_FAILED;
    const INT appended = UtilZIPAppend(zip, L"project", nullptr);
    const INT closed = UtilZIPClose(zip, appended == UTIL_OK); // whole, or as it was
    return appended != UTIL_OK ? appended : closed;
}

// Wants nothing: what it is asked about is a listing.
INT TVUT22_CALL list(const UtilZipEntry* entry, UINT_PTR) {
    std::printf("  %5u  %ls%s\n", static_cast<unsigned>(entry->bytes), entry->name,
                (entry->flags & UTIL_ZIP_IS_ENCRYPTED) != 0 ? "  (enciphered)" : "");
    return UTIL_ZIP_SKIP;
}

INT TVUT22_CALL onlyPictures(const UtilZipEntry* entry, UINT_PTR) {
    return std::wstring_view(entry->name).find(L"/pictures/") != std::wstring_view::npos ? UTIL_ZIP_GO
                                                                                         : UTIL_ZIP_SKIP;
}

// An archive whose only entry is "../evil".
void writeEvilArchive() {
    static const unsigned char bytes[] =
        "PK\3\4\24\0\0\0\0\0\0\0!\0\0\0\0\0\0\0\0\0\0\0\0\0\7\0\0\0"
        "../evil"
        "PK\1\2\24\0\24\0\0\0\0\0\0\0!\0\0\0\0\0\0\0\0\0\0\0\0\0\7\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
        "../evil"
        "PK\5\6\0\0\0\0\1\0\1\0\65\0\0\0%\0\0\0\0\0";
    if (std::FILE* const out = std::fopen("evil.zip", "wb")) {
        std::fwrite(bytes, 1, sizeof bytes - 1, out); // without the terminator
        std::fclose(out);
    }
}

} // namespace

int main() {
    makeProject();
    std::printf("packed: %d\n", pack());

    const UtilZipOptions listing = with(nullptr, list);
    std::printf("in it:\n");
    UtilExtractZip(L"backup.zip", nullptr, &listing);

    const UtilZipOptions none = with(nullptr), right = with(L"sesame"),
                         pictures = with(L"sesame", onlyPictures);
    std::printf("tested without the password: %d\n", UtilExtractZip(L"backup.zip", nullptr, &none));
    std::printf("tested with it: %d\n", UtilExtractZip(L"backup.zip", nullptr, &right));
    std::printf("pictures unpacked: %d\n", UtilExtractZip(L"backup.zip", L"out", &pictures));
    std::printf(
        "roof.svg is %s, readme.txt is %s\n",
        GetFileAttributesW(L"out\\project\\pictures\\roof.svg") != INVALID_FILE_ATTRIBUTES ? "there"
                                                                                           : "not there",
        GetFileAttributesW(L"out\\project\\readme.txt") != INVALID_FILE_ATTRIBUTES ? "there" : "not there");

    writeEvilArchive();
    std::printf("an archive with ../evil: %d\n", UtilExtractZip(L"evil.zip", L"out", nullptr));
}
