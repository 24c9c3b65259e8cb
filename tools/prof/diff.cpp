// prof diff: what two profiles hold that differs.
//
// Items and lists of one name are compared by their order: those that are the same at the beginning and at
// the end are left out, the others meet one by one. Lists that may be the same show by a hash of all that is
// in them, so that each entry is looked at a few times only, however the profiles differ. Lists that are open
// wait on a stack.
#include "commands.h"
#include "escapes.h"
#include "json_commands.h"
#include "json_object.h"
#include "json_text.h"
#include "paint.h"
#include "same_named.h"
#include "text_io.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace tool::prof {

namespace {

// ---- Sameness -----------------------------------------------------------------------------------

using Hashes = std::vector<std::uint64_t>;

std::uint64_t Mixed(std::uint64_t hash, std::uint64_t with) {
    constexpr std::uint64_t prime = 0x100000001b3;
    return (hash ^ with) * prime;
}

std::uint64_t Mixed(std::uint64_t hash, std::wstring_view text) {
    for (const wchar_t unit : text)
        hash = Mixed(hash, std::uint64_t{unit});
    return Mixed(hash, text.size());
}

Hashes HashesOf(const clsSnapshot& all) {
    Hashes hashes(all.End());
    for (std::size_t entry = all.End(); entry-- != 0;) {
        std::uint64_t hash = Mixed(Mixed(all.IsList(entry) ? 1 : 0, all.Name(entry)), all.Value(entry));
        const scEntries within = In(all, entry);
        for (std::size_t inner = within.begin; inner < within.end; inner = all.Next(inner))
            hash = Mixed(hash, hashes[inner]);
        hashes[entry] = hash;
    }
    return hashes;
}

struct scSide {
    const clsSnapshot& all;
    Hashes hashes;
};

// With all that is in them.
bool AreSame(const scSide& left, std::size_t l, const scSide& right, std::size_t r) {
    const std::size_t count = left.all.Next(l) - l;
    if (left.hashes[l] != right.hashes[r] || count != right.all.Next(r) - r)
        return false;
    for (std::size_t at = 0; at < count; ++at) {
        if (left.all.IsList(l + at) != right.all.IsList(r + at) ||
            left.all.Next(l + at) - l != right.all.Next(r + at) - r ||
            left.all.Name(l + at) != right.all.Name(r + at) ||
            left.all.Value(l + at) != right.all.Value(r + at))
            return false;
    }
    return true;
}

void DropSame(scSameNamed& named, const scSide& left, const scSide& right) {
    auto& [name, isList, l, r] = named;
    std::size_t begin = 0, end = 0;
    const std::size_t least = std::min(l.size(), r.size());
    while (begin < least && AreSame(left, l[begin], right, r[begin]))
        ++begin;
    while (end < least - begin && AreSame(left, l[l.size() - 1 - end], right, r[r.size() - 1 - end]))
        ++end;
    const auto middle = [&](std::vector<std::size_t>& entries) {
        entries.erase(entries.end() - static_cast<std::ptrdiff_t>(end), entries.end());
        entries.erase(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(begin));
    };
    middle(l);
    middle(r);
}

// ---- Output -------------------------------------------------------------------------------------

using Value = std::optional<std::wstring_view>;

class IclsReport {
  public:
    virtual void Enter(std::size_t depth, std::wstring_view name) = 0; // of a list in the one at that depth
    virtual void List(bool isLeft) = 0;                                // the one entered is on that side only
    virtual void Item(std::wstring_view name, Value left, Value right) = 0;
    virtual void End() = 0;

  protected:
    ~IclsReport() = default;
};

class clsLines final : public IclsReport {
  public:
    void Enter(std::size_t depth, std::wstring_view name) override {
        path_.resize(depth == 0 ? 0 : ends_[depth - 1]);
        ends_.resize(depth);
        path_ += L'/';
        AppendName(path_, name);
        ends_.push_back(path_.size());
    }
    void List(bool isLeft) override { WriteLine(isLeft, L"/", {}); }
    void Item(std::wstring_view name, Value left, Value right) override {
        std::wstring text = L"/";
        AppendName(text, name);
        text += L'=';
        if (left)
            WriteLine(true, text, *left);
        if (right)
            WriteLine(false, text, *right);
    }
    void End() override {}

  private:
    void WriteLine(bool isLeft, std::wstring_view name, std::wstring_view value) {
        line_ = isLeft ? L"- " : L"+ ";
        line_.append(path_).append(name);
        AppendValue(line_, value);
        clsOutput& output = clsOutput::Standard();
        output.Write(BeginPaint(isLeft ? Paint::removed : Paint::added));
        output.Write(ToUtf8(line_));
        output.WriteLine(EndPaint());
    }

    std::wstring path_;
    std::vector<std::size_t> ends_;
    std::wstring line_;
};

class clsJson final : public IclsReport {
  public:
    explicit clsJson(JsonValues values) : values_(values) {}

