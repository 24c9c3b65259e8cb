// Fonts and measures of the window.
#ifndef LOGPAN_LOOK_H
#define LOGPAN_LOOK_H

#include <windows.h>

#include <memory>
#include <type_traits>

namespace tool::logpan {

struct DeleteFont {
    void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, DeleteFont>;

class Look {
  public:
    Look();

    HFONT controls() const { return controls_.get(); }
    HFONT lines() const { return lines_.get(); }

    // A measure of 96 dots an inch in the screen's own.
    int scaled(int pixels) const { return MulDiv(pixels, dotsPerInch_, 96); }
    int characterWidth() const { return characterWidth_; } // of the lines' font
    int lineHeight() const { return lineHeight_; }         // of the lines' font

  private:
    int dotsPerInch_ = 96;
    int characterWidth_ = 8;
    int lineHeight_ = 16;
    Font controls_;
    Font lines_;
};

} // namespace tool::logpan

#endif
