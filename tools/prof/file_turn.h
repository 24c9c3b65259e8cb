// The turn to change a file: two who read it, change it and replace it at once would lose what one of them
// did.
#pragma once

#include <memory>
#include <string>

namespace tool::prof {

// Held from before the file is read until it is replaced. A file that is replaced cannot be held itself, so
// what is held is a mutex of the file's name, for all sessions of the machine; other programs know nothing of
// it.
class clsFileTurn {
  public:
    // Waits for others for ten seconds; throws Failure with cannotOpen then.
    explicit clsFileTurn(const std::string& file);

  private:
    struct scRelease {
        void operator()(void* mutex) const;
    };

    std::unique_ptr<void, scRelease> mutex_;
};

} // namespace tool::prof
