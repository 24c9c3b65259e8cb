// One open profile: its tree, the file it came from, its last error and its reference count.
#pragma once

#include "platform/file.h"
#include "prof/formats/load.h"
#include "prof/tree.h"
#include "text/string.h"

#include <atomic>
#include <cstdint>
#include <objidl.h>
#include <optional>
#include <string_view>
#include <tvut22/prof.h>

namespace tvut {

class clsProfJob {
  public:
    // Open calls. Whatever goes wrong shows in Error(); only std::bad_alloc is thrown, when there is
    // no memory for the job itself.
    static clsProfJob* OpenFile(std::optional<std::u16string_view> fileName, bool exclusive);
    static clsProfJob* OpenStream(IStream* stream, std::u16string_view name, std::uint32_t flags);

    static clsProfJob* OpenClipboard(HWND owner);

    clsProfJob(const clsProfJob&) = delete;
    clsProfJob& operator=(const clsProfJob&) = delete;

    void AddReference() noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
    void Release() noexcept;

    clsTree& Tree() { return tree_; }
    int Error() const { return error_; }             // PROF_OK, or why the job was not filled
    unsigned long Reason() const { return reason_; } // of the error, as the system numbers them

    // Saves to a file, or to the job's own when no name is given. Throws on failure.
    void Save(std::optional<std::u16string_view> fileName, std::uint32_t flags);
    void SaveToStream(IStream& stream, std::uint32_t flags);

    // Returns a result, and sets the thread's last error when it is a failure; throws when the profile cannot
    // be written.
    int SaveToClipboard(HWND owner, std::uint32_t flags);

  private:
    explicit clsProfJob(std::u16string_view fileName);
    ~clsProfJob() = default;

    void LoadFile(bool exclusive);
    void LoadClipboard(HWND owner);
    void LoadSource(clsByteSource& source, const scLoadRequest& request);
    void Fail(int error, unsigned long why);

    std::atomic<std::uint32_t> references_{1};
    int error_ = PROF_OK;
    unsigned long reason_ = 0;
    bool compressed_ = false; // what was loaded was in the compressed wrapper
    IString fileName_;
    clsFileHandle heldFile_;
    clsTree tree_;
};

} // namespace tvut
