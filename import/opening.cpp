#include "opening.h"

#include "report.h"

#include <pdf/errors.h>

#include <string>
#include <vector>

namespace Libraries::Files::PDF::Import {

namespace {

/// A damaged document may have one for each of its bytes.
constexpr std::size_t mostReported = 100;

/// Null where the password is not that of the document.
std::shared_ptr<QPDF> tryPassword(const std::shared_ptr<Source>& source,
                                  const std::string& password) {
    std::shared_ptr<QPDF> document = QPDF::create();
    document->setSuppressWarnings(true);
    try {
        document->processInputSource(source, password.c_str());
    } catch (const QPDFExc& reason) {
        source->check();
        if (reason.getErrorCode() == qpdf_e_password) return nullptr;
        const bool unknown = reason.getErrorCode() == qpdf_e_unsupported;
        fail(unknown ? EncryptionUnknown : BeyondRepair, reason.what());
    }
    source->check();
    return document;
}

} // namespace

std::shared_ptr<QPDF> load(const std::shared_ptr<Source>& source, std::string_view password) {
    // The one given comes first; older documents take it in other encodings.
    auto passwords = QUtil::possible_repaired_encodings(std::string(password));
    if (!password.empty()) passwords.emplace_back();
    for (const std::string& spelled : passwords) {
        if (auto document = tryPassword(source, spelled)) return document;
    }
    fail(PasswordNeeded);
}

void Repairs::report() {
    if (!document_.anyWarnings()) return;
    for (const QPDFExc& repair : document_.getWarnings()) {
        const std::string_view words = repair.what();
        if (words.find("bad_alloc") != std::string_view::npos) throw std::bad_alloc();
        if (++count_ <= mostReported) warn(words);
    }
}

void Repairs::finish() const {
    if (count_ <= mostReported) return;
    warn("there are " + std::to_string(count_ - mostReported) + " more warnings");
}

} // namespace Libraries::Files::PDF::Import
