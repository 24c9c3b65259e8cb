/* The types of OLE that calls take and return, declared as the system's headers declare them, without the
 * weight of these. Who uses them includes <oleauto.h> (SysFreeString, VariantClear) or <objidl.h> (IStream).
 */
#ifndef TVUT22_OLE_TYPES_H
#define TVUT22_OLE_TYPES_H

#include <tvut22/calling.h>

typedef WCHAR* BSTR;               /* SysAllocStringLen allocates it, SysFreeString frees it */
typedef struct IStream IStream;    /* ISequentialStream's Read and Write, Seek and the rest */
typedef struct tagVARIANT VARIANT; /* a value and its type */

#endif
