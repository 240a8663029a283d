#include "tools/failure.h"
#include "tools/forms/field_appearance.h"
#include "tools/forms/field_entries.h"
#include "tools/new_values.h"
#include "tools/pages/page_contents.h"
#include "tools/pages/page_resources.h"
#include "tools/pages/page_tree_changes.h"
#include "tools/references.h"

#include <pdf/tools/forms.h>

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

/// How often annotations may be met for each one that is listed, and beyond that: pages may share a
/// list of them.
constexpr std::uint64_t mostAnnotations = 4;
constexpr std::uint64_t alwaysMet = 4096;

/// Draws the widgets of a document's form on its pages.
class FormFlattening {
public:
    explicit FormFlattening(Changes& changes) noexcept
        : changes_(changes), contents_(changes), resources_(changes), appearances_(changes) {}

    void run(const Ref<Dictionary>& form);

private:
    [[nodiscard]] const Document& document() const noexcept { return changes_.document(); }
    void flattenPage(const Page& page);
    void draw(const Page& page, const Ref<Dictionary>& widget, std::string& operators);
    [[nodiscard]] std::optional<Matrix> placeOf(const Ref<Dictionary>& widget,
                                                const Ref<Dictionary>& looks) const;
    void complete(const Ref<Dictionary>& widget);
    [[nodiscard]] Filled completed(const FieldEntries& widget);
    [[nodiscard]] Filled showText(const FieldEntries& widget);
    [[nodiscard]] Ref<Object> normalLooks(const Ref<Dictionary>& widget) const;

    Changes& changes_;
    std::uint64_t widgets_ = 0;
    std::uint64_t annotationsLeft_ = alwaysMet;
    std::unordered_set<const Array*> lists_;         ///< of annotations
    std::unordered_set<const Dictionary*> complete_; ///< widgets
    bool stale_ = false;                             ///< whether the form's looks are to be rebuilt
    PageContents contents_;
    PageResources resources_;
    FieldAppearances appearances_;
    UnusedNames names_{"Field"};
    std::unordered_map<std::uint32_t, std::string> drawn_; ///< names of looks, by their objects
};

void FormFlattening::run(const Ref<Dictionary>& form) {
    PageTreeChanges(changes_).complete();
    const auto rebuild = followEntry<Boolean>(document(), form, "NeedAppearances");
    stale_ = rebuild && rebuild->value();
    const auto pages = pagesOf(document());
    for (const Page& page : pages)
        names_.avoid(document(), page.resources);
    for (const Page& page : pages)
        flattenPage(page);
    changes_.drop(catalogEntries(document()), "AcroForm");
}

void FormFlattening::flattenPage(const Page& page) {
    const auto list = followEntry<Array>(document(), page.dictionary, "Annots");
    const auto annotations = elementsOf(list);
    if (lists_.insert(list.get()).second) annotationsLeft_ += mostAnnotations * annotations.size();
    std::vector<Ref<Value>> others;
    std::unordered_set<const Dictionary*> drawnHere;
    std::string operators;
    for (const Ref<Value>& entry : annotations) {
        const auto annotation = followTo<Dictionary>(document(), entry);
        if (annotationsLeft_-- == 0)
            fail(OutOfRange, "Pages share too many annotations, up to page ", page.object);
        if (!isName(followEntry(document(), annotation, "Subtype"), "Widget")) {
            others.push_back(entry);
        } else if (drawnHere.insert(annotation.get()).second) {
            draw(page, annotation, operators);
        }
    }
    if (others.size() == annotations.size()) return;
    changes_.set(page.dictionary, "Annots", others.empty() ? nullptr : newArray(others));
    if (!operators.empty()) contents_.drawAbove(page.dictionary, operators);
}

