// From the handles of the public interface to what they mean, and back.
#pragma once

#include "exports/guard.h"
#include "exports/reason_guard.h"
#include "exports/text_argument.h"
#include "prof/job.h"
#include "prof/path.h"

#include <tvut22/prof.h>

namespace tvut {

inline clsProfJob* FromHandle(ProfJob handle) {
    return reinterpret_cast<clsProfJob*>(handle);
}
inline ProfJob ToHandle(clsProfJob* job) {
    return reinterpret_cast<ProfJob>(job);
}
inline ProfList ToHandle(clsItemList* list) {
    return reinterpret_cast<ProfList>(list);
}

// The list that a handle means: the root list for 0, null for whatever is no list of this job.
inline clsItemList* FromHandle(clsProfJob& job, ProfList handle) {
    return handle ? job.Tree().ListAt(handle) : &job.Tree().Root();
}

// The list that a path starts from. One that begins with "/" starts from the root, and the handle is not
// looked at.
inline clsItemList* StartOf(clsProfJob& job, ProfList handle, std::u16string_view path) {
    return handle && !path.starts_with(u'/') ? job.Tree().ListAt(handle) : &job.Tree().Root();
}

// The list of a pair of handles; null unless both mean something.
inline clsItemList* ListOf(ProfJob handle, ProfList list) {
    clsProfJob* const job = FromHandle(handle);
    return job ? FromHandle(*job, list) : nullptr;
}

template <class Char>
inline const clsItem* FindItem(clsProfJob& job, ProfList handle, const Char* path) {
    if (!path)
        return nullptr;
    const clsTextArgument<Char> name(path);
    clsItemList* const start = StartOf(job, handle, name.View());
    return start ? ProfpFindItem(*start, name.View()) : nullptr;
}

// Appends or sets an item; see prof/path.h.
using AddItem = void (*)(clsItemList& start, std::u16string_view path, std::u16string_view value);

// The body of an export with a path: calls work with the list that the path starts from and the path. The
// result is otherwise where a handle or the path means nothing, and where something is thrown.
template <class Char, class Result, class Work>
Result WithPath(ProfJob handle, ProfList listHandle, const Char* path, Result otherwise, Work work) {
    clsProfJob* const job = FromHandle(handle);
    if (!job || !path)
        return otherwise;
    return UtilpGuard(otherwise, [&] {
        const clsTextArgument<Char> text(path);
        clsItemList* const list = StartOf(*job, listHandle, text.View());
        return list ? work(*list, text.View()) : otherwise;
    });
}

// The same for exports without a result.
template <class Char, class Work>
void WithPath(ProfJob handle, ProfList listHandle, const Char* path, Work work) {
    WithPath(handle, listHandle, path, false, [&](clsItemList& list, std::u16string_view text) {
        work(list, text);
        return true;
    });
}

// The body of an export that reads an item: calls work with the one that a path names. The result is PROF_OK
// without a job, and PROF_NOT_FOUND without an item and where something is thrown.
template <class Char, class Work>
INT WithItem(ProfJob handle, ProfList listHandle, const Char* path, Work work) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return PROF_OK;
    return UtilpGuard(PROF_NOT_FOUND, [&]() -> INT {
        const clsItem* const item = FindItem(*job, listHandle, path);
        return item ? work(*item) : PROF_NOT_FOUND;
    });
}

// Calls the body of an export that opens a job. The thread's last error says why one has no memory for the
// job, or why the job was not filled.
template <class Body>
ProfJob OpenWithReason(Body&& body) {
    clsProfJob* const job = UtilpGuardWithReason(static_cast<clsProfJob*>(nullptr), std::forward<Body>(body));
    if (job && job->Error() != PROF_OK)
        SetLastError(job->Reason());
    return ToHandle(job);
}

// A job that lives at least as long as a call that calls the caller back, whatever is closed there.
class clsJobKeeper {
  public:
    explicit clsJobKeeper(clsProfJob& job) : job_(job) { job_.AddReference(); }
    clsJobKeeper(const clsJobKeeper&) = delete;
    clsJobKeeper& operator=(const clsJobKeeper&) = delete;
    ~clsJobKeeper() { job_.Release(); }

  private:
    clsProfJob& job_;
};

// A text that lives at least as long as a call that calls the caller back, whatever is deleted there.
class clsTextKeeper {
  public:
    clsTextKeeper(clsTree& tree, scText* text) : tree_(tree), text_(clsTextStore::Share(text)) {}
    clsTextKeeper(const clsTextKeeper&) = delete;
    clsTextKeeper& operator=(const clsTextKeeper&) = delete;
    ~clsTextKeeper() { tree_.Texts().Release(text_); }
    std::u16string_view View() const { return ProfpView(text_); }

  private:
    clsTree& tree_;
    scText* text_;
};

} // namespace tvut
