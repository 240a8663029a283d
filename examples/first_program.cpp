// The program of docs/quick-start.md: all of it, with nothing from the other examples.

// page begin
#include <pdf/document.h>
#include <pdf/errors.h>
#include <pdf/tools/files.h>
#include <pdf/version.h>

#include <cstdio>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

int report(const Tools::Failure& failure) { // what failed, and where
    std::fprintf(stderr, "error %u (0x%X): %s; docs/errors.md says more\n", failure.code(),
                 failure.code(), failure.text());
    return failure.code() == ResultUnsound ? 3 : 1;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        const std::string_view first = argc == 2 ? argv[1] : "";
        const bool asked = first == "--help" || first == "--version";
        std::fprintf(asked ? stdout : stderr, "usage: first_program IN OUT\nFiles PDF %s\n",
                     libraryVersion());
        return asked ? 0 : 2;
    }

    const auto opened = Tools::open(argv[1]);
    if (!opened) return report(opened.error());
    const Host::Ref<Document>& document = *opened;
    std::printf("%zu objects, %zu pages\n", document->getObjects().size(),
                document->getPages().size());

    for (const auto& object : document->getObjects()) { // every object that is a dictionary
        if (object->valueType() != Value::Type::Dictionary) continue;
        const auto type = object->valueAsDictionary()->findAsName("Type"_str, true);
        if (type) std::printf("%u %s\n", object->id(), type->name()->utf8().c_str());
    }

    const auto saved = Tools::save(document, argv[2]);
    return saved ? 0 : report(saved.error());
}
// page end
