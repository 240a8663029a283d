// Recipe: documents in memory, as a database or a network hands them out.

#include "program.h"

#include <pdf/tools/editing.h>

#include <fstream>
#include <iterator>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Takes a document as bytes, marks it, and gives it as bytes. Empty with the code set on failure.
std::vector<std::uint8_t> marked(std::span<const std::uint8_t> bytes, std::string_view mark) {
    const auto source = Host::MemoryStripe::create(bytes); // a copy: the row may go
    const auto document = source ? Document::create(source) : nullptr;
    const auto catalog = document ? document->getCatalog() : nullptr;
    const auto target = catalog ? Host::MemoryStripe::create() : nullptr;
    const auto name = target ? Name::create(mark) : nullptr;
    if (!name || !catalog->valueAsDictionary()->set("Mark", name)) return {};
    if (!document->write(target)) return {};
    return {target->bytes().begin(), target->bytes().end()};
}
// page end

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(argc, argv);
    if (!arguments.are(2)) return Program::usage("recipe_vector IN OUT");
    std::ifstream in{std::string(arguments[0]), std::ios::binary};
    const std::vector<char> row{std::istreambuf_iterator<char>(in), {}};
    const auto result = marked(std::vector<std::uint8_t>(row.begin(), row.end()), "Seen");
    if (result.empty()) return Program::failure();
    std::ofstream out{std::string(arguments[1]), std::ios::binary};
    std::copy(result.begin(), result.end(), std::ostreambuf_iterator<char>(out));
    return out.flush() ? 0 : Program::failure(Host::FileNotWritten);
}
