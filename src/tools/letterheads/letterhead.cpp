#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/letterheads/copies.h"
#include "tools/letterheads/isolation.h"
#include "tools/letterheads/letterhead_plan.h"
#include "tools/letterheads/placement.h"
#include "tools/new_stream.h"
#include "tools/pages/page_contents.h"
#include "tools/pages/page_resources.h"
#include "tools/pages/page_tree_changes.h"
#include "tools/references.h"

#include <pdf/tools/background.h>

#include <map>
#include <string>
#include <utility>

namespace Libraries::Files::PDF::Tools {

namespace {

/// A page of the letterhead, as the document has it.
struct Sheet {
    std::string name;
    View view;
    Ref<ObjectRef> form;
};

/// A document that takes part: its pages, flattened, and what was changed of it.
struct Party {
    explicit Party(Document& taking) noexcept : document(taking), changes(taking) {}

    [[nodiscard]] bool flatten();
    /// Has the root list these pages alone.
    [[nodiscard]] bool list(const std::vector<Ref<Value>>& kids);
    [[nodiscard]] Ref<ObjectRef> add(const Ref<Value>& value);

    Document& document;
    Changes changes;
    PageTree tree;
};

bool Party::flatten() {
    PageTreeChanges flat(document, changes);
    return flat.flatten() && flat.complete() && readPageTree(document, tree);
}

bool Party::list(const std::vector<Ref<Value>>& kids) {
    return changes.set(tree.rootEntries, "Kids", orThrow(Array::create(kids)));
}

Ref<ObjectRef> Party::add(const Ref<Value>& value) {
    const Ref<Object> object = value ? changes.add(value) : nullptr;
    return object ? orThrow(referenceTo(object)) : nullptr;
}

/// Lays a letterhead by `addBackground`, which is the last step that can fail: it raises the
/// document's version, which nothing takes back. Before it both documents are made such that it
/// does what is meant; the letterhead is so no longer than this lives.
class Laying {
public:
    Laying(Document& document, const Ref<Document>& letterhead, const LetterheadOptions& options)
        : options_(options), letterhead_(letterhead), target_(document), source_(*letterhead) {}

    bool run();

private:
    bool makeSheets();
    bool makeSheet(std::uint64_t index, Isolation& isolation, Copies& copies, UnusedNames& names);
    bool prepare();
    bool preparePage(const Page& page, const Sheet& sheet);
    bool cover(const Page& page, const std::string& operators);
    Ref<ObjectRef> streamOf(Party& party, const std::string& operators);
    Ref<ObjectRef> laidPage(const Ref<ObjectRef>& contents);
    bool lay();

