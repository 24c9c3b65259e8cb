// prof convert: a profile from any form that can be read into any form that can be written.
#include "commands.h"
#include "edited_profile.h"
#include "file_turn.h"
#include "flat_lines.h"
#include "json_commands.h"
#include "profile_kind.h"
#include "replaced_file.h"
#include "replacing.h"
#include "stream.h"
#include "text_io.h"

#include <string_view>

namespace tool::prof {

namespace {

struct scForm {
    std::string_view name;
    UINT flag;
};

constexpr scForm forms[] = {{"text", PROF_FORM_TEXT}, {"xml", PROF_FORM_XML}, {"xfdf", PROF_FORM_XFDF}};

// The form that is asked for, or the one that the name of the file promises; of those that the library saves.
UINT FormFlag(const scArguments& arguments) {
    for (const scForm& form : forms)
        if (form.name == arguments.form)
            return form.flag;
    if (HasXfdfName(arguments.output))
        return PROF_FORM_XFDF;
    return HasXmlName(arguments.output) ? PROF_FORM_XML : PROF_FORM_TEXT;
}

UINT SaveFlags(const scArguments& arguments) {
    return FormFlag(arguments) | (arguments.compress ? PROF_SAVE_COMPRESSED : 0u);
}

clsProfile Opened(const scArguments& arguments) {
    if (!arguments.flat)
        return clsProfile::Open(arguments.file, arguments.plainIni);
    return ProfileOfFlatLines(arguments.file == standardStream
                                  ? StandardInput()
                                  : ContentsOf(*FileStream(ToWide(arguments.file), arguments.file)),
                              DisplayName(arguments.file));
}

ExitCode ConvertFlatLines(const scArguments& arguments) {
    const clsProfile profile = Opened(arguments);
    if (arguments.output != standardStream)
        RequireOverwritable(arguments.output);
    profile.Save(arguments.output, SaveFlags(arguments));
    return ExitCode::ok;
}

bool IsJsonWanted(const scArguments& arguments) {
    return arguments.form.empty() ? HasJsonName(arguments.output) : arguments.form == "json";
}

ExitCode ConvertToJson(const scArguments& arguments) {
    if (arguments.compress)
        throw scFailure{ExitCode::usage, "", "JSON is not compressed"};
    if (arguments.output == standardStream) {
        PrintJsonList(Opened(arguments), nullptr, arguments);
        return ExitCode::ok;
    }
    const clsFileTurn turn{arguments.output};
    if (arguments.output == arguments.file && !arguments.flat)
        RequireReplaceable(arguments.file, arguments.plainIni, Replaceable::allProfiles);
    else
        RequireOverwritable(arguments.output);
    const clsProfile profile = Opened(arguments);
    WriteWholeFile(arguments.output, JsonOf(clsSnapshot{profile, nullptr}, ValuesFor(arguments)));
    return ExitCode::ok;
}

} // namespace

ExitCode RunConvert(const scArguments& arguments) {
    if (IsJsonWanted(arguments))
        return ConvertToJson(arguments);
    if (arguments.flat)
        return ConvertFlatLines(arguments);
    clsEditedProfile profile{arguments, Replaceable::allProfiles};
    profile.Save(SaveFlags(arguments));
    return ExitCode::ok;
}

} // namespace tool::prof
