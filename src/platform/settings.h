// Settings that administrators and users make in the registry.
#pragma once

namespace tvut {

// The value "ProfCacheEnabled" of the host program's key under the current user: whether equal texts
// of a profile are shared. On unless set to 0.
bool PlatformProfCacheEnabled();

} // namespace tvut
