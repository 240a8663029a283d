#include "tools/letterheads/isolation.h"

#include "spelling/names.h"
#include "tools/failure.h"
#include "tools/new_stream.h"
#include "tools/pages/page_contents.h"
#include "tools/pages/page_view.h"
#include "tools/references.h"
#include "tools/stored_data.h"

#include <pdf/tools/background.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// What says how a stream's data is stored, Length apart (ISO 32000-1, table 5).
constexpr std::string_view storage[] = {"Filter", "DecodeParms", "F", "FFilter", "FDecodeParms"};

Ref<Value> arrayOf(std::initializer_list<double> wholeNumbers) {
    constexpr double most = 1e9; // what no page reaches
    std::vector<Ref<Value>> numbers;
    for (const double number : wholeNumbers) {
        const double sane = std::clamp(number, -most, most);
        numbers.emplace_back(orThrow(Number::create(static_cast<std::int64_t>(sane))));
    }
    return orThrow(Array::create(numbers));
}

Ref<Value> arrayOf(const Matrix& turn) {
    return arrayOf({turn.a, turn.b, turn.c, turn.d, turn.e, turn.f});
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

/// Makes the page draw the form, which is upright: the page's own turn comes on top.
bool drawForm(Changes& changes, const Page& page, std::string_view name,
              const Ref<ObjectRef>& form) {
    const Matrix turn = uprightTurn(page);
    std::string operators = "q\n";
    if (turn.a != 1) operators += spelled(turn.inverse().value_or(Matrix())) + " cm\n";
    operators += "/" + std::string(name) + " Do\nQ\n";
    const Ref<Stream> stream = newStream(operators, false);
    const Ref<Object> object = stream ? changes.add(stream) : nullptr;
    if (!object) return false;
    const Ref<Value> forms = orThrow(Dictionary::create({{name, form}}));
    const Ref<Value> resources = orThrow(Dictionary::create({{"XObject", forms}}));
    return changes.set(page.dictionary, "Resources", resources) &&
           changes.set(page.dictionary, "Contents", orThrow(referenceTo(object)));
}

Ref<ObjectRef> isolated(Document& document, const Page& page, std::string_view name) {
    if (document.homeOf(*page.object) == Home::Elsewhere ||
        document.homeOf(*page.dictionary) == Home::Elsewhere) {
        return fail(InvalidArgument, "Page is of another document: ", page.object);
    }
    Changes changes(document);
    Ref<ObjectRef> form = Isolation(document, changes).formOf(page);
    if (!form || !drawForm(changes, page, name, form)) return nullptr;
    changes.keep();
    return form;
}

} // namespace

Ref<ObjectRef> Isolation::formOf(const Page& page) {
    if (!hasSoundContents(document_, page)) return nullptr;
    const std::vector<Ref<Object>> streams = contentStreams(document_, *page.dictionary);
    Ref<ObjectRef>& form = forms_[drawingOf(page, streams)];
    if (form) return form;
    const Ref<Object> object = contentOf(streams);
    const Ref<Stream> stream = object ? Host::cast<Stream>(object->value()) : nullptr;
    if (!stream || !describe(page, stream->dict())) return nullptr;
    form = orThrow(referenceTo(object));
    return form;
}

Isolation::Drawing Isolation::drawingOf(const Page& page,
                                        const std::vector<Ref<Object>>& streams) const {
    Drawing drawing{{},
                    page.resources.get(),
                    followEntry(document_, *page.dictionary, "Group").get(),
                    visibleBox(document_, page),
                    uprightTurn(page)};
    for (const Ref<Object>& stream : streams)
        drawing.streams.push_back(stream->id());
    return drawing;
}

Ref<Object> Isolation::contentOf(const std::vector<Ref<Object>>& streams) {
    if (streams.size() == 1) return soleStream(streams.front());
    const Ref<Stream> stream = streams.empty() ? newStream("", false) : joined(streams);
    return stream ? changes_.add(stream) : nullptr;
}

Ref<Object> Isolation::soleStream(const Ref<Object>& object) {
    const Ref<Stream> stream = Host::cast<Stream>(object->value());
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    if (!entries) return fail(StreamDictionaryMissing, "Contents are no stream: ", object);
    // Another page may draw the same stream, and have made a form of it, with other resources.
    const bool isTaken = quietly([&] { return entries->find("Subtype"); }) != nullptr;
    if (!isTaken) return object;
    const Ref<Stream> copy = copyOf(object, *entries);
    return copy ? changes_.add(copy) : nullptr;
}

/// A stream of its own with the same data.
Ref<Stream> Isolation::copyOf(const Ref<Object>& object, const Dictionary& entries) {
    const Ref<Host::MemoryStripe> data = budget_.stored(document_, object);
    if (!data) return nullptr;
    const auto length = orThrow(Number::create(static_cast<std::int64_t>(data->size())));
    const Ref<Dictionary> copied = orThrow(Dictionary::create({{"Length", length}}));
    for (const std::string_view key : storage) {
        const Ref<Value> entry = quietly([&] { return entries.find(key); });
        if (entry && !copied->set(key, entry)) throw std::bad_alloc();
    }
    return orThrow(Host::make<StreamObj>(copied, Ref<Interfaces::Stripe>(data)));
}

Ref<Stream> Isolation::joined(const std::vector<Ref<Object>>& streams) {
    std::string all;
    for (const Ref<Object>& object : streams) {
        const Ref<Stream> stream = Host::cast<Stream>(object->value());
        const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
        if (entries && !canDecode(document_, *entries)) {
            return fail(FilterUnsupported,
                        "Contents of several streams are joined, and must be plain or stored by "
                        "FlateDecode alone, unlike ",
                        object);
        }
        const auto bytes = budget_.decoded(document_, object);
        if (!bytes) return nullptr;
        all.append(reinterpret_cast<const char*>(bytes->bytes().data()), bytes->size());
        all += '\n';
    }
    return newStream(all, true);
}

Ref<Value> Isolation::resourcesOf(const Page& page) const {
    if (!page.resources) return orThrow(Dictionary::create());
    // The entry as it stands in the page, or above it: a reference keeps what is shared one object.
    Ref<Dictionary> node = page.dictionary;
    for (std::uint64_t level = 0; node && level <= page.depth; ++level) {
        Ref<Value> entry = entryOf(document_, *node, "Resources");
        if (follow(document_, entry) == page.resources) return entry;
        node = Host::cast<Dictionary>(followEntry(document_, *node, "Parent"));
    }
    return page.resources;
}

bool Isolation::describe(const Page& page, const Ref<Dictionary>& form) {
    const Matrix turn = uprightTurn(page);
    const std::pair<std::string_view, Ref<Value>> entries[] = {
        {"Type", orThrow(Name::create("XObject"))},
        {"Subtype", orThrow(Name::create("Form"))},
        {"BBox", around(visibleBox(document_, page))},
        {"Matrix", turn.a == 1 ? nullptr : arrayOf(turn)},
        {"Resources", resourcesOf(page)},
        {"Group", entryOf(document_, *page.dictionary, "Group")}};
    return std::ranges::all_of(
        entries, [&](const auto& entry) { return changes_.set(form, entry.first, entry.second); });
}

Ref<ObjectRef> isolatePage(Document& document, const Page& page, std::string_view name) noexcept {
    if (!page.object || !page.dictionary) return fail(NullArgument);
    if (!isPlain(name)) return fail(InvalidArgument, "A form cannot be named \"", name, "\"");
    return guarded([&] { return isolated(document, page, name); });
}

} // namespace Libraries::Files::PDF::Tools
