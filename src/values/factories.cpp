#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"

#include <pdf/values.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF {

Ref<Null> Null::create() noexcept {
    return Host::make<NullObj>();
}

Ref<Boolean> Boolean::create(bool value) noexcept {
    return Host::make<BooleanObj>(value);
}

Ref<Number> Number::create(std::int64_t integer, std::uint64_t fraction) noexcept {
    return Host::make<NumberObj>(integer, fraction);
}

Ref<ObjectRef> ObjectRef::create(std::uint32_t id, std::uint16_t generation) noexcept {
    return Host::make<ObjectRefObj>(id, generation);
}

Ref<String> String::create(std::string_view utf8) noexcept {
    Ref<Host::String> text = Host::String::create(utf8);
    return text ? create(std::move(text)) : nullptr;
}

Ref<Name> Name::create(std::string_view utf8) noexcept {
    Ref<Host::String> name = Host::String::create(utf8);
    return name ? create(std::move(name)) : nullptr;
}

Ref<Dictionary> Dictionary::create(std::initializer_list<Entry> entries) noexcept {
    const auto lacksValue = [](const Entry& entry) { return !entry.second; };
    if (std::ranges::any_of(entries, lacksValue)) return nullptr;
    const auto lacksKey = [](const Entry& entry) { return entry.first.empty(); };
    if (std::ranges::any_of(entries, lacksKey)) return fail(InvalidArgument);
    return Host::guarded([&]() -> Ref<Dictionary> {
        DictionaryObj::Entries made;
        made.reserve(entries.size());
        for (const auto& [key, value] : entries)
            made.push_back({orThrow(Host::String::create(key)), value});
        return makeOrThrow<DictionaryObj>(std::move(made));
    });
}

} // namespace Libraries::Files::PDF
