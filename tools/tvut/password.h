// Passwords, which never stand on the command line: everybody can read that.
#pragma once

#include <string>

namespace tool::tvut {

class clsDeclaration;

void DeclarePasswordFile(clsDeclaration& arguments, std::string& file);

// The first line of a file in UTF-8, without the line's end; of standard input for "-"; empty without a file.
// Throws Failure for a file that cannot be read or holds none.
std::wstring PasswordFrom(const std::string& file);

} // namespace tool::tvut
