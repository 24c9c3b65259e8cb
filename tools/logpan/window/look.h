// Fonts and measures of the window, on the monitor where it is.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace tool::logpan {

struct scDeleteFont {
    void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, scDeleteFont>;

class clsLook {
  public:
    clsLook(); // of the first monitor
    explicit clsLook(int dotsPerInch);

    int DotsPerInch() const { return dotsPerInch_; }
    // Gives the controls of a window their fonts in another size.
    void ScaleTo(int dotsPerInch, HWND window);

    HFONT Controls() const { return controls_.get(); }
    HFONT Lines() const { return lines_.get(); }

    // A measure of 96 dots an inch in the screen's own.
    int Scaled(int pixels) const { return MulDiv(pixels, dotsPerInch_, 96); }
    int Unscaled(int pixels) const { return MulDiv(pixels, 96, dotsPerInch_); }
    int CharacterWidth() const { return characterWidth_; } // of the lines' font
    int LineHeight() const { return lineHeight_; }         // of the lines' font

  private:
    int dotsPerInch_ = 96;
    int characterWidth_ = 8;
    int lineHeight_ = 16;
    Font controls_;
    Font lines_;
};

int DotsPerInchOf(HWND window);

} // namespace tool::logpan
