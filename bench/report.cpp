// Prints each row as it comes, so that a long run shows where it is.
#include "report.h"

#include <algorithm>
#include <cstdio>

namespace bench {

namespace {

template <typename... Values>
std::string Format(const char* format, Values... values) {
    char text[64];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

// Three digits that matter, in the unit that reads best.
std::string Duration(double ns) {
    struct scUnit {
        double ns;
        const char* name;
    };
    static constexpr scUnit units[] = {{1e9, "s"}, {1e6, "ms"}, {1e3, "us"}, {1, "ns"}};
    const scUnit* unit = std::ranges::find_if(units, [ns](const scUnit& each) { return ns >= each.ns; });
    if (unit == std::end(units))
        unit = std::end(units) - 1;
    const double value = ns / unit->ns;
    return Format("%.*f %s", value < 10 ? 2 : value < 100 ? 1 : 0, value, unit->name);
}

std::string Times(double ratio) {
    return Format("%.2fx", ratio);
}

} // namespace

std::string clsReport::Judge(const std::string& work, double figure, const std::string& text,
                             std::optional<scGoal> goal, const char* unit) {
    if (!goal)
        return {};
    const bool atMost = goal->kind == scGoal::Kind::atMost;
    const std::string limit = Format("goal %s %g%s", atMost ? "<=" : ">=", goal->limit, unit);
    if (!judges_)
        return limit + ", not judged";
    const bool met = atMost ? figure <= goal->limit : figure >= goal->limit;
    if (met)
        ++met_;
    else
        missed_.push_back(section_ + ": " + work + ", " + text + ", " + limit);
    return limit + ": " + text + (met ? " ok" : " MISSED");
}

void clsReport::Print(const scRow& row) {
    if (!markdown_) {
        std::printf("  %-44s %9s  %-34s %9s  %-8s %s\n", row.work.c_str(), row.ours.c_str(), row.peer.c_str(),
                    row.peers.c_str(), row.ratio.c_str(), row.goal.c_str());
    } else {
        if (!tableOpen_)
            std::printf("| work | tvUT22 | against | | ratio | goal |\n|---|--:|---|--:|--:|---|\n");
        std::printf("| %s | %s | %s | %s | %s | %s |\n", row.work.c_str(), row.ours.c_str(), row.peer.c_str(),
                    row.peers.c_str(), row.ratio.c_str(), row.goal.c_str());
    }
    tableOpen_ = true;
    std::fflush(stdout);
}

void clsReport::Section(const std::string& title) {
    tableOpen_ = false;
    section_ = title;
    std::printf(markdown_ ? "\n### %s\n\n" : "\n%s\n", title.c_str());
    std::fflush(stdout);
}

void clsReport::Against(const std::string& work, double ours, const std::string& peer, double peers,
                        std::optional<scGoal> goal) {
    const double ratio = ours / peers;
    Print({work, Duration(ours), peer, Duration(peers), Times(ratio),
           Judge(work, ratio, Times(ratio), goal, "x")});
}

void clsReport::FasterThan(const std::string& work, double ours, const std::string& peer, double peers,
                           std::optional<scGoal> goal) {
    const double ratio = peers / ours;
    Print({work, Duration(ours), peer, Duration(peers), "1/" + Times(ratio),
           Judge(work, ratio, Times(ratio), goal, "x faster")});
}

void clsReport::Milliseconds(const std::string& work, double ours, const std::string& peer, double peers,
                             scGoal goal) {
    Print({work, Duration(ours), peer, Duration(peers), Times(ours / peers),
           Judge(work, ours / 1e6, Duration(ours), goal, " ms")});
}

void clsReport::Spread(const std::string& work, const std::vector<double>& costs, scGoal goal) {
    const auto [low, high] = std::ranges::minmax(costs);
    const std::string ratio = Times(high / low);
    Print({work, Duration(high), "the cheapest of them", Duration(low), ratio,
           Judge(work, high / low, ratio, goal, "x")});
}

void clsReport::Bytes(const std::string& work, double ours, const std::string& peer, double peers,
                      std::optional<scGoal> goal) {
    const std::string text = Format("%.1f B", ours);
    Print({work, text, peer, Format("%.1f B", peers), Times(ours / peers),
           Judge(work, ours, text, goal, " B")});
}

void clsReport::Remark(const std::string& text) {
    std::printf(markdown_ ? "\n%s\n" : "  %s\n", text.c_str());
}

void clsReport::Failed(const std::string& section, const std::string& reason) {
    std::fflush(stdout);
    std::fprintf(stderr, "tvut22_bench: section '%s' could not be measured: %s\n", section.c_str(),
                 reason.c_str());
}

void clsReport::Summary() const {
    const std::size_t judged = static_cast<std::size_t>(met_) + missed_.size();
    if (judged == 0)
        return;
    std::printf(markdown_ ? "\n%d of %d goals met in this run.\n" : "\n%d of %d goals met\n", met_,
                static_cast<int>(judged));
    if (!missed_.empty())
        std::printf(markdown_ ? "\nMissed:\n\n" : "missed:\n");
    for (const std::string& line : missed_)
        std::printf(markdown_ ? "- %s\n" : "  %s\n", line.c_str());
}

} // namespace bench
