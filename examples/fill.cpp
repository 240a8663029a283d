// Sets the values of form fields. An empty value takes the value of a text or choice field away,
// and sets a button off; a path that comes more than once selects several options of a choice
// field.

#include "program.h"

#include <pdf/tools/filling.h>

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

Tools::Filled fill(Document& document, Form& form, const Setting& setting) {
    const auto& [path, values] = setting;
    return values.size() == 1 ? Tools::fillField(document, form, path, values.front())
                              : Tools::chooseOptions(document, form, path, values);
}

/// The paths of all fields of a form.
std::vector<std::string> pathsOf(const Form& form) {
    std::vector<std::string> paths;
    std::vector<Ref<Field>> waiting;
    for (std::uint64_t index = 0; index < form.fieldCount(); ++index)
        waiting.push_back(form.field(index));
    while (!waiting.empty()) {
        const Ref<Field> field = waiting.back();
        waiting.pop_back();
        if (const auto path = field->fullName()) paths.push_back(path->utf8());
        for (std::uint64_t index = 0; index < field->childCount(); ++index)
            waiting.push_back(field->child(index));
    }
    std::ranges::sort(paths);
    return paths;
}

/// What a field takes: "A, B (which shows as b)"; empty where that is not for the form to say.
std::string taken(const Document& document, const Field& field) {
    std::vector<std::string> texts;
    for (const Tools::FieldOption& option : Tools::fieldOptions(document, field)) {
        const bool same = option.text == option.value;
        texts.push_back(same ? option.value : option.value + " (shown as " + option.text + ")");
    }
    return Program::joined(texts);
}

/// Says what was not set, and what could be; gives the exit status.
int notSet(const Document& document, const Form& form, const Setting& setting,
           std::string_view file) {
    const std::uint32_t code = Host::Error::get();
    const std::string path(setting.path);
    const auto name = Host::String::create(setting.path);
    const auto field = name ? form.fieldByPath(name) : nullptr;
    if (!field) {
        const std::string near = Program::joined(Program::nearest(path, pathsOf(form)));
        return Program::failure(file, code, "it has no field " + path,
                                near.empty() ? "\"fields FILE\" lists those that it has"
                                             : "near to it: " + near);
    }
    std::string what = path + " does not take";
    for (const std::string_view value : setting.values)
        what.append(" \"").append(value).append("\"");
    const std::string texts = taken(document, *field);
    return Program::failure(file, code, what, texts.empty() ? "" : "it takes: " + texts);
}

/// Sets all fields; gives the exit status.
int fillAll(Document& document, const std::vector<Setting>& settings, std::string_view file) {
    const auto form = Tools::openForm(document);
    if (!form) return Program::failure(file, Host::Error::get(), "it has no form");
    for (const Setting& setting : settings) {
        const Tools::Filled filled = fill(document, *form, setting);
        if (filled == Tools::Filled::Failed) return notSet(document, *form, setting, file);
        if (filled == Tools::Filled::Shown) continue;
        std::fprintf(stderr,
                     "warning: %s: its font cannot show the value; viewers are asked to do it\n",
                     std::string(setting.path).c_str());
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

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    const int status = fillAll(*document, *settings, arguments[0]);
    if (status != Program::done) return status;
    if (flatten && !Tools::flattenForm(*document)) return Program::failure(arguments[0]);
    return Program::save(*document, arguments[1], Program::saving(arguments));
}
