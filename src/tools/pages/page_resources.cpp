#include "tools/pages/page_resources.h"

#include "spelling/names.h"
#include "tools/failure.h"
#include "tools/references.h"

#include <utility>

namespace Libraries::Files::PDF::Tools {

bool PageResources::addXObject(const Page& page, std::string_view name,
                               const Ref<ObjectRef>& object) {
    const Ref<Dictionary> named = externalObjects(page);
    if (!named) return false;
    const Ref<Value> former = quietly([&] { return named->find(name); });
    return (former && former->equal(object)) || changes_.set(named, name, object);
}

Ref<Dictionary> PageResources::externalObjects(const Page& page) {
    // Not `page.resources` alone: a page that is listed twice may have got them meanwhile.
    Ref<Dictionary> resources = page.resources;
    if (!resources) {
        resources = Host::cast<Dictionary>(followEntry(document_, *page.dictionary, "Resources"));
    }
    if (!resources) {
        resources = orThrow(Dictionary::create());
        if (!changes_.set(page.dictionary, "Resources", resources)) return nullptr;
    }
    const Ref<Value> former = followEntry(document_, *resources, "XObject");
    Ref<Dictionary> named = Host::cast<Dictionary>(former);
    if (named) return named;
    if (former) return fail(PageInvalid, "XObject is of a wrong kind for page ", page.object);
    named = orThrow(Dictionary::create());
    return changes_.set(resources, "XObject", named) ? named : nullptr;
}

void UnusedNames::avoid(const Document& document, const Ref<Dictionary>& resources) {
    if (!resources || !isNew(resources)) return;
    const auto categories = orThrow(resources->keys());
    for (const auto& category : categories) {
        const Ref<Value> entry = quietly([&] { return resources->find(category); });
        const Ref<Dictionary> named = Host::cast<Dictionary>(follow(document, entry));
        if (!named || !isNew(named)) continue;
        const auto names = orThrow(named->keys());
        for (const auto& name : names) {
            std::string text = name ? Spelling::decodedName(name->utf8()) : std::string();
            if (text.starts_with(stem_)) used_.insert(std::move(text));
        }
    }
}

std::string UnusedNames::next() {
    std::string name;
    do {
        name = stem_ + std::to_string(++last_);
    } while (used_.contains(name));
    return name;
}

bool UnusedNames::isNew(const Ref<Dictionary>& dictionary) {
    if (!seen_.insert(dictionary.get()).second) return false;
    kept_.push_back(dictionary);
    return true;
}

} // namespace Libraries::Files::PDF::Tools
