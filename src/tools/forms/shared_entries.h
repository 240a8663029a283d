#pragma once

#include "tools/budget.h"
#include "tools/forms/field_options.h"
#include "tools/forms/form_fonts.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Libraries::Files::PDF::Tools {

/// Entries that fields may share, as by inheritance: each is read once, however many have it. What
/// is drawn of them is bounded: a file of one long text and many fields that show it would become
/// the product of both. Everything throws `std::bad_alloc`.
class SharedEntries {
public:
    [[nodiscard]] const TextStyle& style(const FieldEntries& field);
    [[nodiscard]] const ChoiceOptions& options(const FieldEntries& field);
    [[nodiscard]] const Selection& selection(const FieldEntries& field);
    /// The place of the first option that is selected; nothing where none is. What it takes to look
    /// is taken off the room, once for the two, which outlive this.
    [[nodiscard]] std::optional<std::size_t> firstOf(const ChoiceOptions& options,
                                                     const Selection& selection);

    /// Makes room for drawing what was read, or given.
    void read(std::uint64_t bytes) noexcept { room_.read(bytes); }
    /// The same for one more widget, whatever it has.
    void readWidget() noexcept { read(leastWidget); }
    /// Takes room for what a widget is to show. Fails with `OutOfRange` where there is no more.
    void draw(std::uint64_t bytes);

private:
    /// How often each byte that was read may be drawn.
    static constexpr std::uint64_t mostDrawn = 16;
    static constexpr std::uint64_t leastWidget = 64; ///< bytes that one takes in a file

    struct Style : TextStyle {
        explicit Style(const FieldEntries& field) : TextStyle(styleOf(field)) {}
    };

    /// The entry is kept, so that its place is no other's.
    template <class T>
    struct Held {
        Held(const FieldEntries& field, Ref<Value> from) : entry(std::move(from)), held(field) {}

        Ref<Value> entry;
        T held;
    };
    template <class T>
    using Known = std::unordered_map<const Value*, Held<T>>;

    template <class T>
    const T& find(Known<T>& known, const FieldEntries& field, std::string_view key);

    Known<Style> styles_;
    Known<ChoiceOptions> options_;
    Known<Selection> selections_;
    std::map<std::pair<const ChoiceOptions*, const Selection*>, std::optional<std::size_t>> firsts_;
    Budget room_{mostDrawn};
};

} // namespace Libraries::Files::PDF::Tools
