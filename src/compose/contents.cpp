#include "compose/contents.h"

#include "values/array.h"
#include "values/dictionary.h"
#include "values/failure.h"
#include "values/scalars.h"

#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

bool appendElements(const Ref<Value>& contents, std::vector<Ref<Value>>& list) {
    const Array* array = as<Array>(contents);
    if (array == nullptr) return fail(PageInvalid, "Failed to cast contents array to Array");
    for (std::uint64_t index = 0; index < array->size(); ++index) {
        Ref<Value> element = array->get(index);
        if (!element) return fail(PageInvalid, "Contents element is NULL: ", index);
        list.push_back(std::move(element));
    }
    return true;
}

bool appendFormer(const Ref<Value>& former, std::vector<Ref<Value>>& list) {
    if (!former) return true;
    switch (former->type()) {
    case Value::Type::ObjectRef:
        list.push_back(former);
        return true;
    case Value::Type::Array:
        return appendElements(former, list);
    default:
        return fail(PageInvalid, "Content of page is neither object reference nor array ",
                    former->type());
    }
}

bool restore(Dictionary& page, const Ref<Value>& former) noexcept {
    if (!former) return fail(NullArgument);
    const Value::Type kind = former->type();
    if (kind != Value::Type::ObjectRef && kind != Value::Type::Array) {
        return fail(InvalidArgument,
                    "New content for page is neither object reference nor array: ", kind);
    }
    // The entry exists, so that setting it allocates nothing.
    if (!page.set("Contents"_str, former)) {
        return fail(StepFailed, "Failed to update Contents of page");
    }
    return true;
}

} // namespace

bool replacePageContents(const Ref<Dictionary>& page, const std::vector<Ref<Value>>& added,
                         SavedContents& saved) {
    if (!page) return fail(NullArgument);
    Ref<Value> former = page->find("Contents"_str);
    std::vector<Ref<Value>> list = added;
    if (!appendFormer(former, list)) return false;

    // Saved first, since nothing may fail once the page is changed.
    saved.push_back(std::move(former));
    Ref<Array> contents = Array::create(list);
    if (contents && page->set("Contents"_str, std::move(contents))) return true;
    saved.pop_back();
    return fail(StepFailed, "Failed to set Contents entry");
}

void restorePageContents(const std::vector<Ref<Object>>& pages, const SavedContents& saved,
                         DocumentState& state, std::size_t stop) noexcept {
    for (std::size_t index = 0; index < stop && index < pages.size(); ++index) {
        const Ref<Object>& page = pages[index];
        const Ref<Dictionary> dict = page->valueAsDictionary();
        if (!dict) {
            report(LogLevel::Warning, "Failed to retrieve dictionary of page ", page);
            state.modified = true;
            return;
        }
        if (!restore(*dict, index < saved.size() ? saved[index] : nullptr)) {
            report(LogLevel::Warning, "Failed to restore contents of page ", page);
            state.modified = true;
            return;
        }
    }
}

} // namespace Libraries::Files::PDF
