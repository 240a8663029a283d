// Prints the fields of a document's form, one for each line: full path, kind, flags, value and,
// where there is a choice, what can be chosen, with tabs between them. What a field inherits counts
// as its own.

#include "program.h"

#include <pdf/tools/forms.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

const char* text(Field::Kind kind) {
    static constexpr const char* names[] = {"plain", "button", "text", "choice", "signature"};
    return names[static_cast<std::size_t>(kind) - 1];
}

// Names and values may hold what would break up a line.
std::string onOneLine(const std::string& text) {
    std::string result;
    for (const char code : text) {
        if (code == '\\') {
            result += "\\\\";
        } else if (code == '\n') {
            result += "\\n";
        } else if (code == '\r') {
            result += "\\r";
        } else if (code == '\t') {
            result += "\\t";
        } else {
            result += code;
        }
    }
    return result;
}

/// What can be chosen: values, and what they show where that is something else.
std::string optionsText(const std::vector<Tools::FieldOption>& options) {
    std::vector<std::string> texts;
    for (const Tools::FieldOption& option : options) {
        const bool same = option.text == option.value;
        texts.push_back(same ? option.value : option.value + " (" + option.text + ")");
    }
    return Program::joined(texts);
}

void print(const Tools::FormEditor& form, const Ref<Field>& field) {
    const auto path = field->fullName();
    const std::string values = onOneLine(Program::joined(form.values(field).value()));
    const std::string options = onOneLine(optionsText(form.options(field).value()));
    std::printf("%s\t%s\t0x%X\t%s%s%s\n", path ? onOneLine(path->utf8()).c_str() : "",
                text(form.kind(field).value()), form.flags(field).value(), values.c_str(),
                options.empty() ? "" : "\t", options.c_str());
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"fields FILE", "Prints the fields of the form: path, kind, flags, value and choices.",
         Program::openingOptions()});
    if (!arguments.are(1)) return arguments.refuse();
    return Program::look(arguments, arguments[0], [](const Ref<Document>& document) {
        const auto form = Tools::FormEditor::of(document).value();
        for (const Ref<Field>& field : form)
            print(form, field);
        // A form of which a part could not be built is there, but says so.
        if (const auto& why = form.incomplete()) throw Tools::BadResultAccess(*why);
    });
}
