#include "tools/letterheads/isolation.h"

#include "spelling/names.h"
#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/pages/page_contents.h"
#include "tools/pages/page_tree.h"
#include "tools/pages/page_view.h"
#include "tools/references.h"
#include "tools/stored_data.h"

#include <pdf/tools/pages.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

Ref<Value> arrayOf(std::initializer_list<double> wholeNumbers) {
    constexpr double most = 1e9; // what no page reaches
    std::vector<Ref<Value>> numbers;
    for (const double number : wholeNumbers) {
        const double sane = std::clamp(number, -most, most);
        numbers.emplace_back(orThrow(Number::create(static_cast<std::int64_t>(sane))));
    }
    return newArray(numbers);
}

/// Whole points around the box: so the edge of the form is none that is drawn softly.
Ref<Value> around(const Rectangle& box) {
    return arrayOf(
        {std::floor(box.left), std::floor(box.bottom), std::ceil(box.right), std::ceil(box.top)});
}

/// Whether a name is written as it is, in dictionaries and contents.
bool isPlain(std::string_view name) noexcept {
    return !name.empty() && std::ranges::all_of(name, Spelling::isPlainInName);
}

/// Makes the page draw the form, which is upright: the page's own turn comes on top. Gives the
/// page's resources.
Ref<Dictionary> drawForm(Changes& changes, const Page& page, std::string_view name,
                         const Ref<ObjectRef>& form) {
    const Matrix turn = uprightTurn(page);
    std::string operators = "q\n";
    if (turn.a != 1) operators += spelled(turn.inverse().value_or(Matrix())) + " cm\n";
    operators += "/" + std::string(name) + " Do\nQ\n";
    const Ref<ObjectRef> contents = changes.add(newStream(operators, Storing::Plain));
    Ref<Dictionary> resources = newDictionary({{"XObject", newDictionary({{name, form}})}});
    changes.set(page.dictionary, "Resources", resources);
    changes.set(page.dictionary, "Contents", contents);
    return resources;
}

} // namespace

Ref<ObjectRef> Isolation::formOf(const Page& page) {
    requireSoundContents(document_, page);
    const std::vector<Ref<Object>> streams = contentStreams(document_, page.dictionary);
    Ref<ObjectRef>& form = forms_[drawingOf(page, streams)];
    if (form) return form;
    const Ref<Object> object = contentOf(streams);
    describe(page, entriesOf(object->valueAsStream()));
    form = newReference(object);
    return form;
}

Isolation::Drawing Isolation::drawingOf(const Page& page,
                                        const std::vector<Ref<Object>>& streams) const {
    Drawing drawing{{},
                    page.resources.get(),
                    followEntry(document_, page.dictionary, "Group").get(),
                    visibleBox(document_, page),
                    uprightTurn(page)};
    for (const Ref<Object>& stream : streams)
        drawing.streams.push_back(stream->id());
    return drawing;
}

Ref<Object> Isolation::contentOf(const std::vector<Ref<Object>>& streams) {
    if (streams.size() == 1) return soleStream(streams.front());
    return changes_.addObject(streams.empty() ? newStream("", Storing::Plain) : joined(streams));
}

Ref<Object> Isolation::soleStream(const Ref<Object>& object) {
    const Ref<Stream> stream = orFail(object->valueAsStream());
    const Ref<Dictionary> entries = entriesOf(stream);
    // Another page may draw the same stream, and have made a form of it, with other resources.
    const bool isTaken = findEntry(entries, "Subtype") != nullptr;
    return isTaken ? changes_.addObject(copyOf(object, entries)) : object;
}

/// A stream of its own with the same data.
Ref<Stream> Isolation::copyOf(const Ref<Object>& object, const Ref<Dictionary>& entries) {
    const Ref<Host::MemoryStripe> data = budget_.stored(document_, object);
    const Ref<Dictionary> copied = newDictionary();
    for (const std::string_view key : storageEntries) {
        if (const Ref<Value> entry = findEntry(entries, key)) put(copied, key, entry);
    }
    return newStream(copied, data);
}

Ref<Stream> Isolation::joined(const std::vector<Ref<Object>>& streams) {
    std::string all;
    for (const Ref<Object>& object : streams) {
        const auto bytes = budget_.decoded(document_, object);
        all.append(reinterpret_cast<const char*>(bytes->bytes().data()), bytes->size());
        all += '\n';
    }
    return newStream(all, Storing::Deflated);
}

Ref<Value> Isolation::resourcesOf(const Page& page) const {
    if (!page.resources) return newDictionary();
    // The entry as it stands in the page, or above it: a reference keeps what is shared one object.
    Ref<Dictionary> node = page.dictionary;
    for (std::uint64_t level = 0; node && level <= page.depth; ++level) {
        Ref<Value> entry = entryOf(document_, node, "Resources");
        if (follow(document_, entry) == page.resources) return entry;
        node = followEntry<Dictionary>(document_, node, "Parent");
    }
    return page.resources;
}

void Isolation::describe(const Page& page, const Ref<Dictionary>& form) {
    const Matrix turn = uprightTurn(page);
    const std::pair<std::string_view, Ref<Value>> entries[] = {
        {"Type", newName("XObject")},
        {"Subtype", newName("Form")},
        {"BBox", around(visibleBox(document_, page))},
        {"Matrix",
         turn.a == 1 ? nullptr : arrayOf({turn.a, turn.b, turn.c, turn.d, turn.e, turn.f})},
        {"Resources", resourcesOf(page)},
        {"Group", entryOf(document_, page.dictionary, "Group")}};
    for (const auto& [key, value] : entries)
        changes_.set(form, key, value);
}

Result<Ref<ObjectRef>> Pages::isolate(std::uint64_t index, std::string_view name) noexcept {
    return guarded([&] {
        requireArgument(document_, "document");
        auto pages = pagesOf(*document_);
        if (index >= pages.size()) failWithoutPage(index, pages.size());
        if (!isPlain(name)) fail(InvalidArgument, "A form cannot be named \"", name, "\"");
        Changes changes(*document_);
        Ref<ObjectRef> form = Isolation(changes).formOf(pages[index]);
        const Ref<Dictionary> resources = drawForm(changes, pages[index], name, form);
        const Ref<Dictionary> own = pages[index].dictionary;
        for (Page& page : pages) {
            if (page.dictionary == own) page.resources = resources;
        }
        pages_.swap(pages);
        changes.keep();
        return form;
    });
}

} // namespace Libraries::Files::PDF::Tools
