// A caller's text, 8-bit or UTF-16, as the library sees it: the frame of all A and W exports.
//
// Every export that takes text is one template over the caller's character type. For UTF-16 an
// argument is a view of the caller's text; for 8-bit text it is converted with the process code page
// and kept here for the time of the call.
#pragma once

#include "platform/code_page.h"
#include "platform/wide.h"
#include "runtime/default_code_page.h"

#include <array>
#include <cstring>
#include <memory>
#include <string_view>

namespace tvut {

template <class Char>
class clsTextArgument;

template <>
class clsTextArgument<wchar_t> {
  public:
    explicit clsTextArgument(const wchar_t* text)
        : null_(!text), view_(FromWide(std::wstring_view(text ? text : L""))) {}
    bool IsNull() const { return null_; }
    std::u16string_view View() const { return view_; }

  private:
    bool null_;
    std::u16string_view view_;
};

// The conversion object of the A forms. Ordinary names and paths do without an allocation.
class clsCharsetConversionString {
  public:
    explicit clsCharsetConversionString(const char* text) {
        if (text)
            view_ = Convert(text);
        null_ = !text;
    }
    clsCharsetConversionString(const clsCharsetConversionString&) = delete;
    clsCharsetConversionString& operator=(const clsCharsetConversionString&) = delete;

    bool IsNull() const { return null_; }
    std::u16string_view View() const { return view_; }

  private:
    std::u16string_view Convert(std::string_view text) {
        char16_t* characters = buffer_.data();
        if (text.size() > buffer_.size()) {
            long_ = std::make_unique_for_overwrite<char16_t[]>(text.size());
            characters = long_.get();
        }
        return {characters, PlatformDecode(UtilpCodePage(), text, characters)};
    }

    bool null_;
    std::u16string_view view_;
    std::unique_ptr<char16_t[]> long_;
    std::array<char16_t, 512> buffer_;
};

template <>
class clsTextArgument<char> : public clsCharsetConversionString {
    using clsCharsetConversionString::clsCharsetConversionString;
};

// A stored text as an A form returns it to its caller. Ordinary texts do without an allocation.
class clsAnsiText {
  public:
    explicit clsAnsiText(std::u16string_view text) {
        const unsigned codePage = UtilpCodePage();
        char* bytes = buffer_.data();
        std::size_t room = buffer_.size() - 1;
        if (text.size() > room / mostBytesPerUnit) {
            room = PlatformEncodedSize(codePage, text);
            long_ = std::make_unique_for_overwrite<char[]>(room + 1);
            bytes = long_.get();
        }
        view_ = {bytes, PlatformEncode(codePage, text, bytes, room)};
        bytes[view_.size()] = '\0';
    }
    clsAnsiText(const clsAnsiText&) = delete;
    clsAnsiText& operator=(const clsAnsiText&) = delete;

    std::string_view View() const { return view_; }
    const char* Get() const { return view_.data(); } // terminated

  private:
    static constexpr std::size_t mostBytesPerUnit = 8; // of any code page, shifts included

    std::string_view view_;
    std::unique_ptr<char[]> long_;
    std::array<char, 1024> buffer_;
};

} // namespace tvut