    void Enter(std::size_t depth, std::wstring_view name) override {
        path_.resize(depth);
        path_.push_back(name);
    }
    void List(bool isLeft) override {
        clsJsonObject change;
        change.Add(L"path", Path(nullptr));
        change.AddText(L"list", isLeft ? L"removed" : L"added");
        Write(std::move(change));
    }
    void Item(std::wstring_view name, Value left, Value right) override {
        clsJsonObject change;
        change.Add(L"path", Path(&name));
        if (left)
            change.Add(L"old", Json(*left));
        if (right)
            change.Add(L"new", Json(*right));
        Write(std::move(change));
    }
    void End() override { clsOutput::Standard().WriteLine(isEmpty_ ? "[]" : "\n]"); }

  private:
    std::wstring Path(const std::wstring_view* last) const {
        std::wstring json = L"[";
        const auto append = [&](std::wstring_view name) {
            json += json.size() == 1 ? L"" : L", ";
            AppendJsonText(json, name);
        };
        std::for_each(path_.begin(), path_.end(), append);
        if (last != nullptr)
            append(*last);
        return json + L"]";
    }
    std::wstring Json(std::wstring_view value) const {
        std::wstring json;
        AppendJsonValue(json, value, values_);
        return json;
    }
    void Write(clsJsonObject change) {
        clsOutput::Standard().Write(isEmpty_ ? "[\n  " : ",\n  ");
        clsOutput::Standard().Write(ToUtf8(std::move(change).Close()));
        isEmpty_ = false;
    }

    JsonValues values_;
    bool isEmpty_ = true;
    std::vector<std::wstring_view> path_;
};

// ---- Comparison ---------------------------------------------------------------------------------

class clsComparison {
  public:
    clsComparison(const clsSnapshot& left, const clsSnapshot& right, IclsReport& report)
        : left_{left, HashesOf(left)}, right_{right, HashesOf(right)}, report_(report) {}

    // Whether anything differs.
    bool Run() {
        Compare(AllOf(left_.all), AllOf(right_.all), 0);
        while (!waiting_.empty()) {
            const scPair pair = waiting_.back();
            waiting_.pop_back();
            report_.Enter(pair.depth, pair.name);
            if (!pair.left || !pair.right)
                report_.List(pair.left.has_value());
            Compare(Within(left_.all, pair.left), Within(right_.all, pair.right), pair.depth + 1);
        }
        report_.End();
        return differs_;
    }

  private:
    using Entry = std::optional<std::size_t>;
    struct scPair {
        std::wstring_view name;
        Entry left, right;
        std::size_t depth; // of the list around them
    };

    static scEntries Within(const clsSnapshot& all, Entry list) {
        return list ? In(all, *list) : scEntries{&all, 0, 0};
    }

    void Compare(const scEntries& left, const scEntries& right, std::size_t depth) {
        const std::size_t before = waiting_.size();
        for (scSameNamed& named : SameNamed(left, right)) {
            DropSame(named, left_, right_);
            const auto entry = [](const std::vector<std::size_t>& entries, std::size_t at) {
                return at < entries.size() ? Entry{entries[at]} : Entry{};
            };
            for (std::size_t at = 0; at < std::max(named.left.size(), named.right.size()); ++at)
                Meet({named.name, entry(named.left, at), entry(named.right, at), depth}, named.isList);
        }
        std::reverse(waiting_.begin() + static_cast<std::ptrdiff_t>(before), waiting_.end());
    }

    // A list's items come before what is in its lists.
    void Meet(const scPair& pair, bool isList) {
        if (isList) {
            differs_ = true;
            return waiting_.push_back(pair);
        }
        const auto value = [](const clsSnapshot& all, Entry entry) {
            return entry ? Value{all.Value(*entry)} : Value{};
        };
        const Value left = value(left_.all, pair.left), right = value(right_.all, pair.right);
        if (left == right)
            return;
        differs_ = true;
        report_.Item(pair.name, left, right);
    }

    scSide left_, right_;
    IclsReport& report_;
    std::vector<scPair> waiting_;
    bool differs_ = false;
};

} // namespace

ExitCode RunDiff(const scArguments& arguments) {
    RequireOneStandardInput(arguments);
    const clsProfile left = clsProfile::Open(arguments.file, arguments.plainIni);
    const clsProfile right = clsProfile::Open(arguments.other, arguments.plainIni);
    const clsSnapshot leftEntries{left, nullptr}, rightEntries{right, nullptr};
    const auto differ = [&](IclsReport&& report) {
        return clsComparison{leftEntries, rightEntries, report}.Run();
    };
    const bool areDifferent = arguments.json ? differ(clsJson{ValuesFor(arguments)}) : differ(clsLines{});
    return areDifferent ? ExitCode::different : ExitCode::ok;
}

} // namespace tool::prof
