#include "tools/changes.h"
#include "tools/failure.h"
#include "tools/letterheads/copies.h"
#include "tools/letterheads/isolation.h"
#include "tools/letterheads/letterhead_plan.h"
#include "tools/letterheads/placement.h"
#include "tools/pages/page_contents.h"
#include "tools/pages/page_resources.h"
#include "tools/pages/page_tree_changes.h"
#include "tools/references.h"

#include <pdf/tools/letterheads.h>

#include <map>
#include <string>

namespace Libraries::Files::PDF::Tools {

namespace {

/// A page of the letterhead, as the document has it.
struct Sheet {
    std::string name;
    View view;
    Ref<ObjectRef> form;
};

/// A step in the letterhead, whose objects have numbers of their own.
template <class Step>
auto inLetterhead(Step step) {
    return at("The letterhead", step);
}

/// Pages, each a direct kid of the root from then on.
PageTree flattened(Changes& changes) {
    PageTreeChanges(changes).complete();
    return readPageTree(changes.document());
}

/// Lays a letterhead onto pages. The letterhead is changed so no longer than this lives.
class Laying {
public:
    Laying(Document& document, Document& letterhead, const LetterheadOptions& options)
        : options_(options),
          changes_(document),
          sourceChanges_(letterhead),
          pages_(flattened(changes_)),
          sourcePages_(inLetterhead([this] { return flattened(sourceChanges_); })),
          isolation_(sourceChanges_),
          copies_(letterhead, changes_),
          names_("Letterhead"),
          contents_(changes_),
          resources_(changes_) {}

    void run();

private:
    void avoidNames(const Document& document, const PageTree& tree);
    const Sheet& sheetOf(std::uint64_t index);
    void lay(const Page& page, const Sheet& sheet);

    const LetterheadOptions& options_;
    Changes changes_;
    Changes sourceChanges_;
    PageTree pages_, sourcePages_;
    Isolation isolation_;
    Copies copies_;
    UnusedNames names_;
    PageContents contents_;
    PageResources resources_;
    std::map<std::uint64_t, Sheet> sheets_;   ///< by the index of the page
    std::map<std::uint32_t, Sheet> drawings_; ///< the same by their forms in the letterhead
};

void Laying::run() {
    const auto assignments = assign(options_, pages_.pages.size(), sourcePages_.pages.size());
    if (assignments.empty()) return;
    avoidNames(changes_.document(), pages_);
    avoidNames(sourceChanges_.document(), sourcePages_);
    for (const Assignment& assignment : assignments)
        lay(pages_.pages[assignment.page].page, sheetOf(assignment.sheet));
    orFail(changes_.document().raiseVersion(sourceChanges_.document().version()));
    changes_.keep();
}

void Laying::avoidNames(const Document& document, const PageTree& tree) {
    for (const FoundPage& found : tree.pages)
        names_.avoid(document, found.page.resources);
}

/// Pages of the letterhead that draw the same have equal sheets.
const Sheet& Laying::sheetOf(std::uint64_t index) {
    if (const auto known = sheets_.find(index); known != sheets_.end()) return known->second;
    const Page& page = sourcePages_.pages[index].page;
    const Ref<ObjectRef> form = inLetterhead([&] { return isolation_.formOf(page); });
    const auto [drawing, isNew] = drawings_.try_emplace(form->id());
    if (isNew) {
        const View view = viewOf(sourceChanges_.document(), page);
        drawing->second = {names_.next(), view, inLetterhead([&] { return copies_.of(form); })};
    }
    return sheets_.emplace(index, drawing->second).first->second;
}

void Laying::lay(const Page& page, const Sheet& sheet) {
    requireSoundContents(changes_.document(), page);
    resources_.addXObject(page, sheet.name, sheet.form);
    const View view = viewOf(changes_.document(), page);
    const std::string operators = placed(sheet.name, sheet.view, view, options_.asIs);
    options_.above ? contents_.drawAbove(page.dictionary, operators)
                   : contents_.drawBeneath(page.dictionary, operators);
}

} // namespace

Result<void> letterhead(const Ref<Document>& document, const Ref<Document>& letterhead,
                        const LetterheadOptions& options) noexcept {
    return guarded([&] {
        requireArgument(document, "document");
        requireArgument(letterhead, "letterhead");
        if (letterhead == document) {
            fail(InvalidArgument, "A document cannot be its own letterhead");
        }
        Laying(*document, *letterhead, options).run();
    });
}

} // namespace Libraries::Files::PDF::Tools
