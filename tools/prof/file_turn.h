// The turn to change a file: two who read it, change it and replace it at once would lose what one of them
// did.
#ifndef PROF_TOOL_FILE_TURN_H
#define PROF_TOOL_FILE_TURN_H

#include <memory>
#include <string>

namespace tool::prof {

// Held from before the file is read until it is replaced. A file that is replaced cannot be held itself, so
// what is held is a mutex of the file's name, for all sessions of the machine; other programs know nothing of
// it.
class FileTurn {
  public:
    // Waits for others for ten seconds; throws Failure with cannotOpen then.
    explicit FileTurn(const std::string& file);

  private:
    struct Release {
        void operator()(void* mutex) const;
    };

    std::unique_ptr<void, Release> mutex_;
};

} // namespace tool::prof

#endif
