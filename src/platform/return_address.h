// Where the function at hand returns to.
#pragma once

#ifdef _MSC_VER
#include <intrin.h>
#define TVUT_RETURN_ADDRESS() _ReturnAddress()
#else
#define TVUT_RETURN_ADDRESS() __builtin_return_address(0)
#endif
