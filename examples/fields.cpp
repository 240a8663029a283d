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

/// Prints fields. Widgets, which have no name, repeat what their field holds; where there are many
/// that would be far more than the file.
class Listing {
public:
    explicit Listing(const Document& document) : document_(document) {}

    void print(const Field& field) {
        constexpr std::size_t mostRepeated = 1 << 20;
        const bool isWidget = field.parent() && !field.partialName();
        std::string values, options;
        if (!isWidget || repeated_ < mostRepeated) {
            values = onOneLine(Program::joined(Tools::fieldValues(document_, field)));
            options = onOneLine(optionsText(document_, field));
        }
        if (isWidget) repeated_ += values.size() + options.size();
        const auto path = field.fullName();
        std::printf("%s\t%s\t0x%X\t%s%s%s\n", path ? onOneLine(path->utf8()).c_str() : "",
                    text(field.fieldType()), field.flags(), values.c_str(),
                    options.empty() ? "" : "\t", options.c_str());
    }

private:
    const Document& document_;
    std::size_t repeated_ = 0; ///< bytes
};

void print(const Document& document, const Form& form) {
    Listing listing(document);
    std::vector<Ref<Field>> waiting;
    for (std::uint64_t index = form.fieldCount(); index-- > 0;)
        waiting.push_back(form.field(index));
    while (!waiting.empty()) {
        const Ref<Field> field = waiting.back();
        waiting.pop_back();
        listing.print(*field);
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
    if (!form) return Program::failure(arguments[0]);

    print(*document, *form);
    if (const int status = Program::finishOutput(); status != 0) return status;
    if (code == Host::NoError) return Program::done;
    return Program::failure(arguments[0], code, "the fields that were printed are not all", "");
}
