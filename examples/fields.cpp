// Prints the fields of a document's form, one for each line: full path, kind, flags, value and,
// where there is a choice, what can be chosen, with tabs between them.

#include "program.h"

#include <pdf/tools/filling.h>

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
std::string optionsText(const Document& document, const Field& field) {
    std::vector<std::string> texts;
    for (const Tools::FieldOption& option : Tools::fieldOptions(document, field)) {
        const bool same = option.text == option.value;
        texts.push_back(same ? option.value : option.value + " (" + option.text + ")");
    }
    return Program::joined(texts);
}

void print(const Document& document, const Ref<Field>& field) {
    const auto path = field->fullName();
    const std::string options = optionsText(document, *field);
    std::printf("%s\t%s\t0x%X\t%s%s%s\n", path ? onOneLine(path->utf8()).c_str() : "",
                text(field->fieldType()), field->flags(),
                onOneLine(Program::joined(Tools::fieldValues(document, *field))).c_str(),
                options.empty() ? "" : "\t", onOneLine(options).c_str());
}

void print(const Document& document, const Form& form) {
    std::vector<Ref<Field>> waiting;
    for (std::uint64_t index = form.fieldCount(); index-- > 0;)
        waiting.push_back(form.field(index));
    while (!waiting.empty()) {
        const Ref<Field> field = waiting.back();
        waiting.pop_back();
        print(document, field);
        for (std::uint64_t index = field->childCount(); index-- > 0;)
            waiting.push_back(field->child(index));
    }
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"fields FILE", "Prints the fields of the form: path, kind, flags, value and choices.",
         Program::openingOptions()});
    if (!arguments.are(1)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;

    // A form of which a part could not be built is there, but says so.
    Host::Error::set(Host::NoError);
    const auto form = Tools::openForm(*document);
    const std::uint32_t code = Host::Error::get();
    if (!form && code == FormNotFound)
        return Program::failure(arguments[0], code, "it has no form",
                                "there is nothing to fill in");
    if (!form) return Program::failure(arguments[0], how);

    print(*document, *form);
    if (const int status = Program::finishOutput(); status != 0) return status;
    if (code == Host::NoError) return Program::done;
    return Program::failure(arguments[0], code, "the fields that were printed are not all", "");
}
