#include "compose/background_resources.h"

#include "values/dictionary.h"
#include "values/failure.h"

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// Gives a node that has no resources an empty dictionary for them.
bool makeResources(Dictionary& node, Ref<Dictionary>& resources) {
    if (resources) return true;
    Ref<Dictionary> made = makeOrThrow<DictionaryObj>();
    if (!node.set("Resources"_str, made)) return false;
    resources = std::move(made);
    return true;
}

} // namespace

bool BackgroundResources::findTreeResources(const Ref<Dictionary>& pageTree) {
    pageTree_ = pageTree;
    if (!findResources(*pageTree_, *self_, treeResources_)) {
        return fail(PageTreeInvalid, "Failed to retrieve page catalog resource dictionary");
    }
    return true;
}

bool BackgroundResources::mergeInto(Assignment& assignment) {
    const Ref<Object>& page = assignment.page;
    assignment.dict = page->valueAsDictionary();
    if (!assignment.dict) {
        return fail(PageInvalid, "Failed to retrieve page dictionary for page ", page);
    }
    Ref<Dictionary> resources;
    if (!findResources(*assignment.dict, *self_, resources)) {
        return fail(PageInvalid, "Failed to retrieve resources for page ", page);
    }
    Ref<Dictionary> foreignResources;
    const ForeignPage& foreignPage = *assignment.foreignPage;
    if (!findResources(*foreignPage.dict, *foreign_, foreignResources)) {
        return fail(PageInvalid, "Failed to retrieve resources for foreign page ",
                    foreignPage.index);
    }
    if (!foreignResources) {
        foreignTreeNeeded_ = true;
        return true;
    }
    return mergeIntoPage(assignment, std::move(resources), *foreignResources);
}

bool BackgroundResources::mergeIntoPage(Assignment& assignment, Ref<Dictionary> resources,
                                        const Dictionary& foreignResources) {
    const Ref<Object>& page = assignment.page;
    if (!makeResources(*assignment.dict, resources)) {
        return fail(StepFailed, "Failed to set resource dictionary for page ", page);
    }
    // A page with resources of its own no longer inherits any.
    if (treeResources_ && !merge_.merge(*resources, *treeResources_, self_)) {
        return fail(StepFailed, "Failed to integrate page catalog resources into page ", page);
    }
    if (!merge_.merge(*resources, foreignResources, foreign_)) {
        return fail(StepFailed, "Failed to add resources of foreign page ",
                    assignment.foreignPage->index, " to page ", page);
    }
    return true;
}

bool BackgroundResources::mergeTrees() {
    if (!foreignTreeNeeded_) return true;
    const Ref<Object> pageTree = foreign_->getPageCatalog();
    if (!pageTree) {
        return fail(PageTreeInvalid, "Failed to retrieve foreign page catalog object");
    }
    const Ref<Dictionary> dict = pageTree->valueAsDictionary();
    if (!dict) {
        return fail(PageTreeInvalid, "Failed to retrieve foreign page catalog dictionary");
    }
    Ref<Dictionary> resources;
    if (!findResources(*dict, *foreign_, resources)) {
        return fail(PageTreeInvalid, "Failed to retrieve foreign page catalog resource dictionary");
    }
    if (!resources) return true;
    if (!makeResources(*pageTree_, treeResources_)) {
        return fail(StepFailed,
                    "Failed to create new resource dictionary for page catalog dictionary");
    }
    if (!merge_.merge(*treeResources_, *resources, foreign_)) {
        return fail(StepFailed, "Failed to add resources to page catalog resource dictionary");
    }
    return true;
}

} // namespace Libraries::Files::PDF
