// The folders that the system keeps for a user, for all users, and for itself.
#pragma once

#include <cstdint>
#include <string>

namespace tvut {

enum class KnownFolder : std::uint8_t {
    documents,
    commonAppData,
    desktop,
    commonDocuments,
    downloads,
    programFiles,
    pictures,
    commonFiles,
    appData,
    fonts,
    localAppData,
    system,
    profile,
    windows,
    temp,
    program, // of the host's executable
};

class IclsFolders {
  public:
    virtual ~IclsFolders() = default;
    // A folder's full path, without a separator at its end unless it is a drive's root; empty when the system
    // does not name it. Throws std::bad_alloc.
    virtual std::u16string Folder(KnownFolder folder) = 0;
};

// The folders of the user for whom the thread acts that makes the object, as they are at each call. Nothing
// is made, and none is looked for on a disk or network.
class clsKnownFolders final : public IclsFolders {
  public:
    clsKnownFolders() noexcept;
    ~clsKnownFolders() override;
    clsKnownFolders(const clsKnownFolders&) = delete;
    clsKnownFolders& operator=(const clsKnownFolders&) = delete;

    std::u16string Folder(KnownFolder folder) override;

  private:
    void* token_ = nullptr; // of that user; null: the process's own
    bool userIsKnown_ = true;
};

} // namespace tvut
