#pragma once

#include "state/document_state.h"
#include "writer/output.h"

#include <host/string.h>
#include <pdf/values.h>

namespace Libraries::Files::PDF {

/// Turns values into PDF syntax (ISO 32000-1, 7.3), in one canonical form: single spaces, no line
/// breaks, names as stored, numbers by their two parts.
///
/// A value that fails leaves nothing behind in the output, except where stream data has gone out.
/// Failures are logged and set the code.
class Serializer {
public:
    /// For values of the document whose state `state` is.
    Serializer(Output& output, const DocumentState& state) noexcept
        : output_(output), state_(state) {}

    bool write(const Ref<Value>& value);
    /// The value of an object, which stays packed if it is.
    bool write(const ObjectTable::Slot& slot);

private:
    bool writeValue(Value& value);
    /// Writes the value under the interface of its kind; fails with `message` where it has another.
    template <class Interface, auto write>
    bool writeAs(Value& value, const char* message);
    bool writeName(const Name& name);
    bool writeKey(const Host::String& key);
    bool writeBoolean(const Boolean& boolean);
    bool writeNumber(const Number& number);
    bool writeString(const String& string);
    bool writeReference(const ObjectRef& ref);
    bool writeArray(const Array& array);
    bool writeDictionary(const Dictionary& dict);
    bool writeEntry(const Host::String& key, Value* value);
    bool writeStream(Stream& stream);
    bool writeNull(const Null& null);
    bool writePacked(const PackedValue& packed);
    bool writeDataOf(Interfaces::Stripe& data);
    bool writeData(Interfaces::Stripe& data);

    Output& output_;
    const DocumentState& state_;
    unsigned depth_ = 0;
};

} // namespace Libraries::Files::PDF
