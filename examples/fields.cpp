// Prints the fields of a document's form, one for each line: full path, kind, flags and value, with
// tabs between them.

#include "program.h"

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

template <class T>
std::string textOf(const Ref<T>& value) {
    const auto text = value ? value->asText() : nullptr;
    return text ? text->utf8() : "";
}

// One string, or the strings that are selected together.
std::string choiceText(const Ref<Value>& value) {
    const auto array = Host::cast<Array>(value);
    if (!array) return textOf(value);
    std::string result;
    for (std::uint64_t index = 0; index < array->size(); ++index) {
        if (index != 0) result += ", ";
        result += textOf(array->get(index));
    }
    return result;
}

std::string valueText(const Ref<Field>& field) {
    if (const auto button = Host::cast<Fields::Button>(field)) return textOf(button->value());
    if (const auto input = Host::cast<Fields::Text>(field)) return textOf(input->value());
    if (const auto choice = Host::cast<Fields::Choice>(field)) return choiceText(choice->value());
    return "";
}

void print(const Ref<Field>& field) {
    const auto path = field->fullName();
    std::printf("%s\t%s\t0x%X\t%s\n", path ? onOneLine(path->utf8()).c_str() : "",
                text(field->fieldType()), field->flags(), onOneLine(valueText(field)).c_str());
}

void print(const Form& form) {
    std::vector<Ref<Field>> waiting;
    for (std::uint64_t index = form.fieldCount(); index-- > 0;)
        waiting.push_back(form.field(index));
    while (!waiting.empty()) {
        const Ref<Field> field = waiting.back();
        waiting.pop_back();
        print(field);
        for (std::uint64_t index = field->childCount(); index-- > 0;)
            waiting.push_back(field->child(index));
    }
}

} // namespace

int main(int argc, char** argv) {
    Program::Arguments arguments(argc, argv);
    const Program::Opening how = arguments.takeOpening();
    if (!arguments.are(1)) return Program::usage("fields [--any [--password P]] FILE");

    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;

    // A form of which a part could not be built is there, but says so.
    Host::Error::set(Host::NoError);
    const auto form = document->form();
    const std::uint32_t code = Host::Error::get();
    if (!form) return Program::failure(code);

    print(*form);
    if (const int status = Program::finishOutput(); status != 0) return status;
    return code == Host::NoError ? 0 : Program::failure(code);
}
