#include "forms/form_lookup.h"

#include "forms/form_obj.h"
#include "values/failure.h"

#include <new>
#include <utility>

namespace Libraries::Files::PDF {

using namespace Host::Literals;

namespace {

/// The most fields for each object of the document. A tree with more lists the same fields again
/// and again.
constexpr std::uint64_t fieldsPerObject = 4;

FormLookup found(Ref<Form> form, std::uint32_t code) noexcept {
    return {true, std::move(form), code};
}

FormLookup find(Document& document, const Dictionary& catalog, std::uint64_t objects) {
    const Ref<Value> value = catalog.find("AcroForm"_str);
    if (!value) return found(nullptr, FormNotFound);
    Ref<Dictionary> acroForm = document.valueAsDict(value);
    if (!acroForm) {
        throwIfExhausted();
        report(LogLevel::Error,
               "AcroForm value is not a Dictionary or Object Reference: ", value->type());
        return found(nullptr, BadReference);
    }
    if (!document.gcProxy()) throw std::bad_alloc();
    const auto form = makeOrThrow<FormObj>(document, std::move(acroForm));
    if (form->build(document, fieldsPerObject * objects)) return found(form, Host::NoError);
    report(LogLevel::Error, "Failed to instantiate Form object");
    return found(form, FormIncomplete);
}

} // namespace

Ref<Form> lookUpForm(Document& document, std::uint64_t objects, FormLookup& lookup) {
    if (!lookup.done) {
        const std::uint32_t code = Host::Error::get();
        Host::Error::set(Host::NoError);
        const Ref<PDF::Object> catalog = document.getCatalog();
        if (!catalog) return fail(RootInvalid, "Document has no root object");
        const Ref<Dictionary> dict = catalog->valueAsDictionary();
        if (!dict) return fail(RootInvalid, "Failed to retrieve root object dictionary");
        lookup = find(document, *dict, objects);
        Host::Error::set(code);
    }
    if (lookup.code != Host::NoError) Host::Error::set(lookup.code);
    return lookup.form;
}

} // namespace Libraries::Files::PDF
