// A list and not a table: a process has some dozens of modules, and whoever opens or closes one does much
// else. Handles are compared with the list's records before they are followed.
#include "runtime/module_list.h"

#include "platform/process_heap.h"
#include "runtime/diagnostic_group.h"

#include <algorithm>

namespace tvut {

clsModuleNode* clsModuleList::Open(std::u16string_view name, std::int32_t flags) noexcept {
    if (clsModuleNode* const job = Find(name)) {
        ++job->references;
        return job;
    }
    clsModuleNode* const job = Add(name, flags);
    if (!job)
        UtilpReport(clsDiagnosticLine().Put(u"Error: clsModuleList::Add(..): Out of Memory"));
    return job;
}

// The handle is looked up before it is followed: a stale one must not be written through.
JobResult clsModuleList::Close(clsModuleNode* job) noexcept {
    if (!Holds(job)) {
        const clsDiagnosticGroup report(UtilpDiagnosticsOn(), clsDiagnosticLine()
                                                                  .Put(u"Error: clsModuleList::Delete(")
                                                                  .PutPointer(job)
                                                                  .Put(u"): Invalid handle"));
        report.Line(clsDiagnosticLine().Put(u"Error: invalid module handle"));
        return JobResult::badHandle;
    }
    return --job->references > 0 ? JobResult::success : Delete(*job);
}

bool clsModuleList::Holds(const clsModuleNode* job) const noexcept {
    const clsModuleNode* node = head_;
    while (node && node != job)
        node = node->next;
    return node != nullptr;
}

// The whole name counts, although records keep its beginning only: two long names that begin alike are
// two jobs.
clsModuleNode* clsModuleList::Find(std::u16string_view name) const noexcept {
    clsModuleNode* node = head_;
    while (node && node->Name() != name)
        node = node->next;
    return node;
}

clsModuleNode* clsModuleList::Add(std::u16string_view name, std::int32_t flags) noexcept {
    auto* const job = static_cast<clsModuleNode*>(PlatformProcessHeapAlloc(sizeof(clsModuleNode)));
    if (!job)
        return nullptr;
    name.copy(job->name.data(), clsModuleNode::longestName);
    job->flags = flags;
    job->references = 1;
    if (job->Traced())
        job->creation = UtilpCaptureCallStack(0);
    job->previous = tail_;
    (tail_ ? tail_->next : head_) = job;
    tail_ = job;
    return job;
}

JobResult clsModuleList::Delete(clsModuleNode& job) noexcept {
    Unlink(job);
    JobResult result = JobResult::success;
    if (job.firstHeap) {
        const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                        clsDiagnosticLine()
                                            .Put(u"Error: deleting module '")
                                            .Put(job.Name())
                                            .Put(u"', but the following heaps are left:"));
        leftHeaps_(job);
        result = JobResult::heapsLeft;
    }
    UtilpReleaseCallStack(job.creation);
    PlatformProcessHeapFree(&job);
    return result;
}

void clsModuleList::Unlink(clsModuleNode& job) noexcept {
    (job.previous ? job.previous->next : head_) = job.next;
    (job.next ? job.next->previous : tail_) = job.previous;
}

} // namespace tvut
