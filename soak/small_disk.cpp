// A disk that is full at any moment: a save that fails leaves the old file, one that does not leaves the new.
#include "workloads.h"

#include "support/files.h"

#include <tvut22/tvut22.hpp>

#include <cstdlib>
#include <vector>

namespace soak {

namespace {

// Takes up a number of bytes of the disk, or all where fewer are free.
class clsPadding {
  public:
    clsPadding(const std::wstring& path, unsigned bytes)
        : file_(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE,
                            nullptr)) {
        const std::vector<char> block(512);
        for (DWORD written = 1; bytes >= block.size() && written != 0; bytes -= written)
            if (!WriteFile(file_.get(), block.data(), static_cast<DWORD>(block.size()), &written, nullptr))
                written = 0;
    }

  private:
    testing_prof::Handle file_;
};

tvut22::profile MakeProfile(clsRun& run) {
    tvut22::profile job(ProfJobOpenW(nullptr));
    for (unsigned i = run.Random(1500); i > 0; --i)
        ProfAppendStringW(job.get(), 0, std::to_wstring(run.Random(1u << 30)).c_str(), L"some value");
    return job;
}

} // namespace

void RunSmallDisk(clsRun& run) {
    const wchar_t* const disk = _wgetenv(L"TVUT22_SMALL_DISK");
    if (!disk) {
        run.Found("TVUT22_SMALL_DISK names no disk");
        return;
    }
    constexpr UINT forms[] = {PROF_FORM_TEXT, PROF_FORM_XML, PROF_FORM_XFDF, PROF_SAVE_COMPRESSED};
    const std::wstring folder = std::wstring(disk) + L"\\", file = folder + L"file.prf";
    while (run.GoesOn()) {
        const UINT form = forms[run.Random(std::size(forms))];
        const tvut22::profile job = MakeProfile(run);
        const std::string before = testing_prof::ReadBytes(file);
        INT result = 0;
        {
            const clsPadding padding(folder + L"padding", run.Random(250'000));
            result = ProfSaveW(job.get(), file.c_str(), form);
        }
        const std::string after = testing_prof::ReadBytes(file);
        run.Count(result == PROF_OK ? "saves" : "refused saves");
        if (result == PROF_OK) {
            ProfSaveW(job.get(), L"expected.prf", form);
            run.Require(after == testing_prof::ReadBytes("expected.prf"),
                        "a save that succeeded is not whole");
        } else {
            run.Require(result == PROF_SAVE_FAILED, "a save gave " + std::to_string(result));
            run.Require(after == before, "a save that failed has changed the file");
        }
        int others = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            others += entry.path() != file;
        run.Require(others == 0, "a temporary file is left");
    }
    std::filesystem::remove(file);
}

} // namespace soak
