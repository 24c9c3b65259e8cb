// Makes lines of a file's text: what the viewer saved, as text or JSON, what the library writes into its log
// files, and any other text, whose lines then have no columns.
//
// In a log file a text may have line feeds of its own: what follows one of its lines without columns belongs
// to it.
#pragma once

#include "host_tags.h"
#include "line.h"

#include <functional>
#include <optional>
#include <string_view>

namespace tool::logpan {

class clsLogReader {
  public:
    using Take = std::function<void(scLine&& line)>;

    explicit clsLogReader(Take take) : take_(std::move(take)) {}

    // The next piece of the text; pieces end anywhere.
    void Add(std::wstring_view text);
    // Gives out what still waits for its end.
    void End();

  private:
    void AddRow(std::wstring_view row);
    void GiveOut();
    ProcessPtr Known(const ProcessPtr& process);

    Take take_;
    std::wstring rest_;         // a row whose end has not come
    std::optional<scLine> log_; // a log file's line that may go on
    clsHostTags hosts_;
    ProcessPtr process_; // of the line before
};

} // namespace tool::logpan
