// Reads the store and prints; standard error tells when to begin and how it ended.
#include "console.h"

#include "columns.h"
#include "hidden_window.h"
#include "interrupt.h"
#include "session.h"
#include "text_io.h"

namespace tool::logpan {

namespace {

constexpr std::size_t batchSize = 256;

void say(const std::string& text) {
    printError("logpan", "", text);
}

class Printer {
  public:
    Printer(const Arguments& arguments, Store& store)
        : arguments_(arguments), filter_(filterOf(arguments)), store_(store) {}

    // Until the time is over, enough lines are printed or the store is stopped.
    void run(std::optional<Store::Clock::time_point> end) {
        while (!isDone() && store_.wait(next_, end)) {
            printBatch();
            if (next_ == store_.end())
                Output::standard().flush();
        }
        store_.stop(); // completes the lines that waited for more
        while (!isDone() && printBatch()) {
        }
        Output::standard().flush();
    }

    std::string summary() const {
        const Counters counters = store_.counters();
        return "received " + std::to_string(counters.received) + ", shown " + std::to_string(shown_) +
               ", lost " + std::to_string(counters.lost) + ", refused " + std::to_string(counters.refused) +
               ", skipped " + std::to_string(skipped_);
    }

  private:
    bool isDone() const { return arguments_.maxLines > 0 && shown_ >= arguments_.maxLines; }

    // False when there was nothing more to read.
    bool printBatch() {
        batch_.clear();
        skipped_ += store_.read(next_, batchSize, batch_);
        for (const LinePtr& line : batch_) {
            if (isDone())
                break;
            if (filter_.shows(*line))
                print(*line);
        }
        return !batch_.empty();
    }

    void print(const Line& line) {
        Output::standard().writeLine(toUtf8(arguments_.json ? jsonLine(line) : plainLine(line)));
        ++shown_;
    }

    const Arguments& arguments_;
    Filter filter_;
    Store& store_;
    std::uint64_t next_ = 0;
    std::uint64_t shown_ = 0;
    std::uint64_t skipped_ = 0;
    std::vector<LinePtr> batch_;
};

std::optional<Store::Clock::time_point> endOf(const Arguments& arguments) {
    if (!arguments.exitAfter)
        return std::nullopt;
    return Store::Clock::now() + std::chrono::duration_cast<Store::Clock::duration>(
                                     std::chrono::duration<double>{*arguments.exitAfter});
}

} // namespace

ExitCode runConsole(const Arguments& arguments) {
    Store store{arguments.capacity, arguments.bytes()};
    Printer printer{arguments, store};
    const Interrupt interrupt{store};
    const OnlyViewer only;
    {
        const HiddenWindow window;
        const Session session{store, arguments.datagram, window.handle()};
        if (!session.hasMailslot())
            say("another program has the mailslot; older senders are not heard");
        say("listening on port " + std::to_string(session.port()));
        printer.run(endOf(arguments));
    }
    say(printer.summary());
    return ExitCode::ok;
}

} // namespace tool::logpan
