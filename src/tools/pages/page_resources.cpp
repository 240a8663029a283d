#include "tools/pages/page_resources.h"

#include "spelling/names.h"
#include "tools/failure.h"
#include "tools/new_values.h"
#include "tools/references.h"

#include <utility>

namespace Libraries::Files::PDF::Tools {

void PageResources::addXObject(const Page& page, std::string_view name,
                               const Ref<ObjectRef>& object) {
    changes_.setUnlessEqual(externalObjects(page), name, object);
}

Ref<Dictionary> PageResources::externalObjects(const Page& page) {
    // Not `page.resources` alone: a page that is listed twice may have got them meanwhile.
    const Document& document = changes_.document();
    Ref<Dictionary> resources = page.resources;
    if (!resources) resources = followEntry<Dictionary>(document, page.dictionary, "Resources");
    if (!resources) {
        resources = newDictionary();
        changes_.set(page.dictionary, "Resources", resources);
    }
    const Ref<Value> former = followEntry(document, resources, "XObject");
    Ref<Dictionary> named = Host::cast<Dictionary>(former);
    if (named) return named;
    if (former) fail(PageInvalid, "XObject is of a wrong kind for page ", page.object);
    named = newDictionary();
    changes_.set(resources, "XObject", named);
    return named;
}

void UnusedNames::avoid(const Document& document, const Ref<Dictionary>& resources) {
    if (!resources || !note(resources)) return;
    const auto categories = orThrow(resources->keys());
    for (const auto& category : categories) {
        const Ref<Value> entry = quietly([&] { return resources->find(category); });
        const Ref<Dictionary> named = followTo<Dictionary>(document, entry);
        if (!named || !note(named)) continue;
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

bool UnusedNames::note(const Ref<Dictionary>& dictionary) {
    if (!seen_.insert(dictionary.get()).second) return false;
    kept_.push_back(dictionary);
    return true;
}

} // namespace Libraries::Files::PDF::Tools
