// prof convert: a profile from any form that can be read into any form that can be written.
#include "commands.h"
#include "edited_profile.h"
#include "json_commands.h"
#include "profile_kind.h"

#include <string_view>

namespace tool::prof {

namespace {

struct scForm {
    std::string_view name;
    UINT flag;
};

constexpr scForm forms[] = {{"text", PROF_FORM_TEXT}, {"xml", PROF_FORM_XML}, {"xfdf", PROF_FORM_XFDF}};

// The form that is asked for, or the one that the name of the file promises.
UINT FormFlag(const scArguments& arguments) {
    for (const scForm& form : forms)
        if (form.name == arguments.form)
            return form.flag;
    if (HasXfdfName(arguments.output))
        return PROF_FORM_XFDF;
    return HasXmlName(arguments.output) ? PROF_FORM_XML : PROF_FORM_TEXT;
}

} // namespace

ExitCode RunConvert(const scArguments& arguments) {
    if (arguments.form == "json" || (arguments.form.empty() && HasJsonName(arguments.output)))
        return ConvertToJson(arguments);
    clsEditedProfile profile{arguments, Replaceable::allProfiles};
    profile.Save(FormFlag(arguments) | (arguments.compress ? PROF_SAVE_COMPRESSED : 0u));
    return ExitCode::ok;
}

} // namespace tool::prof
