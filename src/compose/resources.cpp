#include "compose/resources.h"

#include "compose/resource_container.h"
#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/look_up.h"
#include "values/scalars.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

using Text = Ref<Host::String>;

/// The categories of the target and every name that any of them uses.
class Survey {
public:
    void add(const Text& category, Container container) {
        categories_.push_back({category, std::move(container)});
    }
    void add(const Text& name) { names_.push_back(name); }
    void finish() {
        std::ranges::sort(categories_, {}, key);
        std::ranges::sort(names_, {}, text);
    }

    [[nodiscard]] Container find(const Host::String& category) const {
        const auto found = std::ranges::lower_bound(categories_, category, {}, key);
        const bool present = found != categories_.end() && *found->name == category;
        return present ? found->container : Container();
    }
    [[nodiscard]] bool knows(const Host::String& name) const {
        return std::ranges::binary_search(names_, name, {}, text);
    }

private:
    struct Category {
        Text name;
        Container container;
    };
    static const Host::String& text(const Text& name) noexcept { return *name; }
    static const Host::String& key(const Category& category) noexcept { return *category.name; }

    std::vector<Category> categories_;
    std::vector<Text> names_;
};

bool surveyNames(const Text& category, const Dictionary& dict, Survey& survey) {
    const auto names = dict.keys();
    if (!names) return refuse("Failed to retrieve keys of resource dictionary ", category);
    for (std::size_t index = 0; index < names->size(); ++index) {
        const Text& name = (*names)[index];
        if (!name) {
            return refuse("Failed to retrieve resource key ", index, " of resoure ", category);
        }
        survey.add(name);
    }
    return true;
}

bool surveyCategory(const Text& category, const Dictionary& target, const Document& self,
                    Survey& survey) {
    const Ref<Value> value = target.find(category);
    if (!value) return refuse("Key not available in original resources: ", category);
    const Container container = targetContainer(category, value, self);
    if (!container) return false;
    survey.add(category, container);
    return !container.dict || surveyNames(category, *container.dict, survey);
}

bool surveyAll(const Dictionary& target, const Document& self, Survey& survey) {
    const auto categories = target.keys();
    if (!categories) return refuse("Failed to retrieve keys of original resources");
    for (std::size_t index = 0; index < categories->size(); ++index) {
        const Text& category = (*categories)[index];
        if (!category) return refuse("Key or original resource is NULL: ", index);
        if (!surveyCategory(category, target, self, survey)) return false;
    }
    survey.finish();
    return true;
}

/// The elements of an array by their text forms. Equal values have the same text form, so that only
/// elements with the same one are compared.
class Elements {
public:
    /// The elements up to the first null, which ends every search that reaches it.
    explicit Elements(const Array& array) {
        for (std::uint64_t place = 0; place < array.size() && !firstNull_; ++place) {
            const Ref<Value> element = array.get(place);
            if (element) {
                add(element);
            } else {
                firstNull_ = place;
            }
        }
    }

    void add(const Ref<Value>& element) { byText_.emplace(textOf(*element), element); }
    [[nodiscard]] bool holdEqual(const Ref<Value>& value) const {
        const auto [first, last] = byText_.equal_range(textOf(*value));
        return std::any_of(first, last,
                           [&](const auto& entry) { return entry.second->equal(value); });
    }
    [[nodiscard]] const std::optional<std::uint64_t>& firstNull() const noexcept {
        return firstNull_;
    }

private:
    static std::string textOf(const Value& value) {
        const Text text = value.asText();
        return text ? text->utf8() : std::string();
    }

    std::unordered_multimap<std::string, Ref<Value>> byText_;
    std::optional<std::uint64_t> firstNull_;
};

/// Adds the resources of one category.
class CategoryMerge {
public:
    CategoryMerge(const Text& category, const Survey& survey, Cloner& cloner,
                  const Ref<Document>& source) noexcept
        : category_(category), survey_(survey), cloner_(cloner), source_(source) {}

    bool merge(Dictionary& resources, const Container& added) {
        Container container = survey_.find(*category_);
        if (!container) container = create(resources, added);
        if (!container) return false;
        if (container.dict && added.dict) return mergeNames(*container.dict, *added.dict);
        if (container.array && added.array) return mergeElements(*container.array, *added.array);
        if (container.array) {
            return refuse("Original resource expects an Array, but resource to add provides a "
                          "Dictionary for ",
                          category_);
        }
        return refuse("Original resource expects a Dictionary, but resource to add provides an "
                      "Array for ",
                      category_);
    }

private:
    Container create(Dictionary& resources, const Container& added) {
        Container container;
        if (added.dict) {
            container.dict = makeOrThrow<DictionaryObj>();
            if (resources.set(category_, container.dict)) return container;
            refuse("Failed to add resource dictionary for ", category_);
        } else {
            container.array = makeOrThrow<ArrayObj>();
            if (resources.set(category_, container.array)) return container;
            refuse("Failed to add resource array for ", category_);
        }
        return {};
    }

