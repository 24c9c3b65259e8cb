// The locales of the native build, as tests turn them.
#pragma once

#include <atomic>
#include <cstdint>

namespace tvut {

// What PlatformMilliseconds says.
void SetNativeMilliseconds(std::uint32_t milliseconds);

// How often a locale was looked for.
unsigned NativeLocalesAsked();

} // namespace tvut
