// Programs that are their own child processes: what each child does, by name.
#pragma once

#include "child.h"

#include <gtest/gtest.h>

#include <map>

namespace testing_prof {

using Roles = std::map<std::string, void (*)()>;

// The work of main: that of the role which a child is started with, or all tests.
inline int RunRoleOrTests(int count, char** arguments, const Roles& roles, int roleExitCode = 0) {
    if (count == 2 && roles.contains(arguments[1]))
        return roles.at(arguments[1])(), roleExitCode;
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}

} // namespace testing_prof
