#pragma once

// What nearly every test needs.

#include "state/object_obj.h"
#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"

#include <host/memory_stripe.h>
#include <host/stripe_adapters.h>
#include <pdf/errors.h>
#include <pdf/form.h>

#include <gtest/gtest.h>

namespace Support {

/// Expects that an operation gave nothing and left this code, which goes.
template <class Result>
void expectFailure(const Result& result, std::uint32_t code, const char* file = __builtin_FILE(),
                   int line = __builtin_LINE()) {
    const std::uint32_t found = Host::Error::get();
    if (result || found != code) ADD_FAILURE_AT(file, line) << "code " << found << ", not " << code;
    Host::Error::set(Host::NoError);
}

/// What failing with this code and these messages looks like, see `outcomeOf`.
inline std::string failure(std::uint32_t code, const std::string& messages = "") {
    return std::to_string(code) + " " + messages;
}

/// What an operation logged and, where it failed, its code before that.
template <class Operation>
std::string outcomeOf(Operation operation) {
    const RecordingLog log;
    Host::Error::set(Host::NoError);
    return operation() ? log.text() : failure(Host::Error::get(), log.text());
}

} // namespace Support
