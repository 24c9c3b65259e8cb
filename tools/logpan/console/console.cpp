// Reads the store and prints; standard error says when it listens and how it ended.
#include "console.h"

#include "hidden_window.h"
#include "interrupt.h"
#include "print_files.h"
#include "printed_lines.h"
#include "session.h"
#include "text_io.h"

namespace tool::logpan {

namespace {

constexpr std::size_t batchSize = 256;

void Say(const std::string& text) {
    PrintError("logpan", "", text);
}

class clsPrinter {
  public:
    clsPrinter(const scArguments& arguments, clsStore& store) : printed_(arguments), store_(store) {}

    // Until the time is over, enough lines are printed or the store is stopped.
    void Run(std::optional<clsStore::Clock::time_point> end) {
        while (!printed_.IsDone() && store_.Wait(next_, end)) {
            PrintBatch();
            if (next_ == store_.end())
                printed_.Flush();
        }
        store_.Stop(); // completes the lines that waited for more
        while (!printed_.IsDone() && PrintBatch()) {
        }
        printed_.Flush();
    }

    std::string Summary() const {
        const scCounters counters = store_.Counters();
        return "received " + std::to_string(counters.received) + ", shown " +
               std::to_string(printed_.Shown()) + ", lost " + std::to_string(counters.lost) + ", refused " +
               std::to_string(counters.refused) + ", skipped " + std::to_string(skipped_);
    }

  private:
    // False when there was nothing more to read.
    bool PrintBatch() {
        batch_.clear();
        skipped_ += store_.Read(next_, batchSize, batch_);
        for (const LinePtr& line : batch_)
            printed_.Show(*line);
        return !batch_.empty();
    }

    clsPrintedLines printed_;
    clsStore& store_;
    std::uint64_t next_ = 0;
    std::uint64_t skipped_ = 0;
    std::vector<LinePtr> batch_;
};

std::optional<clsStore::Clock::time_point> EndOf(const scArguments& arguments) {
    if (!arguments.exitAfter)
        return std::nullopt;
    return clsStore::Clock::now() + std::chrono::duration_cast<clsStore::Clock::duration>(
                                        std::chrono::duration<double>{*arguments.exitAfter});
}

} // namespace

ExitCode RunConsole(const scArguments& arguments) {
    if (!arguments.files.empty())
        return PrintFiles(arguments);
    clsStore store{arguments.capacity, arguments.Bytes()};
    clsPrinter printer{arguments, store};
    const clsInterrupt interrupt{store};
    const clsOnlyViewer only;
    {
        const clsHiddenWindow window;
        const clsSession session{store, arguments.datagram, window.Handle()};
        if (!session.HasMailslot())
            Say("another program has the mailslot; older senders are not heard");
        Say("listening on port " + std::to_string(session.Port()));
        printer.Run(EndOf(arguments));
    }
    Say(printer.Summary());
    return ExitCode::ok;
}

} // namespace tool::logpan
