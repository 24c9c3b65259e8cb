// Processes that are killed while they save: whatever the moment, the file is the last generation that was
// saved or the next one, whole, and no more than one temporary file is left beside it.
#include "workloads.h"

#include "support/child.h"

#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <cstdlib>

namespace soak {

namespace {

struct scForm {
    const char* name;
    UINT flags;
};
constexpr scForm forms[] = {{"text", PROF_FORM_TEXT},
                            {"XML", PROF_FORM_XML},
                            {"XFDF", PROF_FORM_XFDF},
                            {"compressed", PROF_SAVE_COMPRESSED}};

std::wstring FileOf(const scForm& form) {
    const std::string name = form.name;
    return std::wstring(name.begin(), name.end()) + L".prf";
}

std::wstring ValueOf(INT generation, INT place) {
    return L"generation " + std::to_wstring(generation) + L", value " + std::to_wstring(place);
}

// A profile of that generation. All values tell it; how many there are differs.
tvut22::profile MakeProfile(INT generation) {
    tvut22::profile job(ProfJobOpenW(nullptr));
    const INT count = 20 + generation * 7919 % 3000;
    ProfSetIntW(job.get(), 0, L"Generation", generation);
    const ProfList values = ProfCreateListW(job.get(), 0, L"Values");
    for (INT i = 0; i < count; ++i)
        ProfAppendStringW(job.get(), values, std::to_wstring(i).c_str(), ValueOf(generation, i).c_str());
    return job;
}

// As the file has it: not every form is read back as it was saved, but all differ in this.
INT ToldGeneration(const std::wstring& file, const scForm& form) {
    if (form.flags == PROF_FORM_XFDF) {
        const std::string text = testing_prof::ReadBytes(file);
        const std::size_t value = text.find("<value>");
        return value == std::string::npos ? -1 : std::atoi(text.c_str() + value + 7);
    }
    const tvut22::profile job(ProfJobOpenW(file.c_str()));
    INT generation = -1;
    ProfGetIntW(job.get(), 0, L"Generation", &generation, -1);
    return generation;
}

// 0 for no file; -1 for one that is not whole, to the byte.
INT GenerationOf(const std::wstring& file, const scForm& form) {
    if (!std::filesystem::exists(file))
        return 0;
    const INT generation = ToldGeneration(file, form);
    ProfSaveW(MakeProfile(generation).get(), L"expected.prf", form.flags);
    return testing_prof::ReadBytes(file) == testing_prof::ReadBytes("expected.prf") ? generation : -1;
}

// Removes all files but the forms' own; gives how many there were.
int RemoveOthers() {
    int others = 0;
    for (const auto& entry : std::filesystem::directory_iterator("."))
        if (entry.is_regular_file() && entry.path().extension() != ".prf") {
            std::filesystem::remove(entry.path());
            ++others;
        }
    return others;
}

} // namespace

// Saves one generation after another until it is killed: play-saver FORM.
int PlaySaver(std::span<char*> words) {
    const scForm& form = forms[std::atoi(words[0])];
    const std::wstring file = FileOf(form);
    for (INT generation = std::max(ToldGeneration(file, form), 0) + 1;; ++generation)
        if (const INT result = ProfSaveW(MakeProfile(generation).get(), file.c_str(), form.flags);
            result != PROF_OK)
            return -result;
}

void RunKills(clsRun& run) {
    std::map<std::size_t, INT> last;
    for (std::size_t at = 0; run.GoesOn(); at = (at + 1) % std::size(forms)) {
        {
            const testing_prof::clsChild saver(L"play-saver " + std::to_wstring(at));
            Sleep(10 + run.Random(150));
            run.Require(saver.Runs(), std::string(forms[at].name) + ": a save failed");
            saver.Kill();
        }
        const INT generation = GenerationOf(FileOf(forms[at]), forms[at]);
        if (generation < last[at]) {
            run.Found(std::string(forms[at].name) + ": generation " + std::to_string(generation) + " after " +
                      std::to_string(last[at]));
            run.Keep(FileOf(forms[at]));
            last[at] = 0;
        }
        run.Require(RemoveOthers() <= 1, std::string(forms[at].name) + ": temporary files are left");
        run.Count("kills");
        run.Count("saves", std::max(generation - last[at], 0));
        if (generation > last[at])
            last[at] = generation;
    }
}

} // namespace soak
