// The folder tests/data: in the source, or where the run.cmd of a bundle on another machine says.
#pragma once

#include <cstdlib>
#include <string>

namespace tvut {

inline std::string TestData() {
    const char* const bundled = std::getenv("TVUT22_TEST_DATA");
    return bundled ? bundled : TVUT22_TEST_DATA;
}

} // namespace tvut
