// prof merge: sets the items of one profile into another.
//
// The first item of a name meets the first of that name, the second the second, and so do lists. What comes
// out is written down as a whole, in the order of the base with what is new after it, and takes the base's
// place.
#include "commands.h"
#include "edited_profile.h"
#include "same_named.h"
#include "xml_text.h"

#include <algorithm>

namespace tool::prof {

namespace {

constexpr auto none = static_cast<std::size_t>(-1);

class clsMerging {
  public:
    clsMerging(const clsSnapshot& base, const clsSnapshot& from, bool onlyNew)
        : base_(base), from_(from), onlyNew_(onlyNew), inFrom_(base.End(), none), inBase_(from.End(), none) {
        Match();
    }

    JobPtr Run() && {
        Open({AllOf(base_), AllOf(from_)});
        while (!open_.empty()) {
            auto& [base, from] = open_.back();
            if (base.begin < base.end)
                TakeBase(Take(base));
            else if (from.begin < from.end)
                TakeNew(Take(from));
            else
                Close();
        }
        return std::move(xml_).Open();
    }

  private:
    struct scPair {
        scEntries base, from;
    };

    // Fills inFrom_ and inBase_: the entry that one meets.
    void Match() {
        std::vector<scPair> waiting{{AllOf(base_), AllOf(from_)}};
        while (!waiting.empty()) {
            const scPair pair = waiting.back();
            waiting.pop_back();
            for (const scSameNamed& named : SameNamed(pair.base, pair.from)) {
                for (std::size_t at = 0; at < std::min(named.left.size(), named.right.size()); ++at) {
                    inFrom_[named.left[at]] = named.right[at];
                    inBase_[named.right[at]] = named.left[at];
                    if (named.isList)
                        waiting.push_back({In(base_, named.left[at]), In(from_, named.right[at])});
                }
            }
        }
    }

    static std::size_t Take(scEntries& entries) {
        const std::size_t entry = entries.begin;
        entries.begin = entries.snapshot->Next(entry);
        return entry;
    }

    void TakeBase(std::size_t entry) {
        const std::size_t met = inFrom_[entry];
        if (base_.IsList(entry)) {
            xml_.BeginList(base_.Name(entry));
            Open({In(base_, entry), met == none ? scEntries{&from_, 0, 0} : In(from_, met)});
        } else {
            xml_.Item(base_.Name(entry), met == none || onlyNew_ ? base_.Value(entry) : from_.Value(met));
        }
    }

    void TakeNew(std::size_t entry) {
        if (inBase_[entry] != none)
            return;
        if (from_.IsList(entry)) {
            xml_.BeginList(from_.Name(entry));
            Open({{&base_, 0, 0}, In(from_, entry)});
        } else {
            xml_.Item(from_.Name(entry), from_.Value(entry));
        }
    }

    void Open(const scPair& lists) { open_.push_back(lists); }
    void Close() {
        open_.pop_back();
        if (!open_.empty())
            xml_.EndList();
    }

    const clsSnapshot& base_;
    const clsSnapshot& from_;
    bool onlyNew_;
    std::vector<std::size_t> inFrom_, inBase_;
    std::vector<scPair> open_;
    clsXmlText xml_;
};

} // namespace

ExitCode RunMerge(const scArguments& arguments) {
    RequireOneStandardInput(arguments);
    const clsProfile from = clsProfile::Open(arguments.other, arguments.plainIni);
    clsEditedProfile base{arguments, Replaceable::textProfiles};
    const clsSnapshot baseEntries{base.Job(), nullptr}, fromEntries{from, nullptr};
    base.Become(clsProfile{clsMerging{baseEntries, fromEntries, arguments.onlyNew}.Run()});
    base.SaveAsText();
    return ExitCode::ok;
}

} // namespace tool::prof
