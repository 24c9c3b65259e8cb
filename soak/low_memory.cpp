// Hardly any address space left: each call succeeds or says that it has failed, what it was to change is as
// it was or as it was to be, and with memory back all goes on.
//
// Between taking the address space and giving it back nothing here allocates.
#include "workloads.h"

#include "support/files.h"

#include <tvut22/tvut22.hpp>
#include <tvut22/util.h>

#include <oleauto.h>

#include <array>
#include <vector>

namespace soak {

namespace {

// Takes all address space but a number of blocks of 64 KB.
class clsFullSpace {
  public:
    explicit clsFullSpace(clsRun& run) {
        const unsigned left = run.Random(40);
        blocks_.reserve(70'000);
        for (SIZE_T bytes = SIZE_T{512} << 20; bytes >= unit; bytes /= 2)
            while (blocks_.size() < blocks_.capacity()) {
                void* const block = VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS);
                if (!block)
                    break;
                blocks_.push_back(block);
            }
        for (unsigned i = 0; i < left && !blocks_.empty(); ++i, blocks_.pop_back()) // the smallest come last
            VirtualFree(blocks_.back(), 0, MEM_RELEASE);
    }
    ~clsFullSpace() {
        for (void* const block : blocks_)
            VirtualFree(block, 0, MEM_RELEASE);
    }
    clsFullSpace(const clsFullSpace&) = delete;
    clsFullSpace& operator=(const clsFullSpace&) = delete;

  private:
    static constexpr SIZE_T unit = 65536;
    std::vector<void*> blocks_;
};

constexpr INT itemCount = 20'000;

// What the calls work on, made while there is memory.
class clsSubject {
  public:
    clsSubject() : job_(ProfJobOpenW(nullptr)), module_(UtilJobOpen(L"low", 0)) {
        for (INT i = 0; i < itemCount; ++i)
            ProfAppendIntW(job_.get(), 0, Name(i).c_str(), i);
        ProfSaveW(job_.get(), L"whole.prf", PROF_FORM_TEXT);
        ProfSetStringW(job_.get(), 0, L"text", text_.c_str());
        heap_ = UtilHeapCreate(module_.get(), L"low", UTIL_HEAP_DEBUG);
        for (std::size_t i = 0; i < page_.size(); ++i)
            page_[i] = L"<p>a &amp; b</p>"[i % 16];
        page_.back() = L'\0';
    }

    // Each is true when it was carried out, false when it was refused; anything else is counted as wrong.
    bool Open() {
        const tvut22::profile job(ProfJobOpenW(L"whole.prf"));
        if (!job.get() || ProfGetError(job.get()) != PROF_OK)
            return false;
        INT last = -1;
        wrong_ += ProfGetIntW(job.get(), 0, L"item 19999", &last, -1) != PROF_OK || last != itemCount - 1;
        return true;
    }
    bool Set() {
        ProfSetStringW(job_.get(), 0, L"text", next_->c_str());
        const auto length = static_cast<std::size_t>(ProfGetStringLengthW(job_.get(), 0, L"text"));
        if (length == current_->size())
            return false;
        wrong_ += length != next_->size();
        std::swap(current_, next_);
        return true;
    }
    bool Save() {
        const INT result = ProfSaveW(job_.get(), L"saved.prf", form_ = (form_ + 1) % 3);
        wrong_ += result != PROF_OK && result != PROF_SAVE_FAILED;
        return result == PROF_OK;
    }
    bool FillHeap() {
        std::array<void*, 200> objects{};
        for (void*& object : objects)
            object = UtilHeapObjectAlloc(heap_, 50'000, UTIL_HEAP_ZERO);
        const bool all = objects.back() != nullptr;
        for (void* const object : objects)
            wrong_ += object && UtilHeapObjectFree(heap_, object) != UTIL_OK;
        wrong_ += UtilHeapValidate(heap_, nullptr, 0) != UTIL_OK;
        return all;
    }
    bool WriteLines() {
        for (int i = 0; i < 100; ++i)
            UtilDebug(L"%d of a hundred", i);
        return true;
    }
    bool ConvertPage() {
        BSTR text = nullptr;
        UtilConvertHtml2PlainText(page_.data(), &text, FALSE);
        const bool converted = text != nullptr;
        SysFreeString(text);
        return converted;
    }
    bool Encode() {
        const INT needed = UtilConvertBLOBToString(page_.data(), sizeof page_, nullptr, 0, TRUE);
        return needed > 0;
    }

    static constexpr bool (clsSubject::*deeds[])() = {
        &clsSubject::Open,       &clsSubject::Set,         &clsSubject::Save,  &clsSubject::FillHeap,
        &clsSubject::WriteLines, &clsSubject::ConvertPage, &clsSubject::Encode};

    int Wrong() const { return wrong_; }

    // With memory back: the profile is what it was to be.
    bool IsWhole() const {
        for (INT i = 0; i < itemCount; i += 500) {
            INT value = -1;
            if (ProfGetIntW(job_.get(), 0, Name(i).c_str(), &value, -1) != PROF_OK || value != i)
                return false;
        }
        return ProfGetStringLengthW(job_.get(), 0, L"text") == static_cast<INT>(current_->size());
    }

  private:
    static std::wstring Name(INT i) { return L"item " + std::to_wstring(i); }

    tvut22::profile job_;
    tvut22::job module_;
    UtilHeap heap_ = nullptr;
    std::wstring text_ = std::wstring(100'000, L'a'), other_ = std::wstring(90'000, L'b');
    const std::wstring* current_ = &text_;
    const std::wstring* next_ = &other_;
    UINT form_ = 0;
    int wrong_ = 0;
    std::array<wchar_t, 60'000> page_;
};

} // namespace

void RunLowMemory(clsRun& run) {
    SetEnvironmentVariableW(L"TVUT22_LOG", L"low_memory.log");
    const auto subject = std::make_unique<clsSubject>();
    while (run.GoesOn()) {
        const auto deed = clsSubject::deeds[run.Random(std::size(clsSubject::deeds))];
        bool done = false;
        {
            const clsFullSpace full(run);
            done = (*subject.*deed)();
        }
        run.Count(done ? "carried out" : "refused");
        run.Require(subject->IsWhole(), "the profile is damaged");
        run.Require((*subject.*deed)(), "refused with memory back");
        std::error_code none;
        std::filesystem::resize_file("low_memory.log", 0, none);
    }
    run.Require(subject->Wrong() == 0, std::to_string(subject->Wrong()) + " wrong results");
}

} // namespace soak
