// prof: a command line tool on the profile store's public interface.
#include "arguments.h"
#include "program.h"

int main() {
    return tool::RunProgram("prof", tool::prof::Dispatch);
}
