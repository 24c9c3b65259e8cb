#include "declaration.h"

#include <CLI/CLI.hpp>

namespace tool::tvut {

clsDeclaration& clsDeclaration::Text(const char* name, std::string& value, const char* purpose) {
    last_ = app_.add_option(name, value, purpose);
    return *this;
}

clsDeclaration& clsDeclaration::Texts(const char* name, std::vector<std::string>& values,
                                      const char* purpose) {
    last_ = app_.add_option(name, values, purpose);
    return *this;
}

clsDeclaration& clsDeclaration::Flag(const char* name, bool& value, const char* purpose) {
    last_ = app_.add_flag(name, value, purpose);
    return *this;
}

clsDeclaration& clsDeclaration::Size(const char* name, std::uint64_t& value, const char* purpose) {
    last_ = app_.add_option(name, value, purpose)->transform(CLI::AsSizeValue(false));
    return *this;
}

clsDeclaration& clsDeclaration::Required() {
    last_->required();
    return *this;
}

clsDeclaration& clsDeclaration::TypeName(const char* name) {
    last_->type_name(name);
    return *this;
}

clsDeclaration& clsDeclaration::Excludes(const char* other) {
    last_->excludes(other);
    return *this;
}

} // namespace tool::tvut
