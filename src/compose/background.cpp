#include "compose/background.h"

#include "compose/background_resources.h"
#include "compose/contents.h"
#include "host/on_failure.h"
#include "values/failure.h"

#include <algorithm>
#include <vector>

namespace Libraries::Files::PDF {

namespace {

/// Which foreign page goes beneath which page.
enum Mode : std::uint32_t {
    FirstBeneathFirst = 0,
    FirstBeneathAll = 1,
    PageByPage = 2,
    PageByPageThenLast = 3
};

bool takesFirstOnly(std::uint32_t mode) noexcept {
    return mode == FirstBeneathFirst || mode == FirstBeneathAll;
}

/// How many of `pages` pages change.
std::size_t pagesToChange(std::uint32_t mode, std::size_t pages, std::size_t foreignPages) {
    switch (mode) {
    case FirstBeneathFirst:
        return std::min<std::size_t>(pages, 1);
    case PageByPage:
        return std::min(pages, foreignPages);
    case FirstBeneathAll:
    case PageByPageThenLast:
        return pages;
    default:
        return 0;
    }
}

class Background {
public:
    Background(OwnDocument& target, const Ref<Document>& foreign, std::uint32_t mode)
        : target_(target),
          foreign_(foreign),
          mode_(mode),
          cloner_(target),
          resources_(target, foreign, cloner_) {}

    bool run() {
        const std::uint32_t formerCode = Host::Error::get();
        Host::Error::set(Host::NoError);
        if (!readForeignPages()) return false;
        pages_ = target_.getPages();
        if (pages_.empty()) {
            if (Host::Error::get() != Host::NoError) return false;
            Host::Error::set(formerCode);
            return true;
        }
        return findPageTree() && collectStreams() && mergeResources() &&
               added_.copy(streams_, foreign_, target_.state(), cloner_) && changeContents() &&
               finish();
    }

private:
    bool readForeignPages();
    bool findPageTree();
    bool collectStreams();
    void assign();
    bool mergeResources();
    bool changeContents();
    bool changePages();
    bool changePage(const Assignment& assignment);
    bool finish() noexcept;

    OwnDocument& target_;
    const Ref<Document>& foreign_;
    const std::uint32_t mode_;

    std::vector<Ref<Object>> pages_;
    std::vector<ForeignPage> foreignPages_;
    std::vector<Assignment> assignments_;
    Ref<Dictionary> pageTree_;
    StreamTable streams_;
    AddedStreams added_;
    SavedContents saved_;
    Cloner cloner_;
    BackgroundResources resources_;
};

bool Background::readForeignPages() {
    const std::vector<Ref<Object>> pages = foreign_->getPages();
    if (pages.empty()) {
        const std::uint32_t code = Host::Error::get();
        if (code == Host::NoError) return fail(ForeignPageEmpty, "Foreign document has no pages");
        const bool pageTree = code >= NoTrailer && code < NoTrailer + 256;
        return fail(pageTree ? code + 256 : code);
    }
    std::size_t count = pages.size();
    if (takesFirstOnly(mode_) && count > 1) {
        report(LogLevel::Note, "Background has more than 1 page: ", count);
        count = 1;
    }
    foreignPages_.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        Ref<Dictionary> dict = foreign_->valueAsDict(pages[index]->value());
        if (!dict) {
            return fail(ForeignPageInvalid, "Failed to retrieve dictionary of foreign page ",
                        index);
        }
        foreignPages_.push_back({std::move(dict), index, {}});
    }
    return true;
}

bool Background::findPageTree() {
    const Ref<Object> pageTree = target_.getPageCatalog();
    if (!pageTree) return fail(PageTreeInvalid, "Failed to retrieve page catalog");
    pageTree_ = pageTree->valueAsDictionary();
    if (!pageTree_) return fail(PageTreeInvalid, "Failed to retrieve page catalog dictionary");
    return true;
}

bool Background::collectStreams() {
    return std::ranges::all_of(foreignPages_, [&](ForeignPage& page) {
        return collectContents(*foreign_, page, streams_);
    });
}

void Background::assign() {
    const std::size_t count = pagesToChange(mode_, pages_.size(), foreignPages_.size());
    assignments_.reserve(count);
    for (std::size_t index = 0; index < count; ++index) {
        const std::size_t beneath = std::min(index, foreignPages_.size() - 1);
        assignments_.push_back({index, pages_[index], &foreignPages_[beneath]});
    }
    // Each page gets its own copies of the resources. The one more is for the content streams.
    cloner_.budget(CopyBudget(copySourceOf(*foreign_), std::uint64_t{count} + 1));
}

bool Background::mergeResources() {
    assign();
    return resources_.findTreeResources(pageTree_) &&
           std::ranges::all_of(
               assignments_,
               [&](Assignment& assignment) { return resources_.mergeInto(assignment); }) &&
           resources_.mergeTrees();
}

bool Background::changeContents() {
    // Set after the pages were restored, which may have set another code.
    if (!changePages()) return fail(StepFailed);
    return true;
}

bool Background::changePages() {
    std::size_t stop = 0;
    Host::OnFailure undo([&] { restorePageContents(pages_, saved_, target_.state(), stop); });
    saved_.reserve(assignments_.size());
    for (const Assignment& assignment : assignments_) {
        stop = assignment.pageIndex;
        if (!changePage(assignment)) return false;
    }
    return undo.keep();
}

bool Background::changePage(const Assignment& assignment) {
    std::vector<Ref<Value>> added;
    added.reserve(assignment.foreignPage->contents.size());
    for (const std::uint32_t foreignId : assignment.foreignPage->contents) {
        Ref<ObjectRef> ref = added_.find(foreignId);
        if (!ref) {
            return refuse("Failed to retrieve stream reference for ID ", foreignId,
                          " to add to page ", assignment.page);
        }
        added.emplace_back(std::move(ref));
    }
    if (!replacePageContents(assignment.dict, added, saved_)) {
        return refuse("Failed to update page ", assignment.page);
    }
    return true;
}

bool Background::finish() noexcept {
    DocumentState& state = target_.state();
    state.raiseVersion(foreign_->version());
    state.modified = true;
    return true;
}

} // namespace

bool addBackground(OwnDocument& target, const Ref<Document>& foreign, std::uint32_t mode) {
    if (!foreign) return fail(NullArgument);
    return Background(target, foreign, mode).run();
}

} // namespace Libraries::Files::PDF
