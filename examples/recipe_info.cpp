// Recipe: reading and setting the document information.

#include "program.h"

#include <pdf/tools/editing.h>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Prints all entries, then sets one: in a dictionary that is made where there is none.
bool setInfo(Document& document, std::string_view key, std::string_view value) {
    auto info = Tools::as<Dictionary>(Tools::resolve(document, document.trailer()->find("Info")));
    if (!info) {
        info = Dictionary::create();
        const auto ref = Tools::addObject(document, info);
        if (!ref || !document.trailer()->set("Info", ref)) return false;
    }
    for (const auto& name : info->keys()) {
        const auto entry = Tools::resolve(document, info->find(name));
        const auto text = entry ? entry->asText() : nullptr;
        if (text) std::printf("%s: %s\n", name->utf8().c_str(), text->utf8().c_str());
    }
    const auto string = Tools::textString(value); // in any script
    return string && info->set(key, string);
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv,
                                       {"recipe_info IN OUT KEY VALUE",
                                        "Prints the document information and sets one entry of it.",
                                        Program::writingOptions()});
    if (!arguments.are(4)) return arguments.refuse();

    const auto how = Program::opening(arguments);
    const auto document = Program::open(arguments[0], how);
    if (!document) return Program::failed;
    if (!setInfo(*document, arguments[2], arguments[3])) return Program::failure(arguments[0]);
    if (const int status = Program::finishOutput(); status != 0) return status;
    return Program::save(*document, arguments[1], Program::saving(arguments));
}
