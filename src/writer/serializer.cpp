#include "writer/serializer.h"

#include "state/raw_data.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/nesting.h"
#include "values/scalars.h"
#include "writer/strings.h"

#include <algorithm>
#include <limits>

namespace Libraries::Files::PDF {

bool Serializer::write(const Ref<Value>& value) {
    if (!value) return fail(NullArgument);
    const std::uint64_t start = output_.offset();
    if (writeValue(*value)) return true;
    output_.takeBack(start);
    return false;
}

bool Serializer::write(const ObjectTable::Slot& slot) {
    if (slot.touched() || slot.packed().unwritable) return write(state_.objects.value(slot));
    const PackedValue packed = slot.packed();
    if (packed.kind != Value::Type::Stream) return writePacked(packed);

    const Ref<Interfaces::Stripe> data = viewOfPacked(state_, packed);
    if (!data) return write(state_.objects.value(slot));
    const std::uint64_t start = output_.offset();
    if (writePacked(packed) && writeDataOf(*data)) return true;
    output_.takeBack(start);
    return false;
}

/// Of a number with a spelling of its own either that is written or what its parts say.
bool Serializer::writePacked(const PackedValue& packed) {
    std::string_view bytes = packed.bytes;
    while (packed.spelled) {
        const std::size_t spelling = bytes.find('\t');
        if (spelling == std::string_view::npos) break;
        output_.append(bytes.substr(0, spelling));
        const std::size_t number = bytes.find('\n', spelling);
        if (state_.faithfulNumbers) {
            output_.append(bytes.substr(spelling + 1, number - spelling - 1));
            bytes.remove_prefix(std::min(bytes.find(' ', number), bytes.size()));
        } else {
            bytes.remove_prefix(number + 1);
        }
    }
    return output_.append(bytes);
}

bool Serializer::writeValue(Value& value) {
    switch (value.type()) {
    case Value::Type::Name:
        return writeAs<Name, &Serializer::writeName>(value, "Failed to cast name to Name");
    case Value::Type::Boolean:
        return writeAs<Boolean, &Serializer::writeBoolean>(value,
                                                           "Failed to cast boolean to Boolean");
    case Value::Type::Number:
        return writeAs<Number, &Serializer::writeNumber>(value, "Failed to cast number to Number");
    case Value::Type::String:
        return writeAs<String, &Serializer::writeString>(value, "Failed to cast string to String");
    case Value::Type::ObjectRef:
        return writeAs<ObjectRef, &Serializer::writeReference>(
            value, "Failed to cast object reference to ObjectRef");
    case Value::Type::Dictionary:
        return writeAs<Dictionary, &Serializer::writeDictionary>(
            value, "Failed to convert dictionary to Dictionary");
    case Value::Type::Stream:
        return writeAs<Stream, &Serializer::writeStream>(value,
                                                         "Failed to convert stream to Stream");
    case Value::Type::Array:
        return writeAs<Array, &Serializer::writeArray>(value, "Failed to cast array to Array");
    case Value::Type::Null:
        return writeAs<Null, &Serializer::writeNull>(value, "Failed to cast value to Null");
    default:
        return fail(InvalidArgument, "Writing not supported for value of type ", value.type());
    }
}

template <class Interface, auto write>
bool Serializer::writeAs(Value& value, const char* message) {
    Interface* const typed = as<Interface>(&value);
    return typed != nullptr ? (this->*write)(*typed) : fail(InvalidArgument, message);
}

bool Serializer::writeName(const Name& name) {
    const Ref<Host::String> text = name.name();
    return text ? writeKey(*text) : fail(InvalidArgument, "Failed to cast name to Name");
}

bool Serializer::writeKey(const Host::String& key) {
    if (key.isNarrow()) return output_.appendBetween("/", key.narrow(), {});
    return output_.append('/') && writeCodes(output_, key);
}

bool Serializer::writeBoolean(const Boolean& boolean) {
    return output_.append(boolean.value() ? "true" : "false");
}

bool Serializer::writeNumber(const Number& number) {
    if (state_.faithfulNumbers) {
        if (const auto spelling = number.spelling()) return writeCodes(output_, *spelling);
    }
    const std::uint64_t fraction = number.fraction();
    return output_.appendNumber(number.integer()) &&
           (fraction == 0 || (output_.append('.') && output_.appendNumber(fraction)));
}

bool Serializer::writeString(const String& string) {
    if (const auto text = string.text()) return writeLiteralString(output_, *text);
    if (const auto bytes = string.bytes()) return writeHexString(output_, bytes->span());
    return fail(InvalidArgument, "Invalid Stirng value");
}

bool Serializer::writeReference(const ObjectRef& ref) {
    return output_.appendNumber(std::uint64_t{ref.id()}) && output_.append(' ') &&
           output_.appendNumber(std::uint64_t{ref.generation()}) && output_.append(" R");
}

bool Serializer::writeArray(const Array& array) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep() || !output_.append('[')) return fail(StepFailed);
    for (std::uint64_t index = 0; index < array.size(); ++index) {
        const Ref<Value> element = array.get(index);
        if (!element) return fail(InvalidArgument, "Array element is NULL: ", index);
        if (!output_.append(' ') || !writeValue(*element)) {
            return fail(StepFailed, "Failed to convert value of array element to buffer ", index);
        }
    }
    return output_.append(" ]");
}

