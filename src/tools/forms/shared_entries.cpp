#include "tools/forms/shared_entries.h"

#include "tools/failure.h"

#include <pdf/errors.h>

#include <algorithm>
#include <utility>

namespace Libraries::Files::PDF::Tools {

ChoiceOptions::ChoiceOptions(const FieldEntries& field) : list_(optionsOf(field)) {
    byText_.reserve(list_.size());
    for (std::size_t place = 0; place < list_.size(); ++place) {
        const ChoiceOption& option = list_[place];
        if (!Host::cast<String>(option.exported)) continue;
        byText_.try_emplace(option.text, place);
        if (option.value != option.text) byValue_.try_emplace(option.value, place);
    }
}

std::optional<std::size_t> ChoiceOptions::at(std::string_view text) const {
    for (const auto* const places : {&byText_, &byValue_}) {
        if (const auto found = places->find(text); found != places->end()) return found->second;
    }
    return std::nullopt;
}

std::optional<std::size_t> ChoiceOptions::firstOf(const Selection& selection) const {
    std::optional<std::size_t> first;
    for (const std::string& text : selection.texts) {
        if (const auto place = at(text); place && list_[*place].value == text) {
            first = std::min(first.value_or(*place), *place);
        }
        // Another option may show what this one exports.
        if (const auto found = byValue_.find(text); found != byValue_.end()) {
            first = std::min(first.value_or(found->second), found->second);
        }
    }
    return first;
}

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
    room_ -= std::min<std::uint64_t>(room_, selection.texts.size());
    return found->second = options.firstOf(selection);
}

bool SharedEntries::draw(std::uint64_t bytes) noexcept {
    if (bytes > room_) return fail(OutOfRange, "Fields that share a text show too much of it");
    room_ -= bytes;
    return true;
}

} // namespace Libraries::Files::PDF::Tools
