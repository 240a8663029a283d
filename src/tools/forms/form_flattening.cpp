#include "tools/failure.h"
#include "tools/forms/field_appearance.h"
#include "tools/forms/form_field.h"
#include "tools/forms/form_text.h"
#include "tools/new_stream.h"
#include "tools/pages/page_contents.h"
#include "tools/pages/page_resources.h"
#include "tools/pages/page_tree_changes.h"
#include "tools/references.h"

#include <pdf/tools/editing.h>
#include <pdf/tools/filling.h>

#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// The flag bits of annotations that nobody sees (ISO 32000-1, table 165): Hidden, NoView.
constexpr std::int64_t unseen = 0x2 | 0x20;

/// Widgets that are drawn in one call.
constexpr std::uint64_t mostWidgets = 1 << 20;

constexpr std::uint64_t leastWidget = 64; ///< bytes that one takes in a file

/// How often annotations may be met for each one that is listed, and beyond that: pages may share a
/// list of them.
constexpr std::uint64_t mostAnnotations = 4;
constexpr std::uint64_t alwaysMet = 4096;

/// Draws the widgets of a document's form on its pages.
class FormFlattening {
public:
    FormFlattening(Document& document, Changes& changes, Ref<Dictionary> form)
        : document_(document),
          changes_(changes),
          form_(std::move(form)),
          contents_(document, changes),
          resources_(document, changes),
          appearances_(document, changes),
          names_("Field") {}

    [[nodiscard]] bool run();

private:
    [[nodiscard]] bool flattenPage(const Page& page);
    [[nodiscard]] bool draw(const Page& page, const Ref<Dictionary>& widget,
                            std::string& operators);
    [[nodiscard]] std::optional<Matrix> placeOf(const Dictionary& widget,
                                                const Dictionary& looks) const;
    [[nodiscard]] bool complete(const Ref<Dictionary>& widget);
    [[nodiscard]] bool completeText(const FieldEntries& widget);
    [[nodiscard]] bool finished(const FieldEntries& widget, Filled shown) const;
    [[nodiscard]] Ref<Object> normalLooks(const Dictionary& widget) const;
    [[nodiscard]] bool append(const Ref<Dictionary>& page, const std::string& operators);

    Document& document_;
    Changes& changes_;
    Ref<Dictionary> form_;
    std::uint64_t widgets_ = 0;
    std::uint64_t annotationsLeft_ = alwaysMet;
    std::unordered_set<const Array*> lists_;         ///< of annotations
    std::unordered_set<const Dictionary*> complete_; ///< widgets
    bool stale_ = false;                             ///< whether the form's looks are to be rebuilt
    PageContents contents_;
    PageResources resources_;
    FieldAppearances appearances_;
    UnusedNames names_;
    std::unordered_map<std::uint32_t, std::string> drawn_; ///< names of looks, by their objects
};

bool FormFlattening::run() {
    PageTreeChanges tree(document_, changes_);
    if (!tree.flatten() || !tree.complete()) return false;
    const auto rebuild = Host::cast<Boolean>(followEntry(document_, *form_, "NeedAppearances"));
    stale_ = rebuild && rebuild->value();
    const auto pages = allPages(document_);
    if (!pages) return false;
    for (const Page& page : pages)
        names_.avoid(document_, page.resources);
    for (const Page& page : pages) {
        if (!flattenPage(page)) return false;
    }
    return changes_.drop(catalogEntries(document_), "AcroForm");
}

bool FormFlattening::flattenPage(const Page& page) {
    const auto annotations = Host::cast<Array>(followEntry(document_, *page.dictionary, "Annots"));
    if (!annotations) return true;
    if (lists_.insert(annotations.get()).second) {
        annotationsLeft_ += mostAnnotations * annotations->size();
    }
    std::vector<Ref<Value>> others;
    std::unordered_set<const Dictionary*> drawnHere;
    std::string operators;
    for (std::uint64_t index = 0; index < annotations->size(); ++index) {
        Ref<Value> entry = annotations->get(index);
        const auto annotation = Host::cast<Dictionary>(follow(document_, entry));
        if (annotationsLeft_-- == 0) return fail(OutOfRange, "Pages share too many annotations");
        if (!annotation || !isName(followEntry(document_, *annotation, "Subtype"), "Widget")) {
            others.push_back(std::move(entry));
        } else if (drawnHere.insert(annotation.get()).second &&
                   !draw(page, annotation, operators)) {
            return false;
        }
    }
    if (others.size() == annotations->size()) return true;
    const Ref<Value> kept = others.empty() ? nullptr : orThrow(Array::create(others));
    if (!changes_.set(page.dictionary, "Annots", kept)) return false;
    return operators.empty() || append(page.dictionary, operators);
}

