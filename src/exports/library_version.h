// The library's version. The build knows it from one place, the project's line in CMakeLists.txt.
#pragma once

namespace tvut {

inline constexpr int majorVersion = TVUT22_VERSION_MAJOR;
inline constexpr int minorVersion = TVUT22_VERSION_MINOR;

} // namespace tvut
