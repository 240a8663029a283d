// Recipe: documents in memory, as a database or a network hands them out.

#include "program.h"

#include <pdf/tools/editing.h>

#include <algorithm>

namespace {

using namespace Libraries::Files::PDF;
using Host::Ref;

// page begin
/// Marks a document that comes as bytes, and gives it as bytes.
std::vector<std::uint8_t> marked(std::span<const std::uint8_t> bytes, std::string_view mark) {
    const auto document = Tools::openFrom(Host::MemoryStripe::create(bytes)).value(); // of a copy
    const auto catalog = Tools::get<Dictionary>(document, document->trailer(), "Root").value();
    if (!catalog->set("Mark", Tools::nameOf(mark).value())) throw std::bad_alloc();
    const auto saved = Tools::save(document).value(); // looked at: it opens again
    return {saved->bytes().begin(), saved->bytes().end()};
}
// page end

/// What stands for the database: a row is a file.
bool store(const std::vector<std::uint8_t>& row, std::string_view path) {
    const auto target = Host::FileTarget::create(path);
    const bool taken = target && target->writeBytes(row.data(), row.size()) == row.size();
    return taken && target->commit();
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
    std::vector<std::uint8_t> result;
    const auto mark = [&] { result = marked(row, "Seen"); };
    if (const int status = Program::attempt(arguments[0], mark)) return status;
    return Program::attempt(arguments[1], [&] { return store(result, arguments[1]); });
}
