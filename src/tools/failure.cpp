#include "tools/failure.h"

#include <pdf/errors.h>

namespace Libraries::Files::PDF::Tools {

Failure::Failure(std::uint32_t code, std::string_view text, std::uint32_t object) noexcept
    : code_(code), object_(object), text_(errorText(code)) {
    if (text.empty()) return;
    const std::uint32_t former = Host::Error::get();
    try {
        const std::string closed(text);
        held_ = Host::TConstArray<char>::create({closed.c_str(), closed.size() + 1});
        if (held_) text_ = held_->data();
    } catch (const std::exception&) {
    }
    Host::Error::set(former);
}

void failAsBefore() {
    const std::uint32_t code = Host::Error::get();
    if (code == Host::OutOfMemory) throw std::bad_alloc();
    const bool isOfFile = code >= Host::FileNotOpened && code <= Host::NotARegularFile;
    throw FailedStep{code == Host::NoError ? std::uint32_t{Host::StepFailed} : code,
                     isOfFile ? Host::Error::reason() : ""};
}

Boundary::~Boundary() {
    if (!failed_) log_.letOut();
    Host::Error::set(code_);
}

Failure Boundary::failure() noexcept {
    failed_ = true;
    try {
        throw;
    } catch (const FailedStep& step) {
        return failure(step);
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    return Failure(Host::OutOfMemory);
}

Failure Boundary::failure(const FailedStep& step) const noexcept {
    try {
        std::string text = step.text.empty() ? log_.errors() : step.text;
        if (text.empty()) text = errorText(step.code);
        return Failure(step.code, step.where + text, step.object);
    } catch (const std::exception&) {
        return Failure(step.code);
    }
}

} // namespace Libraries::Files::PDF::Tools