    const LetterheadOptions& options_;
    const Ref<Document>& letterhead_;
    Party target_;
    Party source_;
    PageContents targetContents_{target_.document, target_.changes};
    PageContents sourceContents_{source_.document, source_.changes};
    PageResources resources_{target_.document, target_.changes};
    std::vector<Assignment> assignments_;
    std::map<std::uint64_t, Sheet> sheets_;         ///< by the index of the page
    std::map<std::uint32_t, Sheet> drawings_;       ///< the same by their forms in the letterhead
    std::map<std::string, Ref<ObjectRef>> streams_; ///< by what they draw
    std::map<std::uint32_t, Ref<ObjectRef>> laid_;  ///< pages to be laid, by their contents
    std::vector<Ref<Value>> pages_;                 ///< that get one
    std::vector<Ref<Value>> laidPages_;             ///< what the operation lays beneath each
};

bool Laying::run() {
    if (!target_.flatten() || !source_.flatten()) return false;
    auto assignments = assign(options_, target_.tree.pages.size(), source_.tree.pages.size());
    if (!assignments) return false;
    assignments_ = std::move(*assignments);
    if (assignments_.empty()) return true;
    return makeSheets() && prepare() && lay();
}

bool Laying::makeSheets() {
    UnusedNames names("Letterhead");
    for (const Party* party : {&target_, &source_}) {
        for (const FoundPage& found : party->tree.pages)
            names.avoid(party->document, found.page.resources);
    }
    Isolation isolation(source_.document, source_.changes);
    Copies copies(source_.document, target_.changes);
    for (const Assignment& assignment : assignments_) {
        if (sheets_.contains(assignment.sheet)) continue;
        if (!makeSheet(assignment.sheet, isolation, copies, names)) return false;
    }
    return true;
}

bool Laying::makeSheet(std::uint64_t index, Isolation& isolation, Copies& copies,
                       UnusedNames& names) {
    const Page& page = source_.tree.pages[index].page;
    const Ref<ObjectRef> form = isolation.formOf(page);
    if (!form) return false;
    const auto [sheet, isNew] = drawings_.try_emplace(form->id());
    if (isNew) {
        sheet->second = {names.next(), viewOf(source_.document, page), copies.of(form)};
        if (!sheet->second.form) return false;
    }
    sheets_.emplace(index, sheet->second);
    return true;
}

bool Laying::prepare() {
    for (const Assignment& assignment : assignments_) {
        const Page& page = target_.tree.pages[assignment.page].page;
        if (!preparePage(page, sheets_.at(assignment.sheet))) return false;
        pages_.emplace_back(orThrow(referenceTo(page.object)));
    }
    return true;
}

bool Laying::preparePage(const Page& page, const Sheet& sheet) {
    if (!resources_.addXObject(page, sheet.name, sheet.form)) return false;
    const View view = viewOf(target_.document, page);
    const std::string operators = placed(sheet.name, sheet.view, view, options_.asIs);
    if (options_.above && !cover(page, operators)) return false;
    const Ref<ObjectRef> contents =
        options_.above ? sourceContents_.opening() : streamOf(source_, operators);
    Ref<ObjectRef> laid = contents ? laidPage(contents) : nullptr;
    if (!laid) return false;
    laidPages_.emplace_back(std::move(laid));
    // The operation refuses null, and what leads nowhere would lie among the page's streams.
    target_.changes.remember(page.dictionary, "Contents");
    return entryOf(target_.document, *page.dictionary, "Contents") ||
           target_.changes.set(page.dictionary, "Contents", nullptr);
}

/// Draws over the page: behind what it draws itself.
bool Laying::cover(const Page& page, const std::string& operators) {
    if (!hasSoundContents(target_.document, page)) return false;
    const Ref<ObjectRef> drawing = streamOf(target_, operators);
    if (!drawing) return false;
    const auto contents = targetContents_.covered(*page.dictionary, drawing);
    return !contents.empty() &&
           target_.changes.set(page.dictionary, "Contents", orThrow(Array::create(contents)));
}

Ref<ObjectRef> Laying::streamOf(Party& party, const std::string& operators) {
    Ref<ObjectRef>& stream = streams_[operators];
    if (!stream) stream = party.add(newStream(operators, false));
    return stream;
}

Ref<ObjectRef> Laying::laidPage(const Ref<ObjectRef>& contents) {
    Ref<ObjectRef>& page = laid_[contents->id()];
    if (!page) {
        const Ref<Value> type = orThrow(Name::create("Page"));
        page = source_.add(orThrow(Dictionary::create({{"Contents", contents}, {"Type", type}})));
    }
    return page;
}

bool Laying::lay() {
    const Ref<Dictionary>& root = target_.tree.rootEntries;
    const Ref<Host::String> kids = orThrow(Host::String::create("Kids"));
    const Ref<Value> all = quietly([&] { return root->find(kids); });
    const bool some = pages_.size() != target_.tree.pages.size();
    if (some && !target_.list(pages_)) return false;
    if (!source_.list(laidPages_)) return false;
    if (!target_.changes.rememberObjects(static_cast<std::uint32_t>(laid_.size()))) return false;
    const auto mode = static_cast<std::uint32_t>(LetterheadPages::PageByPage);
    if (!target_.document.addBackground(letterhead_, mode)) return false;
    // The entry is there, so that this takes no memory.
    if (some) static_cast<void>(root->set(kids, all));
    target_.changes.keep();
    return true;
}

bool isMode(LetterheadPages mode) noexcept {
    return mode <= LetterheadPages::PageByPageThenLast;
}

} // namespace

bool letterhead(Document& document, const Ref<Document>& letterhead,
                const LetterheadOptions& options) noexcept {
    if (!letterhead) return fail(NullArgument);
    if (letterhead.get() == &document) {
        return fail(InvalidArgument, "A document cannot be its own letterhead");
    }
    if (!isMode(options.mode)) return fail(InvalidArgument, "There is no such mode");
    return guarded([&] { return Laying(document, letterhead, options).run(); });
}

} // namespace Libraries::Files::PDF::Tools
