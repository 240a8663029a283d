#include "generator/comparison.h"

#include "support/documents.h"
#include "support/recording_log.h"

#include <pdf/import.h>

#include <cstddef>

namespace Generator {

namespace {

using namespace Libraries::Files::PDF;

struct Imported {
    std::string bytes; ///< empty where it failed
    bool isSound = false;
};

Imported imported(const std::string& file) {
    const Support::RecordingLog log;
    const auto result = Import::normalise(Support::stripeOf(file));
    return {result ? Support::contentsOf(result) : "", result && log.text().empty()};
}

std::size_t countObjects(const std::string& bytes) {
    constexpr const char* header = " 0 obj\n";
    std::size_t count = 0;
    for (std::size_t at = bytes.find(header); at != std::string::npos;
         at = bytes.find(header, at + 1))
        ++count;
    return count;
}

/// Of a file that opens.
Comparison compare(const std::string& got, const Imported& wanted) {
    if (got == wanted.bytes) return Comparison::Same;
    if (wanted.isSound || got.empty()) return Comparison::Other;
    return countObjects(got) < countObjects(wanted.bytes) ? Comparison::Less : Comparison::AsMuch;
}

} // namespace

Compared compareWithImport(const std::string& file) {
    const Imported wanted = imported(file);
    Compared compared{Comparison::Refused, !wanted.bytes.empty(), wanted.isSound, ""};
    Host::Error::set(Host::NoError);
    const Support::RecordingLog log;
    const auto document = Document::create(Support::stripeOf(file), Structure::Any);
    if (document) {
        compared.comparison = compare(imported(Support::write(*document)).bytes, wanted);
    } else {
        const std::string said = log.text();
        compared.refusal =
            std::to_string(Host::Error::get()) + ", " + said.substr(0, said.find('\n'));
    }
    return compared;
}

} // namespace Generator
