// Recipe: reading and setting the document information.

#include "program.h"

#include <pdf/tools/editing.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Prints all entries, then sets one: in a dictionary that is added where there is none.
bool setInfo(const Ref<Document>& document, std::string_view key, std::string_view value) {
    const auto info = Tools::getOrAdd(document, document->trailer(), "Info").value();
    for (const auto& name : info->keys()) {
        const auto entry = Tools::get<Value>(document, info, name->utf8());
        if (entry) std::puts((name->utf8() + ": " + (*entry)->asText()->utf8()).c_str());
    }
    return info->set(key, Tools::textString(value).value()); // in any script
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"recipe_info IN OUT KEY VALUE",
                                        "Prints the document information and sets one entry of it.",
                                        Program::writingOptions()});
    if (!arguments.are(4)) return arguments.refuse();
    return Program::edit(arguments, arguments[0], arguments[1], [&](const Ref<Document>& document) {
        return setInfo(document, arguments[2], arguments[3]);
    });
}
