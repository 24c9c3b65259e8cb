// One JSON object on one line (RFC 8259), under construction.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

class clsJsonObject {
  public:
    void Add(std::wstring_view name, std::wstring_view json); // a value that is JSON already
    void AddText(std::wstring_view name, std::wstring_view text);
    void AddNumber(std::wstring_view name, std::uint64_t value);
    void AddFlag(std::wstring_view name, bool value);

    // The whole object; nothing is added after that.
    std::wstring Close() &&;

  private:
    std::wstring json_;
};

} // namespace tool
