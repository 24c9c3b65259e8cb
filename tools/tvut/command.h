// What tvut can do: a command a file.
#pragma once

#include "exit_code.h"

#include <memory>
#include <string>

namespace tool::tvut {

class clsDeclaration;

class IclsCommand {
  public:
    virtual ~IclsCommand() = default;
    virtual const char* Name() const = 0;
    virtual const char* Purpose() const = 0;
    virtual std::string Footer() const { return {}; } // of its help, with line ends
    // Declares the arguments, which are kept in the object.
    virtual void Declare(clsDeclaration& arguments) = 0;
    // Throws Failure.
    virtual ExitCode Run() = 0;
};

std::unique_ptr<IclsCommand> MakeZipCommand();      // zip_command.cpp
std::unique_ptr<IclsCommand> MakeUnzipCommand();    // unzip_command.cpp
std::unique_ptr<IclsCommand> MakeListCommand();     // list_command.cpp
std::unique_ptr<IclsCommand> MakeInfoCommand();     // info_command.cpp
std::unique_ptr<IclsCommand> MakeDownloadCommand(); // download_command.cpp

} // namespace tool::tvut