/// From the appearance's coordinates to those of the page (ISO 32000-1, 12.5.5); nothing where the
/// widget shows nothing.
std::optional<Matrix> FormFlattening::placeOf(const Dictionary& widget,
                                              const Dictionary& looks) const {
    const auto area = rectangleOf(document_, followEntry(document_, widget, "Rect"));
    const auto box = rectangleOf(document_, followEntry(document_, looks, "BBox"));
    const auto turn = matrixOf(document_, followEntry(document_, looks, "Matrix"));
    const Rectangle shown = turn.value_or(Matrix()).bounds(box.value_or(Rectangle()));
    if (!area || shown.width() <= 0 || shown.height() <= 0) return std::nullopt;
    const double wide = area->width() / shown.width();
    const double high = area->height() / shown.height();
    return Matrix{
        wide, 0, 0, high, area->left - shown.left * wide, area->bottom - shown.bottom * high};
}

/// Adds what draws a widget where its viewer would.
bool FormFlattening::draw(const Page& page, const Ref<Dictionary>& widget, std::string& operators) {
    if (widgets_++ == mostWidgets) return fail(OutOfRange, "The pages have too many fields");
    const auto flags = Host::cast<Number>(followEntry(document_, *widget, "F"));
    if (flags && (flags->integer() & unseen) != 0) return true;
    if (!complete(widget)) return false;
    const Ref<Object> looks = normalLooks(*widget);
    const Ref<Stream> stream =
        looks ? Host::cast<Stream>(quietly([&] { return looks->value(); })) : nullptr;
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    const auto place = entries ? placeOf(*widget, *entries) : std::nullopt;
    if (!place) return true;
    std::string& name = drawn_[looks->id()];
    if (name.empty()) name = names_.next();
    operators += "q\n" + spelled(*place) + " cm\n/" + name + " Do\nQ\n";
    // Streams of appearances are taken for what they are, whatever they call themselves.
    return changes_.set(entries, "Subtype", orThrow(Name::create("Form"))) &&
           resources_.addXObject(page, name, orThrow(referenceTo(looks)));
}

bool FormFlattening::finished(const FieldEntries& widget, Filled shown) const {
    if (shown != Filled::ViewerNeeded) return shown == Filled::Shown;
    return fail(NotSupported, "No appearance can be made for the text of field ", widget.text("T"),
                ": ", appearances_.obstacle());
}

Ref<Object> FormFlattening::normalLooks(const Dictionary& widget) const {
    const auto all = Host::cast<Dictionary>(followEntry(document_, widget, "AP"));
    Ref<Value> entry = all ? entryOf(document_, *all, "N") : nullptr;
    if (const auto states = Host::cast<Dictionary>(follow(document_, entry))) {
        const auto state = Host::cast<Name>(followEntry(document_, widget, "AS"));
        entry = state ? quietly([&] { return states->find(state->name()); }) : nullptr;
    }
    Ref<Object> looks = objectBehind(document_, entry);
    return looks && looks->valueType() == Value::Type::Stream ? looks : nullptr;
}

bool FormFlattening::complete(const Ref<Dictionary>& widget) {
    if (!complete_.insert(widget.get()).second) return true;
    appearances_.shared().read(leastWidget);
    const FieldEntries entries(document_, widget);
    switch (entries.kind()) {
    case Field::Kind::Text:
    case Field::Kind::Choice:
        return completeText(entries);
    case Field::Kind::Button:
        if (!entries.has(FieldFlags::pushButton)) {
            return appearances_.showOwnState(entries, stale_) == Filled::Shown;
        }
        [[fallthrough]];
    default:
        return normalLooks(*widget) || finished(entries, appearances_.showCaption(entries));
    }
}

bool FormFlattening::completeText(const FieldEntries& widget) {
    const bool looks = normalLooks(*widget.own()) != nullptr;
    if (looks && !stale_) return true;
    SharedEntries& shared = appearances_.shared();
    const Selection& selection = shared.selection(widget);
    Filled shown = Filled::Shown;
    if (widget.kind() == Field::Kind::Choice && !widget.has(FieldFlags::combo)) {
        shown = appearances_.showList(widget, selection);
    } else {
        const auto& options = shared.options(widget);
        std::string text = selection.texts.empty() ? std::string() : selection.texts.front();
        if (const auto place = options.at(text)) text = options.list()[*place].text;
        shown = appearances_.showText(widget, text);
    }
    return (looks && shown == Filled::ViewerNeeded) || finished(widget, shown);
}

bool FormFlattening::append(const Ref<Dictionary>& page, const std::string& operators) {
    const Ref<Stream> stream = newStream(operators, true);
    const Ref<Object> object = stream ? changes_.add(stream) : nullptr;
    if (!object) return false;
    const Ref<Value> drawing = orThrow(referenceTo(object));
    std::vector<Ref<Value>> contents = {drawing};
    if (!contentStreams(document_, *page).empty()) {
        contents = contents_.covered(*page, drawing);
        Ref<Value> opening = contents.empty() ? nullptr : contents_.opening();
        if (!opening) return false;
        contents.insert(contents.begin(), std::move(opening));
    }
    return changes_.set(page, "Contents", orThrow(Array::create(contents)));
}

} // namespace

bool flattenForm(Document& document) noexcept {
    return guarded([&] {
        Changes changes(document);
        const Ref<Dictionary> form = formEntries(document);
        if (!form) return true;
        if (!FormFlattening(document, changes, form).run()) return false;
        changes.keep();
        return true;
    });
}

} // namespace Libraries::Files::PDF::Tools
