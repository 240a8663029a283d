// Recipe: documents in memory, as a database or a network hands them out.

#include "program.h"

#include <pdf/tools/editing.h>

#include <iterator>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Takes a document as bytes, marks it, and gives it as bytes. Empty with the code set on failure,
/// also where the result would not be a sound document.
std::vector<std::uint8_t> marked(std::span<const std::uint8_t> bytes, std::string_view mark) {
    const auto source = Host::MemoryStripe::create(bytes); // a copy: the row may go
    const auto document = source ? Document::create(source, Structure::Any) : nullptr;
    const auto catalog = document ? document->getCatalog() : nullptr;
    const auto target = catalog ? Host::MemoryStripe::create() : nullptr;
    const auto name = target ? Name::create(mark) : nullptr;
    if (!name || !catalog->valueAsDictionary()->set("Mark", name)) return {};
    for (const auto& loss : Tools::losses(*document)) {
        if (!Tools::isGrave(loss.kind)) continue;
        Host::Error::set(ResultUnsound);
        return {};
    }
    if (!document->write(target) || !Document::create(target)) return {}; // it opens again
    return {target->bytes().begin(), target->bytes().end()};
}
// page end

/// What stands for the database: a row is a file. Gives the exit status.
int store(const std::vector<std::uint8_t>& row, std::string_view path) {
    const auto target = Host::FileTarget::create(path);
    const bool taken = target && target->writeBytes(row.data(), row.size()) == row.size();
    return taken && target->commit() ? Program::done : Program::failure(path);
}

} // namespace

int main(int argc, char** argv) {
    const Program::Arguments arguments(
        argc, argv,
        {"recipe_vector IN OUT", "Marks the document in IN, in memory, and gives OUT."});
    if (!arguments.are(2)) return arguments.refuse();

    const auto file = Host::FileSource::open(arguments[0]);
    if (!file) return Program::failure(arguments[0]);
    std::vector<std::uint8_t> row(file->size());
    if (file->readBytes(row.data(), row.size()) != row.size())
        return Program::failure(arguments[0]);
    const auto result = marked(row, "Seen");
    return result.empty() ? Program::failure(arguments[0]) : store(result, arguments[1]);
}
