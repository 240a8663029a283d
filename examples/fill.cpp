// Sets the values of form fields. An empty value takes the value of a text or choice field away,
// and sets a button off; a path that comes more than once selects several options of a choice
// field.

#include "program.h"

#include <pdf/tools/forms.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

/// What is to be set: a path, and the values that were given for it.
struct Setting {
    std::string_view path;
    std::vector<std::string_view> values;
};

/// The settings of the arguments from the third on; nothing where one is none.
std::optional<std::vector<Setting>> settingsOf(const Program::Arguments& arguments) {
    std::vector<Setting> settings;
    for (std::size_t index = 2; index < arguments.size(); ++index) {
        const std::string_view argument = arguments[index];
        const std::size_t end = argument.find('=');
        if (end == 0 || end == std::string_view::npos) return std::nullopt;
        const std::string_view path = argument.substr(0, end);
        const auto known = std::ranges::find(settings, path, &Setting::path);
        Setting& setting = known != settings.end() ? *known : settings.emplace_back();
        setting.path = path;
        setting.values.push_back(argument.substr(end + 1));
    }
    return settings;
}

Tools::Result<Tools::Filled> fill(Tools::FormEditor& form, const Setting& setting) {
    const auto& [path, values] = setting;
    return values.size() == 1 ? form.fill(path, values.front()) : form.choose(path, values);
}

/// What a field takes: "A, B (which shows as b)"; empty where that is not for the form to say.
std::string taken(const Tools::FormEditor& form, const Ref<Field>& field) {
    std::vector<std::string> texts;
    const auto options = form.options(field).value_or(std::vector<Tools::FieldOption>());
    for (const Tools::FieldOption& option : options) {
        const bool same = option.text == option.value;
        texts.push_back(same ? option.value : option.value + " (shown as " + option.text + ")");
    }
    return Program::joined(texts);
}

/// What could be set instead of what was not.
std::string advice(const Tools::FormEditor& form, const Setting& setting) {
    if (const auto field = form.field(setting.path)) {
        const std::string texts = taken(form, *field);
        return texts.empty() ? "" : "it takes: " + texts;
    }
    std::vector<std::string> paths;
    for (const Ref<Field>& field : form) {
        if (const auto path = field->fullName()) paths.push_back(path->utf8());
    }
    const std::string near = Program::joined(Program::nearest(setting.path, paths));
    return near.empty() ? "\"fields FILE\" lists those that it has" : "near to it: " + near;
}

/// Sets all fields; gives the exit status.
int fillAll(Tools::FormEditor& form, const std::vector<Setting>& settings, std::string_view file) {
    for (const Setting& setting : settings) {
        const auto filled = fill(form, setting);
        if (!filled) return Program::failure(file, filled.error(), advice(form, setting));
        if (!filled->viewerNeeded) continue;
        std::fprintf(stderr, "warning: %s: %s; viewers are asked to show the value\n",
                     std::string(setting.path).c_str(), filled->reason.c_str());
    }
    return Program::done;
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"fill IN OUT PATH=VALUE...",
         "Sets fields by their paths, and draws them. An empty value takes a value away.",
         Program::writingOptions({{"--flatten", "", "makes the fields part of their pages"}})});
    const bool flatten = arguments.has("--flatten");
    if (!arguments.are(flatten ? 2 : 3, SIZE_MAX)) return arguments.refuse();
    const auto settings = settingsOf(arguments);
    if (!settings) return arguments.refuse("what is to be set is PATH=VALUE");

    const auto document = Program::open(arguments[0], Program::opening(arguments));
    if (!document) return Program::failed;
    auto form = Tools::FormEditor::of(document);
    if (!form) return Program::failure(arguments[0], form.error());
    const int status = fillAll(*form, *settings, arguments[0]);
    if (status != Program::done) return status;
    const auto flat = flatten ? Tools::flattenForm(document) : Tools::Result<void>();
    if (!flat) return Program::failure(arguments[0], flat.error());
    return Program::save(document, arguments[1], Program::saving(arguments));
}