bool Serializer::writeDictionary(const Dictionary& dict) {
    const Nesting nesting(depth_);
    if (nesting.tooDeep() || !output_.append("<<")) return fail(StepFailed);
    if (typeid(dict) == typeid(DictionaryObj)) {
        for (const auto& entry : static_cast<const DictionaryObj&>(dict).entries()) {
            if (!writeEntry(*entry.key, entry.value.get())) return false;
        }
        return output_.append(" >>");
    }
    const auto keys = dict.keys();
    if (!keys) return fail(InvalidArgument, "Failed to retrieve keys of dictionary");
    for (std::size_t index = 0; index < keys->size(); ++index) {
        const Ref<Host::String>& key = (*keys)[index];
        if (!key) return fail(InvalidArgument, "Failed to retrieve dictionary key ", index);
        if (!writeEntry(*key, dict.find(key).get())) return false;
    }
    return output_.append(" >>");
}

bool Serializer::writeEntry(const Host::String& key, Value* value) {
    if (value == nullptr) {
        return fail(InvalidArgument, "Failed to retrieve value for dictionary key ", key);
    }
    const bool keyed = key.isNarrow() ? output_.appendBetween(" /", key.narrow(), " ")
                                      : output_.append(' ') && writeKey(key) && output_.append(' ');
    if (!keyed || !writeValue(*value)) {
        return fail(StepFailed, "Failed to convert value of dictionary key to buffer: ", key);
    }
    return true;
}

bool Serializer::writeStream(Stream& stream) {
    const Ref<Dictionary> dict = stream.dict();
    if (!dict) return fail(InvalidArgument, "Stream has no dictionary");
    const Ref<Interfaces::Stripe> data = rawData(state_, Ref<Stream>(&stream));
    if (!data) return fail(InvalidArgument, "Failed to retrieve data of stream");
    if (!writeDictionary(*dict)) {
        return fail(StepFailed, "Failed to convert stream dictionary to buffer");
    }
    return writeDataOf(*data);
}

bool Serializer::writeNull(const Null& /*null*/) {
    return output_.append("null");
}

bool Serializer::writeDataOf(Interfaces::Stripe& data) {
    if (!output_.append(state_.lineEnding) || !output_.append("stream")) return fail(StepFailed);
    if (data.size() > std::numeric_limits<std::uint32_t>::max()) {
        return fail(OutOfRange, "Stream is too large");
    }
    return writeData(data) && output_.append("endstream");
}

bool Serializer::writeData(Interfaces::Stripe& data) {
    if (data.size() == 0) return output_.append(state_.lineEnding);
    if (data.position(0) != 0) return fail(StepFailed, "Failed to navigate stream data");
    std::uint8_t last = 0;
    if (!output_.append(state_.lineEnding) || !output_.appendData(data, last)) {
        return fail(StepFailed, "Failed to retrieve stream data");
    }
    return last == '\r' || last == '\n' || output_.append(state_.lineEnding);
}

} // namespace Libraries::Files::PDF
