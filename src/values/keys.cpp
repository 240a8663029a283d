#include "values/dictionary.h"

#include <host/string.h>
#include <pdf/values.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace Libraries::Files::PDF {

namespace {

/// A key for one look into a dictionary. For our own dictionaries a key in ASCII is not copied. A
/// dictionary of an application's own class gets a copy, since it might keep it.
class Key {
public:
    Key(const Dictionary& dictionary, std::string_view utf8) noexcept {
        const bool ours = typeid(dictionary) == typeid(DictionaryObj);
        const auto ascii = [](char code) { return static_cast<unsigned char>(code) < 0x80; };
        if (!ours || utf8.size() > Host::String::maxLength || !std::ranges::all_of(utf8, ascii)) {
            key_ = Host::String::create(utf8);
        } else {
            borrowed_.emplace(utf8.data(), static_cast<std::uint32_t>(utf8.size()));
            key_ = Ref<Host::String>(&*borrowed_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() = default;

    /// Null, with the code set, when memory is exhausted.
    [[nodiscard]] const Ref<Host::String>& get() const noexcept { return key_; }

private:
    std::optional<Host::String> borrowed_;
    Ref<Host::String> key_; // last, to be destroyed first: it may hold the text above
};

template <class Look>
auto lookUnder(const Dictionary& dictionary, std::string_view utf8, Look look) noexcept
    -> decltype(look(std::declval<const Ref<Host::String>&>())) {
    const Key key(dictionary, utf8);
    if (!key.get()) return nullptr;
    return look(key.get());
}

} // namespace

Ref<Value> Dictionary::find(std::string_view key) const noexcept {
    return lookUnder(*this, key, [this](const auto& text) { return find(text); });
}

bool Dictionary::set(std::string_view key, Ref<Value> value) noexcept {
    Ref<Host::String> text = Host::String::create(key);
    return text && set(std::move(text), std::move(value));
}

Ref<ObjectRef> Dictionary::findAsObjectRef(std::string_view key, bool quiet) const noexcept {
    return lookUnder(*this, key, [&](const auto& text) { return findAsObjectRef(text, quiet); });
}

Ref<Array> Dictionary::findAsArray(std::string_view key, bool quiet) const noexcept {
    return lookUnder(*this, key, [&](const auto& text) { return findAsArray(text, quiet); });
}

Ref<Dictionary> Dictionary::findAsDictionary(std::string_view key, bool quiet) const noexcept {
    return lookUnder(*this, key, [&](const auto& text) { return findAsDictionary(text, quiet); });
}

Ref<Name> Dictionary::findAsName(std::string_view key, bool quiet) const noexcept {
    return lookUnder(*this, key, [&](const auto& text) { return findAsName(text, quiet); });
}

Ref<Number> Dictionary::findAsNumber(std::string_view key, bool quiet) const noexcept {
    return lookUnder(*this, key, [&](const auto& text) { return findAsNumber(text, quiet); });
}

Ref<String> Dictionary::findAsString(std::string_view key, bool quiet) const noexcept {
    return lookUnder(*this, key, [&](const auto& text) { return findAsString(text, quiet); });
}

} // namespace Libraries::Files::PDF
