// Exports of the profile store: finding, making, deleting, copying and walking lists.
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/debug_list.h"
#include "prof/path.h"

using namespace tvut;

namespace {

template <class Char>
ProfList GetList(ProfJob handle, ProfList listHandle, const Char* path) {
    if (!path)
        return ToHandle(ListOf(handle, listHandle));
    return WithPath(handle, listHandle, path, ProfList{}, [](clsItemList& list, std::u16string_view text) {
        return ToHandle(text == u".." ? list.Parent() : ProfpFindList(list, text));
    });
}

template <class Char>
ProfList CreateList(ProfJob job, ProfList list, const Char* path) {
    return WithPath(job, list, path, ProfList{}, [](clsItemList& start, std::u16string_view text) {
        return ToHandle(ProfpCreateList(start, text));
    });
}

template <class Char>
ProfList AppendList(ProfJob job, ProfList list, const Char* path) {
    return WithPath(job, list, path, ProfList{}, [](clsItemList& start, std::u16string_view text) {
        return ToHandle(ProfpAppendList(start, text));
    });
}

// A null path deletes the handle's own entry. Handle 0 stands for no list, which is what an item has
// where a list entry has its sub-list: it deletes the first item.
void DeleteByHandle(ProfJob handle, ProfList listHandle) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return;
    if (!listHandle)
        job->Tree().RemoveFirstItem();
    else if (clsItemList* const list = FromHandle(*job, listHandle))
        ProfpRemoveList(*list);
}

template <class Char>
void Delete(ProfJob job, ProfList list, const Char* path, EntryKind kind) {
    WithPath(job, list, path,
             [kind](clsItemList& start, std::u16string_view text) { ProfpRemove(start, kind, text); });
}

template <class Char>
void DeleteList(ProfJob job, ProfList list, const Char* path) {
    if (path)
        Delete(job, list, path, EntryKind::list);
    else
        DeleteByHandle(job, list);
}

// ---- Walking ----------------------------------------------------------------------------------

// A stored text as a callback receives it; stored texts are terminated.
class clsWideResult {
  public:
    explicit clsWideResult(std::u16string_view text) : text_(ToWide(text.data())) {}
    const wchar_t* Get() const { return text_; }

  private:
    const wchar_t* text_;
};

template <class Result, class Callback>
BOOL Walk(clsProfJob& job, clsItemList& list, Callback callback, UINT_PTR user) {
    const clsJobKeeper jobKeeper(job);
    const clsTree::clsWalk walk(list);
    const std::uint32_t end = list.End();
    for (std::uint32_t position = 0; walk.List() && position < end; ++position) {
        const clsItem entry = walk.List()->At(position);
        if (entry.IsGap())
            continue;
        const clsTextKeeper name(job.Tree(), entry.name);
        const clsTextKeeper value(job.Tree(), entry.IsItem() ? entry.value : nullptr);
        const ProfList subList = entry.IsList() ? ToHandle(entry.subList) : ProfList{};
        if (!callback(ToHandle(&job), Result(name.View()).Get(), Result(value.View()).Get(), subList, user))
            return FALSE;
    }
    return TRUE;
}

template <class Result, class Callback>
BOOL Enumerate(ProfJob handle, ProfList listHandle, Callback callback, UINT_PTR user) {
    clsItemList* const list = ListOf(handle, listHandle);
    if (!list || !callback)
        return FALSE;
    return UtilpGuard(FALSE, [&] { return Walk<Result>(*FromHandle(handle), *list, callback, user); });
}

} // namespace

ProfList TVUT22_CALL ProfGetListA(ProfJob job, ProfList list, const char* path) {
    return GetList(job, list, path);
}
ProfList TVUT22_CALL ProfGetListW(ProfJob job, ProfList list, const wchar_t* path) {
    return GetList(job, list, path);
}

ProfList TVUT22_CALL ProfCreateListA(ProfJob job, ProfList list, const char* path) {
    return CreateList(job, list, path);
}
ProfList TVUT22_CALL ProfCreateListW(ProfJob job, ProfList list, const wchar_t* path) {
    return CreateList(job, list, path);
}

ProfList TVUT22_CALL ProfAppendListA(ProfJob job, ProfList list, const char* path) {
    return AppendList(job, list, path);
}
ProfList TVUT22_CALL ProfAppendListW(ProfJob job, ProfList list, const wchar_t* path) {
    return AppendList(job, list, path);
}

void TVUT22_CALL ProfDeleteListA(ProfJob job, ProfList list, const char* path) {
    DeleteList(job, list, path);
}
void TVUT22_CALL ProfDeleteListW(ProfJob job, ProfList list, const wchar_t* path) {
    DeleteList(job, list, path);
}

void TVUT22_CALL ProfDeleteItemA(ProfJob job, ProfList list, const char* path) {
    Delete(job, list, path, EntryKind::item);
}
void TVUT22_CALL ProfDeleteItemW(ProfJob job, ProfList list, const wchar_t* path) {
    Delete(job, list, path, EntryKind::item);
}

void TVUT22_CALL ProfEmptyList(ProfJob handle, ProfList listHandle) {
    if (clsItemList* const list = ListOf(handle, listHandle))
        list->Tree()->Empty(*list);
}

INT TVUT22_CALL ProfCopyList(ProfJob destinationJob, ProfList destinationList, ProfJob sourceJob,
                             ProfList sourceList) {
    if (!sourceJob)
        return PROF_INVALID_JOB;
    clsItemList* const from = ListOf(sourceJob, sourceList);
    clsItemList* const to = ListOf(destinationJob, destinationList);
    if (!from || !to)
        return PROF_COPY_FAILED;
    return UtilpGuard(PROF_COPY_FAILED, [&] {
        to->Tree()->Copy(*to, *from);
        return PROF_OK;
    });
}

BOOL TVUT22_CALL ProfEnumA(ProfJob job, ProfList list, ProfEnumCallbackA callback, UINT_PTR user) {
    return Enumerate<clsAnsiText>(job, list, callback, user);
}
BOOL TVUT22_CALL ProfEnumW(ProfJob job, ProfList list, ProfEnumCallbackW callback, UINT_PTR user) {
    return Enumerate<clsWideResult>(job, list, callback, user);
}

INT TVUT22_CALL ProfDebugList(ProfJob handle, ProfList listHandle) {
    if (!handle)
        return PROF_INVALID_JOB;
    if (const clsItemList* const list = ListOf(handle, listHandle))
        ProfpDebugList(*list);
    return PROF_OK;
}
