// Drives, what they lead to on other computers, and what this computer shares.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tvut {

class IclsConnections {
  public:
    virtual ~IclsConnections() = default;

    // What a drive, 'A' to 'Z', is inside the system: "\??\C:\Data" when subst made it, else a device; empty
    // when it is not there. All functions throw std::bad_alloc.
    virtual std::u16string Device(char16_t letter) = 0;

    // What a drive leads to, "\\server\share", whether or not it is up; empty for others.
    virtual std::u16string RemoteName(char16_t letter) = 0;

    // The names by which others reach this computer.
    virtual std::vector<std::u16string> ComputerNames() = 0;

    // The folder that this computer shares under a name, where the system tells it; empty otherwise.
    virtual std::u16string SharedFolder(std::u16string_view share) = 0;
};

// Those of the user for whom the calling thread acts, as they are at each call. No other computer is asked.
class clsConnections final : public IclsConnections {
  public:
    std::u16string Device(char16_t letter) override;
    std::u16string RemoteName(char16_t letter) override;
    std::vector<std::u16string> ComputerNames() override;
    std::u16string SharedFolder(std::u16string_view share) override;
};

} // namespace tvut
