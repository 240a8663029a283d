#include "forms/kids.h"

#include "values/failure.h"
#include "values/kind.h"

#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Libraries::Files::PDF {

struct Kids::List {
    /// The partial names as texts, null for a field without one. They lie together, so that a
    /// search does not touch the fields.
    std::vector<Ref<Host::String>> names;
    std::vector<Ref<Field>> fields;
    List* next = nullptr;
};

namespace {

/// The index that a name spells in decimal, as it would be printed.
std::optional<std::uint64_t> indexSpelt(const Host::String& name) noexcept {
    const std::string_view digits = name.narrow();
    std::uint64_t index = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, index);
    const bool padded = digits.size() > 1 && digits.front() == '0';
    if (digits.empty() || padded || stop != end || error != std::errc{}) return std::nullopt;
    return index;
}

} // namespace

Kids::~Kids() {
    // The lists of this thread that wait for release; null while none is being released.
    thread_local List** waiting = nullptr;
    if (list_ == nullptr) return;
    if (waiting != nullptr) {
        list_->next = std::exchange(*waiting, list_);
        return;
    }
    List* first = list_;
    waiting = &first;
    while (first != nullptr) {
        // Releasing the last handle of a field comes back here with the field's own list.
        const std::unique_ptr<List> list(std::exchange(first, first->next));
        list->fields.clear();
    }
    waiting = nullptr;
}

void Kids::add(Ref<Field> field) {
    if (list_ == nullptr) list_ = new List;
    const Ref<String> name = field->partialName();
    list_->names.push_back(name ? orThrow(name->asText()) : nullptr);
    list_->fields.push_back(std::move(field));
}

std::uint64_t Kids::size() const noexcept {
    return list_ == nullptr ? 0 : list_->fields.size();
}

Ref<Field> Kids::get(std::uint64_t index) const noexcept {
    if (index >= size()) return fail(OutOfRange);
    return list_->fields[index];
}

Ref<Field> Kids::find(const Ref<Host::String>& name) const noexcept {
    if (!name) return fail(NullArgument);
    if (name->empty()) return fail(InvalidArgument);
    const std::optional<std::uint64_t> spelt = indexSpelt(*name);
    for (std::uint64_t index = 0; index < size(); ++index) {
        const Host::String* own = list_->names[index].get();
        if (own != nullptr ? own->equals(*name) : spelt == index) return list_->fields[index];
    }
    return fail(FormNotFound);
}

} // namespace Libraries::Files::PDF
