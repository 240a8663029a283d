#pragma once

#include <pdf/document.h>

#include <functional>

namespace Fuzzing {

using ValueVisitor = std::function<void(const Host::Ref<Libraries::Files::PDF::Value>&)>;

/// Visits a value and everything below it; a stream's dictionary counts as below the stream.
void visit(const Host::Ref<Libraries::Files::PDF::Value>& value, const ValueVisitor& visitor);

/// Visits all values of a document, those of the trailer first.
void visitAll(const Libraries::Files::PDF::Document& document, const ValueVisitor& visitor);

/// The streams of a document, in table order.
[[nodiscard]] std::vector<Host::Ref<Libraries::Files::PDF::Stream>>
streamsOf(const Libraries::Files::PDF::Document& document);

/// Uses every operation that only looks: navigation, text forms, comparison, typed access.
void lookAtEverything(const Libraries::Files::PDF::Document& document);

} // namespace Fuzzing
