// The program of docs/quick-start.md: all of it, with nothing from the other examples.

// page begin
#include <host/files.h>
#include <pdf/document.h>
#include <pdf/errors.h>

#include <cstdio>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

int failure() {
    const std::uint32_t code = Host::Error::get();
    std::fprintf(stderr, "error %u (0x%X): %s\n", code, code, errorText(code));
    return 1;
}

int main(int argc, char** argv) {
    if (argc != 3) return 2;

    const auto source = Host::FileSource::open(argv[1]);
    const auto document = source ? Document::create(source) : nullptr;
    if (!document) return failure();
    std::printf("%zu objects, %zu pages\n", document->getObjects().size(),
                document->getPages().size());

    for (const auto& object : document->getObjects()) { // every object that is a dictionary
        if (object->valueType() != Value::Type::Dictionary) continue;
        const auto type = object->valueAsDictionary()->findAsName("Type"_str, true);
        if (type) std::printf("%u %s\n", object->id(), type->name()->utf8().c_str());
    }

    const auto target = Host::FileTarget::create(argv[2]);
    if (!target || !document->write(target) || !target->commit()) return failure();
}
// page end
