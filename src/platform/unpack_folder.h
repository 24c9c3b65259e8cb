// The folder on a disk that archives are unpacked into.
#pragma once

#include "platform/owned.h"
#include "platform/target_folder.h"

#include <string>
#include <vector>

namespace tvut {

class clsUnpackFolder final : public IclsTargetFolder {
  public:
    // With its full path.
    explicit clsUnpackFolder(const std::wstring& full);

    std::uint64_t FreeBytes() override;
    void Make() override;
    bool Enter(std::u16string_view folder) override;
    bool Exists(std::u16string_view path) override;
    std::unique_ptr<IclsTargetFile> NewFile(std::u16string_view path) override;

  private:
    void LeaveFor(std::u16string_view folder);
    bool EnterNext(std::u16string_view folder);
    std::wstring PathOf(std::u16string_view path) const;

    std::wstring full_;
    std::wstring root_; // that lifts limits of length, "\" at its end

    // The folder that was entered. Each on the way is held open, so that nobody exchanges it for a link.
    struct scHeld {
        std::size_t end; // of its path in entered_
        clsFileHandle handle;
    };
    std::u16string entered_;
    std::vector<scHeld> held_;
};

} // namespace tvut
