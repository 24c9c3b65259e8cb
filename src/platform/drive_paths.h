// Paths as the system has them inside, with a device in front, turned into those that people know.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tvut {

// What devices the drives are of. Made in ordinary times; turning a path asks nobody.
class clsDrivePaths {
  public:
    void Look() noexcept;

    // A path without "\??\" or the device of a drive, which becomes its letter. Other devices stay. The
    // result is the path's end, or stands in the buffer; it is cut at the buffer's end.
    std::u16string_view Plain(std::u16string_view path, char16_t* buffer, std::size_t room) const noexcept {
        constexpr std::u16string_view verbatim = u"\\??\\";
        if (path.starts_with(verbatim))
            return path.substr(verbatim.size());
        for (const scDrive& drive : drives_) {
            const std::u16string_view device{drive.device.data(), drive.length};
            if (device.empty() || !path.starts_with(device) || path.size() == device.size() ||
                path[device.size()] != u'\\' || room < 2)
                continue;
            const std::size_t rest = path.size() - device.size();
            const std::size_t count = rest < room - 2 ? rest : room - 2;
            buffer[0] = drive.letter;
            buffer[1] = u':';
            for (std::size_t i = 0; i < count; ++i)
                buffer[2 + i] = path.data()[device.size() + i];
            return {buffer, count + 2};
        }
        return path;
    }

  private:
    struct scDrive {
        std::array<char16_t, 62> device;
        std::size_t length = 0;
        char16_t letter = 0;
    };
    std::array<scDrive, 26> drives_{};
};

} // namespace tvut
