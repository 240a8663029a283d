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

/// Says what was not set, and what the field takes.
int notSet(const Document& document, const Form& form, const Setting& setting) {
    const int status = Program::failure();
    const std::string path(setting.path);
    std::fprintf(stderr, "not set: %s=%s\n", path.c_str(),
                 std::string(setting.values.front()).c_str());
    const auto name = Host::String::create(setting.path);
    const auto field = name ? form.fieldByPath(name) : nullptr;
    if (!field) return status;
    for (const Tools::FieldOption& option : Tools::fieldOptions(document, *field)) {
        const bool same = option.text == option.value;
        std::fprintf(stderr, "%s takes: %s%s%s\n", path.c_str(), option.value.c_str(),
                     same ? "" : ", which shows ", same ? "" : option.text.c_str());
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    static constexpr const char* usage = "fill [--flatten] [--no-verify] [--force] [--faithful] "
                                         "[--any [--password P]] IN OUT PATH=VALUE...";
    Program::Arguments arguments(argc, argv);
    const bool flatten = arguments.take("--flatten");
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    const std::size_t count = arguments.size();
    const auto settings = settingsOf(arguments);
    const bool enough = count > 2 || (flatten && count == 2);
    if (!enough || !arguments.are(count) || !settings) return Program::usage(usage);

    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    const auto form = Tools::openForm(*document);
    if (!form) return Program::failure();
    for (const Setting& setting : *settings) {
        const Tools::Filled filled = fill(*document, *form, setting);
        if (filled == Tools::Filled::Failed) return notSet(*document, *form, setting);
        if (filled == Tools::Filled::Shown) continue;
        std::fprintf(stderr,
                     "warning: %s: its font cannot show the value; viewers are asked to do it\n",
                     std::string(setting.path).c_str());
    }
    if (flatten && !Tools::flattenForm(*document)) return Program::failure();
    return Program::save(*document, arguments[1], saving);
}
