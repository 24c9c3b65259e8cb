// What a download tells about itself.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

// Told what happens, on the download's thread; each answers whether to go on. May throw.
class IclsDownloadEvents {
  public:
    virtual ~IclsDownloadEvents() = default;
    virtual bool Redirected(std::u16string_view url, unsigned status) = 0; // 0: not known
    virtual bool Answered(unsigned status, std::u16string_view head) = 0;
    virtual bool Received(const void* data, std::size_t bytes) = 0;

    // The last one, in every case: the service's code, 0 for a complete answer. Never throws.
    virtual void Ended(std::uint32_t code) noexcept = 0;
};

} // namespace tvut