/// From the appearance's coordinates to those of the page (ISO 32000-1, 12.5.5); nothing where the
/// widget shows nothing.
std::optional<Matrix> FormFlattening::placeOf(const Ref<Dictionary>& widget,
                                              const Ref<Dictionary>& looks) const {
    const auto area = rectangleOf(document(), followEntry(document(), widget, "Rect"));
    const auto box = rectangleOf(document(), followEntry(document(), looks, "BBox"));
    const auto turn = matrixOf(document(), followEntry(document(), looks, "Matrix"));
    const Rectangle shown = turn.value_or(Matrix()).bounds(box.value_or(Rectangle()));
    if (!area || shown.width() <= 0 || shown.height() <= 0) return std::nullopt;
    const double wide = area->width() / shown.width();
    const double high = area->height() / shown.height();
    return Matrix{
        wide, 0, 0, high, area->left - shown.left * wide, area->bottom - shown.bottom * high};
}

/// Adds what draws a widget where its viewer would.
void FormFlattening::draw(const Page& page, const Ref<Dictionary>& widget, std::string& operators) {
    if (widgets_++ == mostWidgets)
        fail(OutOfRange, "The pages have too many widgets, up to page ", page.object);
    const auto flags = followEntry<Number>(document(), widget, "F");
    if (flags && (flags->integer() & unseen) != 0) return;
    complete(widget);
    const Ref<Object> looks = normalLooks(widget);
    const auto stream = looks ? Host::cast<Stream>(looks->value()) : nullptr;
    const Ref<Dictionary> entries = stream ? stream->dict() : nullptr;
    const auto place = placeOf(widget, entries);
    if (!place) return;
    std::string& name = drawn_[looks->id()];
    if (name.empty()) name = names_.next();
    operators += "q\n" + spelled(*place) + " cm\n/" + name + " Do\nQ\n";
    // Streams of appearances are taken for what they are, whatever they call themselves.
    changes_.set(entries, "Subtype", newName("Form"));
    resources_.addXObject(page, name, newReference(looks));
}

Ref<Object> FormFlattening::normalLooks(const Ref<Dictionary>& widget) const {
    const auto all = followEntry<Dictionary>(document(), widget, "AP");
    Ref<Value> entry = entryOf(document(), all, "N");
    if (const auto states = followTo<Dictionary>(document(), entry)) {
        const auto state = followEntry<Name>(document(), widget, "AS");
        entry = state ? quietly([&] { return states->find(state->name()); }) : nullptr;
    }
    Ref<Object> looks = objectBehind(document(), entry);
    return looks && looks->valueType() == Value::Type::Stream ? looks : nullptr;
}

/// Gives a widget the appearance that it lacks.
void FormFlattening::complete(const Ref<Dictionary>& widget) {
    if (!complete_.insert(widget.get()).second) return;
    appearances_.shared().readWidget();
    const FieldEntries entries(document(), widget);
    at([&] { return "field " + entries.path(); },
       [&] {
           const Filled shown = completed(entries);
           if (shown.viewerNeeded)
               fail(NotSupported, "no appearance can be made for its text: ", shown.reason);
       });
}

Filled FormFlattening::completed(const FieldEntries& widget) {
    const Field::Kind kind = widget.kind();
    if (kind == Field::Kind::Button && !widget.has(FieldFlags::pushButton)) {
        appearances_.showOwnState(widget, stale_);
        return {};
    }
    const bool hasLooks = normalLooks(widget.own()) != nullptr;
    if (kind != Field::Kind::Text && kind != Field::Kind::Choice)
        return hasLooks ? Filled() : appearances_.showCaption(widget);
    if (hasLooks && !stale_) return {};
    Filled shown = showText(widget);
    return hasLooks ? Filled() : shown;
}

Filled FormFlattening::showText(const FieldEntries& widget) {
    SharedEntries& shared = appearances_.shared();
    const Selection& selection = shared.selection(widget);
    if (widget.kind() == Field::Kind::Choice && !widget.has(FieldFlags::combo))
        return appearances_.showList(widget, selection);
    const ChoiceOptions& options = shared.options(widget);
    std::string text = selection.texts.empty() ? std::string() : selection.texts.front();
    if (const auto place = options.at(text)) text = options.list()[*place].text;
    return appearances_.showText(widget, text);
}

} // namespace

Result<void> flattenForm(const Ref<Document>& document) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        const Ref<Dictionary> form = formEntries(*document);
        if (!form) return;
        Changes changes(*document);
        FormFlattening(changes).run(form);
        changes.keep();
    });
}

} // namespace Libraries::Files::PDF::Tools
