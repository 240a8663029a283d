#pragma once

#include "writer/output.h"

#include <host/string.h>
#include <pdf/values.h>

#include <functional>
#include <string_view>
#include <utility>

namespace Libraries::Files::PDF {

/// Turns values into PDF syntax (ISO 32000-1, 7.3), in one canonical form: single spaces, no line
/// breaks, names as stored, numbers by their two parts.
///
/// A value that fails leaves nothing behind in the output, except where stream data has gone out.
/// Failures are logged and set the code.
class Serializer {
public:
    /// Gives a stream's data as it is encoded; null on failure.
    using StreamData = std::function<Ref<Interfaces::Stripe>(const Ref<Stream>&)>;

    Serializer(Output& output, std::string_view lineEnding, StreamData streamData)
        : output_(output), lineEnding_(lineEnding), streamData_(std::move(streamData)) {}

    bool write(const Ref<Value>& value);

private:
    bool writeValue(Value& value);
    bool writeName(const Name& name);
    bool writeKey(const Host::String& key);
    bool writeNumber(const Number& number);
    bool writeString(const String& string);
    bool writeReference(const ObjectRef& ref);
    bool writeArray(const Array& array);
    bool writeDictionary(const Dictionary& dict);
    bool writeEntry(const Host::String& key, Value* value);
    bool writeStream(Stream& stream);
    bool writeData(Interfaces::Stripe& data);

    Output& output_;
    std::string_view lineEnding_;
    StreamData streamData_;
    unsigned depth_ = 0;
};

} // namespace Libraries::Files::PDF
