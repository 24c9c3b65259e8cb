// A kind is a row: how the system is asked whether a handle is alive, and what it is called. The libraries
// of windows are no imports of this one. Who asks first has them loaded, which must not be under a lock; so
// the names, which reports want under one, are asked for only where the libraries have been made ready.
#include "window/handle_kinds.h"

#include "platform/loader.h"
#include "platform/system_function.h"

#include <array>
#include <atomic>

namespace tvut {

namespace {

constinit clsSystemFunction<DWORD WINAPI(HGDIOBJ)> getObjectType{L"gdi32.dll", "GetObjectType"};
constinit clsSystemFunction<BOOL WINAPI(HGDIOBJ)> deleteObject{L"gdi32.dll", "DeleteObject"};

HANDLE ToHandle(std::uint32_t handle) {
    return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(handle));
}

template <class Handle>
Handle To(std::uint32_t handle) {
    return static_cast<Handle>(ToHandle(handle));
}

// 0 for no object.
DWORD ObjectType(std::uint32_t handle) {
    auto* const ask = getObjectType.Get();
    return ask ? ask(ToHandle(handle)) : 0;
}

enum class IconType : std::uint8_t { none, icon, cursor };

// The system copies an icon's bitmaps to show them.
IconType AskIcon(std::uint32_t handle) {
    ICONINFO info{};
    if (!GetIconInfo(To<HICON>(handle), &info))
        return IconType::none;
    for (const HBITMAP copy : {info.hbmMask, info.hbmColor})
        if (auto* const free = deleteObject.Get(); free && copy)
            free(copy);
    return info.fIcon ? IconType::icon : IconType::cursor;
}

bool KernelKnows(std::uint32_t handle) {
    DWORD flags = 0;
    return GetHandleInformation(ToHandle(handle), &flags) != FALSE;
}

// By GetObjectType.
constexpr std::array<std::u16string_view, OBJ_ENHMETAFILE + 1> objectTypes{
    u"GDI object", u"pen",    u"brush",    u"DC", u"DC",  u"palette", u"font",
    u"bitmap",     u"region", u"metafile", u"DC", u"pen", u"DC",      u"metafile"};

std::u16string_view ObjectTypeName(std::uint32_t handle) {
    const DWORD type = ObjectType(handle);
    return objectTypes[type < objectTypes.size() ? type : 0];
}

struct scKind {
    bool (*isAlive)(std::uint32_t handle);
    std::u16string_view name;
    std::u16string_view (*typeName)(std::uint32_t handle); // null: the kind has one type
};

constexpr scKind kinds[handleKind::last] = {
    {[](std::uint32_t handle) { return ObjectType(handle) != 0; }, objectTypes[0], ObjectTypeName},
    {[](std::uint32_t handle) { return AskIcon(handle) != IconType::none; }, u"icon",
     [](std::uint32_t handle) -> std::u16string_view {
         return AskIcon(handle) == IconType::cursor ? u"cursor" : u"icon";
     }},
    {[](std::uint32_t handle) { return IsMenu(To<HMENU>(handle)) != FALSE; }, u"menu", nullptr},
    {[](std::uint32_t handle) { return IsWindow(To<HWND>(handle)) != FALSE; }, u"window", nullptr},
    {KernelKnows, u"kernel handle", nullptr},
};

std::atomic<bool> windowsAreReady{false};

} // namespace

bool UtilpHandleIsAlive(std::uint32_t handle, std::uint8_t kind) noexcept {
    return kinds[kind - 1].isAlive(handle);
}

void UtilpPrepareHandleNames() noexcept {
    if (!PlatformWindowsAreUp())
        return;
    getObjectType.Get();
    deleteObject.Get();
    IsWindow(nullptr); // binds all that is called of its library
    windowsAreReady = true;
}

std::u16string_view UtilpHandleTypeName(std::uint32_t handle, std::uint8_t kind) noexcept {
    const scKind& known = kinds[kind - 1];
    return known.typeName && windowsAreReady ? known.typeName(handle) : known.name;
}

scObjectCounts UtilpObjectsOfProcess() noexcept {
    if (!windowsAreReady)
        return {};
    const HANDLE process = GetCurrentProcess();
    return {GetGuiResources(process, GR_GDIOBJECTS), GetGuiResources(process, GR_USEROBJECTS)};
}

} // namespace tvut
