// How a command declares its arguments. Only main.cpp and declaration.cpp see the parser, whose templates
// take most of the time that a source is compiled for.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace tool::tvut {

// What is declared is kept in the value given, which has to live until the command has run. The last three
// calls say more about the argument that was declared last.
class clsDeclaration {
  public:
    explicit clsDeclaration(CLI::App& app) : app_(app) {}

    clsDeclaration& Text(const char* name, std::string& value, const char* purpose);
    clsDeclaration& Texts(const char* name, std::vector<std::string>& values, const char* purpose);
    clsDeclaration& Flag(const char* name, bool& value, const char* purpose);
    // A number of bytes, which may have a unit: 100MB.
    clsDeclaration& Size(const char* name, std::uint64_t& value, const char* purpose);

    clsDeclaration& Required();
    clsDeclaration& TypeName(const char* name);
    clsDeclaration& Excludes(const char* other);

  private:
    CLI::App& app_;
    CLI::Option* last_ = nullptr;
};

} // namespace tool::tvut
