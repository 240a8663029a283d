#include "tools/forms/shared_entries.h"

#include "tools/failure.h"

#include <pdf/errors.h>

#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

std::uint64_t sizeOf(const TextStyle& style) noexcept {
    return style.fontName.size();
}

std::uint64_t sizeOf(const ChoiceOptions& options) noexcept {
    std::uint64_t size = 0;
    for (const ChoiceOption& option : options.list())
        size += option.text.size();
    return size;
}

std::uint64_t sizeOf(const Selection& selection) noexcept {
    std::uint64_t size = 0;
    for (const std::string& text : selection.texts)
        size += text.size();
    return size;
}

} // namespace

template <class T>
const T& SharedEntries::find(Known<T>& known, const FieldEntries& field, std::string_view key) {
    Ref<Value> entry = field.find(key);
    const Value* const place = entry.get();
    auto found = known.find(place);
    if (found == known.end()) {
        found = known.try_emplace(place, field, std::move(entry)).first;
        read(sizeOf(found->second.held));
    }
    return found->second.held;
}

const TextStyle& SharedEntries::style(const FieldEntries& field) {
    return find(styles_, field, "DA");
}

const ChoiceOptions& SharedEntries::options(const FieldEntries& field) {
    return find(options_, field, "Opt");
}

const Selection& SharedEntries::selection(const FieldEntries& field) {
    return find(selections_, field, "V");
}

std::optional<std::size_t> SharedEntries::firstOf(const ChoiceOptions& options,
                                                  const Selection& selection) {
    const auto [found, isNew] = firsts_.try_emplace({&options, &selection});
    if (!isNew) return found->second;
    if (!room_.take(selection.texts.size())) room_.takeAll();
    return found->second = options.firstOf(selection);
}

void SharedEntries::draw(std::uint64_t bytes) {
    if (!room_.take(bytes)) fail(OutOfRange, "Widgets that share a text show too much of it");
}

} // namespace Libraries::Files::PDF::Tools
