// Sets the values of form fields. An empty value takes the value of a text or choice field away.

#include "program.h"

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Host::Ref;

Ref<Host::String> text(std::string_view utf8) {
    return Host::String::create(utf8);
}

// A backslash in text is written as other readers want it, and would not be read again here. As
// UTF-16 behind a byte-order mark, like all text that is not ASCII, everybody reads it.
Ref<String> stringOf(std::string_view value) {
    auto string = String::create(text(value));
    if (!string || !string->text() || value.find('\\') == std::string_view::npos) return string;
    std::vector<unsigned char> bytes = {0xFE, 0xFF};
    for (const char code : value)
        bytes.insert(bytes.end(), {0, static_cast<unsigned char>(code)});
    return String::create(Host::TConstArray<unsigned char>::create(bytes));
}

// What a button consists of on the page: its kids, or itself.
std::vector<Ref<Field>> widgets(const Ref<Field>& button) {
    std::vector<Ref<Field>> result;
    for (std::uint64_t index = 0; index < button->childCount(); ++index)
        result.push_back(button->child(index));
    if (result.empty()) result.push_back(button);
    return result;
}

bool canShow(const Field& widget, const Ref<Name>& state) {
    const auto looks = Host::cast<Dictionary>(widget.normalAppearance());
    return looks && looks->find(state->name());
}

// A button's value says what it is set to, its state what is shown. Of radio buttons the one that
// has the value among its states shows it, the others are off.
bool fillButton(const Ref<Field>& field, Fields::Button& button, std::string_view value) {
    const auto name = Name::create(text(value));
    const auto off = Name::create("Off"_str);
    if (!name || !off || !button.setValue(name)) return false;

    bool shown = name->equal(off);
    for (const auto& widget : widgets(field)) {
        const bool on = canShow(*widget, name);
        if (!widget->dictionary()->set("AS"_str, on ? name : off)) return false;
        shown = shown || on;
    }
    if (!shown) Host::Error::set(InvalidArgument);
    return shown;
}

// A choice may hold the places of what is chosen among its options as well. Viewers go by these,
// whatever the value says.
bool fillChoice(Fields::Choice& choice, const Ref<String>& value) {
    return choice.setValue(value) && choice.dictionary()->set("I"_str, nullptr);
}

bool fill(Form& form, std::string_view path, std::string_view value) {
    const auto field = form.fieldByPath(text(path));
    if (!field) return false;
    if (const auto button = Host::cast<Fields::Button>(field)) {
        return fillButton(field, *button, value);
    }
    const auto string = value.empty() ? nullptr : stringOf(value);
    if (!value.empty() && !string) return false; // null would take the value away
    // What a text or choice field looks like is not rebuilt here: the viewer is asked to do it.
    if (const auto input = Host::cast<Fields::Text>(field)) {
        return input->setValue(string) && form.setNeedAppearances(true);
    }
    if (const auto choice = Host::cast<Fields::Choice>(field)) {
        return fillChoice(*choice, string) && form.setNeedAppearances(true);
    }
    Host::Error::set(NotSupported);
    return false;
}

} // namespace

int main(int argc, char** argv) {
    static constexpr const char* usage =
        "fill [--no-verify] [--force] [--faithful] [--any [--password P]] IN OUT PATH=VALUE...";
    Program::Arguments arguments(argc, argv);
    const Program::Saving saving = Program::takeSaving(arguments);
    const Program::Opening how = arguments.takeOpening();
    const std::size_t count = arguments.size();
    if (count < 3 || !arguments.are(count)) return Program::usage(usage);
    for (std::size_t index = 2; index < count; ++index) {
        const std::size_t path = arguments[index].find('=');
        if (path == 0 || path == std::string_view::npos) return Program::usage(usage);
    }

    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    const auto form = document->form();
    if (!form) return Program::failure();
    for (std::size_t index = 2; index < count; ++index) {
        const std::string_view argument = arguments[index];
        const std::size_t path = argument.find('=');
        if (fill(*form, argument.substr(0, path), argument.substr(path + 1))) continue;
        const int status = Program::failure();
        std::fprintf(stderr, "not set: %s\n", std::string(argument).c_str());
        return status;
    }
    return Program::save(*document, arguments[1], saving);
}
