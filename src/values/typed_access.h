#pragma once

#include "values/failure.h"
#include "values/kind.h"

#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// The value as the kind of `Interface`. Fails as every typed accessor does.
template <class Interface>
Ref<Interface> expect(const Ref<Value>& value, const char* castMessage) noexcept {
    const Value::Type found = value->type();
    if (found != Kind<Interface>::number) {
        report(LogLevel::Error, "Expected value of type ", Kind<Interface>::number);
        return fail(UnexpectedKind, ", but got one of type ", found);
    }
    Interface* typed = as<Interface>(value);
    if (typed == nullptr) return fail(UnexpectedKind, castMessage);
    return Ref<Interface>(typed);
}

} // namespace Libraries::Files::PDF
