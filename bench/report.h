// Collects the figures of a run and prints them, as plain lines or as the table of
// docs/performance.md.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

// A limit that a figure is held against.
struct scGoal {
    enum class Kind { atMost, atLeast };
    Kind kind;
    double limit;
};

inline scGoal AtMost(double limit) {
    return {scGoal::Kind::atMost, limit};
}
inline scGoal AtLeast(double limit) {
    return {scGoal::Kind::atLeast, limit};
}

class clsReport {
  public:
    explicit clsReport(bool markdown) : markdown_(markdown) {}

    // Begins a section; the rows that follow belong to it.
    void Section(const std::string& title);

    // Two durations in nanoseconds; the figure is ours / peer ("0.85x").
    void Against(const std::string& work, double ours, const std::string& peer, double peers,
                 std::optional<scGoal> goal = {});

    // Two durations in nanoseconds; the figure is peer / ours ("7.3x faster").
    void FasterThan(const std::string& work, double ours, const std::string& peer, double peers,
                    std::optional<scGoal> goal = {});

    // A duration in nanoseconds beside another one; the goal, in milliseconds, holds for ours.
    void Milliseconds(const std::string& work, double ours, const std::string& peer, double peers,
                      scGoal goal);

    // How far a cost spreads over several sizes of the same work: the dearest / the cheapest.
    void Spread(const std::string& work, const std::vector<double>& costs, scGoal goal);

    // Bytes an item, ours and a peer's; the goal holds for ours.
    void Bytes(const std::string& work, double ours, const std::string& peer, double peers,
               std::optional<scGoal> goal = {});

    // What was and was not measured, under the rows of the section.
    void Remark(const std::string& text);

    // Says that a section could not be measured.
    void Failed(const std::string& section, const std::string& reason);

    // On a busy machine figures are shown, and no goal is judged from there on.
    void JudgeNothing() { judges_ = false; }

    // Prints how many goals were met, and the missed ones.
    void Summary() const;

  private:
    struct scRow {
        std::string work, ours, peer, peers, ratio, goal;
    };
    std::string Judge(const std::string& work, double figure, const std::string& text,
                      std::optional<scGoal> goal, const char* unit);
    void Print(const scRow& row);

    bool markdown_;
    bool tableOpen_ = false;
    int met_ = 0;
    bool judges_ = true;
    std::string section_;
    std::vector<std::string> missed_; // a line each
};

} // namespace bench