    bool mergeNames(Dictionary& target, const Dictionary& added) {
        const auto names = added.keys();
        if (!names) {
            return refuse("Failed to retrieve resource keys of resource to add ", category_);
        }
        return std::ranges::all_of(
            *names, [&](const Text& name) { return mergeName(target, added, name); });
    }

    bool mergeName(Dictionary& target, const Dictionary& added, const Text& name) {
        if (!name) return refuse("Failed to retrieve resource key");
        const Ref<Value> value = added.find(name);
        if (!value) {
            return refuse("Failed to retrieve value of ", name, " of resource to add ", category_);
        }
        if (survey_.knows(*name)) return reuse(target, name, value);
        Ref<Value> copy = cloner_.cloneValue(value, source_);
        if (!copy) {
            return refuse("Failed to clone value of ", name, " of resource to add ", category_);
        }
        if (!target.set(name, std::move(copy))) {
            return refuse("Failed to add cloned value of ", name);
        }
        return true;
    }

    bool reuse(const Dictionary& target, const Text& name, const Ref<Value>& value) {
        // A name that only another category has is a clash too.
        const Ref<Value> own = target.find(name);
        if (!own || !own->equal(value)) {
            return refuse("A resource already exists with name ", name, " of resource to add ",
                          category_);
        }
        report(LogLevel::Note, "Resource is equal, reusing: ", name);
        return true;
    }

    bool mergeElements(Array& target, const Array& added) {
        // Counted first, since both may be the same array.
        const std::uint64_t size = added.size();
        Elements elements(target);
        for (std::uint64_t index = 0; index < size; ++index) {
            if (!mergeElement(target, elements, added.get(index), index)) return false;
        }
        return true;
    }

    bool mergeElement(Array& target, Elements& elements, const Ref<Value>& value,
                      std::uint64_t index) {
        if (!value) {
            return refuse("Array value ", index, " is invalid of resource to add: ", category_);
        }
        if (elements.holdEqual(value)) return true;
        if (elements.firstNull()) {
            return refuse("Array value ", *elements.firstNull(),
                          " is invalid of original resource ", category_);
        }
        Ref<Value> copy = cloner_.cloneValue(value, source_);
        if (!copy || !target.add(copy)) {
            return refuse("Failed to clone array value ", index,
                          " of resource to add: ", category_);
        }
        elements.add(copy);
        return true;
    }

    const Text& category_;
    const Survey& survey_;
    Cloner& cloner_;
    const Ref<Document>& source_;
};

} // namespace

bool findResources(const Dictionary& node, const Document& document, Ref<Dictionary>& resources) {
    const LookedUp entry = lookUp(node, "Resources"_str);
    if (entry.isAbsent()) return true;
    if (!entry.value) {
        return fail(ObjectUnreadable, "Failed to retrieve resources of dictionary");
    }
    if (entry.value->type() == Value::Type::Dictionary) {
        resources = Ref<Dictionary>(as<Dictionary>(entry.value));
        return resources || fail(ObjectUnreadable, "Failed to cast dictionary to Dictionary");
    }
    if (entry.value->type() != Value::Type::ObjectRef) {
        return fail(ObjectUnreadable, "Invalid type for page resource: ", entry.value->type());
    }
    const Ref<Object> object = document.getObject(Ref<ObjectRef>(as<ObjectRef>(entry.value)));
    if (!object) return fail(ObjectUnreadable, "Failed to retrieve resource object");
    resources = object->valueAsDictionary();
    return resources || fail(ObjectUnreadable, "Failed to retrieve resource object dictionary");
}

bool ResourceMerge::merge(Dictionary& target, const Dictionary& added,
                          const Ref<Document>& source) {
    Survey survey;
    if (!surveyAll(target, self_, survey)) return false;
    const auto categories = added.keys();
    if (!categories) return refuse("Failed to retrieve keys of resources to add");
    for (std::size_t index = 0; index < categories->size(); ++index) {
        const Text& category = (*categories)[index];
        if (!category) return refuse("Key of resources to add is NULL: ", index);
        const Ref<Value> value = added.find(category);
        if (!value) return refuse("Key not available in resources to add: ", category);
        const Container container = addedContainer(category, value, *source);
        if (!container) return false;
        if (!CategoryMerge(category, survey, cloner_, source).merge(target, container)) {
            return false;
        }
    }
    return true;
}

} // namespace Libraries::Files::PDF
