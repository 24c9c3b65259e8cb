// Nothing is held: each line is printed as it is read.
#include "print_files.h"

#include "log_file.h"
#include "printed_lines.h"
#include "text_io.h"

namespace tool::logpan {

ExitCode PrintFiles(const scArguments& arguments) {
    clsPrintedLines printed{arguments};
    std::atomic<bool> done = false;
    for (const std::string& path : arguments.files) {
        if (done)
            break;
        ReadLogFile(ToWide(path), done, [&](const scLine& line) {
            printed.Show(line);
            done = printed.IsDone();
        });
    }
    printed.Flush();
    return ExitCode::ok;
}

} // namespace tool::logpan
