// The compressed wrapper of a profile: "ZZmQ" and a zlib stream (RFC 1950).
#pragma once

#include "platform/bytes.h"
#include "text/bytes/deflate.h"
#include "text/encoding/input_text.h"

#include <string_view>

namespace tvut {

// A file of a few hundred kilobytes may unfold to gigabytes; no profile is that large.
constexpr std::size_t largestUnfoldedProfile = 256 * 1024 * 1024;

bool ProfpIsCompressed(std::string_view bytes);

// What is in the wrapper. Throws clsLoadException when the data are damaged, cut off or unfold to
// more than the limit, std::bad_alloc.
clsInputText ProfpInflate(std::string_view wrapped, std::size_t limit = largestUnfoldedProfile);

// A sink that wraps on the way into another.
class clsCompressingSink final : public clsByteSink {
  public:
    explicit clsCompressingSink(clsByteSink& target);

    void Extend(std::uint64_t) override; // what it comes to shows in the end
    void Write(const void* data, std::size_t bytes) override { deflating_.Write(data, bytes); }
    void Finish() override { deflating_.Finish(); }

  private:
    clsByteSink& target_;
    clsDeflatingSink deflating_;
};

} // namespace tvut
