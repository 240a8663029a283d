#include "tools/legibility.h"

#include "spelling/names.h"
#include "tools/failure.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace Libraries::Files::PDF::Tools {

namespace {

constexpr unsigned deepest = 512;

/// Whether a name is read again as it is; `signs` asks that number signs encode something, too.
bool isLegibleName(const Host::String& name, bool signs) noexcept {
    const std::string_view bytes = name.narrow();
    if (!name.isNarrow() || Spelling::exactNameEnd.find(bytes) < bytes.size()) return false;
    std::size_t sign = signs ? bytes.find('#') : bytes.npos;
    for (; sign != bytes.npos; sign = bytes.find('#', sign + 1)) {
        if (Spelling::encodedCode(bytes.substr(sign)) <= 0) return false;
    }
    return true;
}

/// Looks for what cannot be read again in one value, and remembers the way to it.
class Search {
public:
    Search(bool texts, bool signs) noexcept : texts_(texts), signs_(signs) {}

    /// Whether `value` holds such a thing; `what` says what it is then.
    [[nodiscard]] bool find(const Ref<Value>& value);
    [[nodiscard]] const std::string& what() const noexcept { return what_; }
    /// The keys and indices that lead to it, each behind a space.
    [[nodiscard]] std::string way() const;

private:
    [[nodiscard]] bool findInText(const String& string);
    [[nodiscard]] bool findInName(const Ref<Host::String>& name, std::string_view kind);
    [[nodiscard]] bool findInArray(const Array& array);
    [[nodiscard]] bool findInDictionary(const Ref<Dictionary>& dictionary);

    bool texts_, signs_;
    std::string what_;
    std::vector<std::string> way_;
};

std::string Search::way() const {
    std::string all;
    for (const std::string& step : way_)
        all += " " + step;
    return all;
}

bool Search::findInText(const String& string) {
    const Ref<Host::String> text = texts_ ? string.text() : nullptr;
    if (!text || text->narrow().find('\\') == std::string_view::npos) return false;
    what_ =
        "a text with a backslash is not read again as it is: Tools::textString makes one that is";
    return true;
}

bool Search::findInName(const Ref<Host::String>& name, std::string_view kind) {
    if (!name || isLegibleName(*name, signs_)) return false;
    what_ = std::string(kind) + " \"" + name->utf8() +
            "\" is not read again as it is: Tools::nameOf and keyOf spell it";
    return true;
}

bool Search::findInArray(const Array& array) {
    for (std::uint64_t index = 0; index < array.size(); ++index) {
        way_.push_back("[" + std::to_string(index) + "]");
        if (find(array.get(index))) return true;
        way_.pop_back();
    }
    return false;
}

bool Search::findInDictionary(const Ref<Dictionary>& dictionary) {
    const auto keys = dictionary ? dictionary->keys() : nullptr;
    for (std::size_t index = 0; keys && index < keys->size(); ++index) {
        const Ref<Host::String>& key = (*keys)[index];
        if (findInName(key, "the key")) return true;
        way_.push_back("/" + key->utf8());
        if (find(quietly([&] { return dictionary->find(key); }))) return true;
        way_.pop_back();
    }
    return false;
}

bool Search::find(const Ref<Value>& value) {
    if (!value || way_.size() > deepest) return false;
    switch (value->type()) {
    case Value::Type::String: {
        const Ref<String> string = Host::cast<String>(value);
        return string && findInText(*string);
    }
    case Value::Type::Name: {
        const Ref<Name> name = Host::cast<Name>(value);
        return name && findInName(name->name(), "the name");
    }
    case Value::Type::Array: {
        const Ref<Array> array = Host::cast<Array>(value);
        return array && findInArray(*array);
    }
    case Value::Type::Dictionary:
        return findInDictionary(Host::cast<Dictionary>(value));
    case Value::Type::Stream: {
        const Ref<Stream> stream = Host::cast<Stream>(value);
        return stream && findInDictionary(stream->dict());
    }
    default:
        return false;
    }
}

Host::StackVector<Ref<Object>> usedObjects(const Document& document) {
    Host::Error::set(Host::NoError);
    auto objects = document.usedObjects();
    if (objects.empty() && Host::Error::get() == Host::OutOfMemory) throw std::bad_alloc();
    return objects;
}

} // namespace

std::string firstIllegible(const Document& document, bool all) {
    const bool texts = all || document.metOnReading(Loss::Backslashes).count == 0;
    // The exact loader reads a number sign that encodes nothing; what opens every sound file, and
    // keeps numbers, refuses it, and gave none.
    Search search(texts, document.faithfulNumbers());
    if (search.find(document.trailer())) return "Trailer" + search.way() + ": " + search.what();
    for (const Ref<Object>& object : usedObjects(document)) {
        if (!search.find(object->value())) continue;
        return "Object " + std::to_string(object->id()) + search.way() + ": " + search.what();
    }
    return {};
}

} // namespace Libraries::Files::PDF::Tools
