// Mistakes that must not compile, one for each number; without any, this compiles.
//
// `virtual` behind a number: the mistake is an ignored result of a virtual function, which g++ lets
// pass.

#include <host/files.h>
#include <host/memory_stripe.h>
#include <pdf/document.h>
#include <pdf/tools/files.h>
#include <pdf/tools/pages.h>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

void use(const Ref<Document>& document, const Ref<Dictionary>& dict, const Ref<Value>& value,
         const Ref<Interfaces::Stripe>& stripe, const Ref<Host::FileTarget>& target,
         const Host::ByteBuffer& buffer, std::uint32_t number) {
    (void)value, (void)buffer, (void)number;
    (void)document->write(stripe);
    (void)dict->set("A"_str, dict->find("B"_str));
    (void)(target && target->commit());
    for (const auto& key : dict->keys())
        (void)key->length();
    for (const auto& page : Tools::Pages::of(document).value())
        (void)page;
#if MISUSE == 1 // the way down without a cast
    const Ref<Dictionary> narrowed = value;
#elif MISUSE == 2 // a reference nobody took
    const Ref<Value> taken = value.get();
#elif MISUSE == 3 // deleting what others hold
    delete dynamic_cast<StreamObj*>(value.get());
#elif MISUSE == 4 // a counted object that no handle can hold
    const StreamObj stream(dict, number);
#elif MISUSE == 5
    Host::MemoryStripe memory{Host::ByteBuffer()};
#elif MISUSE == 6  // copying what is shared
    const StreamObj copy(static_cast<const StreamObj&>(*value));
#elif MISUSE == 7  // copying what may be large
    const Host::ByteBuffer bytes = buffer;
#elif MISUSE == 8  // a number that would lose what is behind its point
    (void)Number::create(0.25);
#elif MISUSE == 9  // text whose encoding nobody said
    (void)dict->find("\u00C4"_str);
#elif MISUSE == 10 // what is no value
    (void)dict->set("Count"_str, number);
#elif MISUSE == 11 // a platform text where a string of the document belongs
    (void)dict->set("Title"_str, Host::String::create("title"));
#elif MISUSE == 12 // a compression by number
    (void)document->setCompression(number);
#elif MISUSE == 13 // a path where a stripe belongs
    (void)Document::create("in.pdf");
#elif MISUSE == 14 // a handle as a number
    const int truth = value;
#elif MISUSE == 15 // making an interface
    const Ref<Value> made = Host::make<Dictionary>();
#elif MISUSE == 16 // losing a failure
    Host::FileTarget::create("out.pdf");
#elif MISUSE == 17 // virtual
    document->write(stripe);
#elif MISUSE == 18 // virtual
    target->commit();
#elif MISUSE == 19 // virtual
    dict->set("A"_str, value);
#elif MISUSE == 20 // virtual
    document->setCompression(Compression::None);
#elif MISUSE == 21 // a vector that is gone before the loop begins
    for (const auto& key : *dict->keys())
        (void)key->length();
#elif MISUSE == 22 // a vector that is gone when its name is used
    const std::vector<Ref<Host::String>>& keys = *dict->keys();
#elif MISUSE == 23 // two vectors that are gone
    for (auto key = dict->keys().begin(); key != dict->keys().end(); ++key)
        (void)key;
#elif MISUSE == 24 // losing what a tool failed with
    Tools::save(document, "out.pdf");
#elif MISUSE == 25 // a value that nobody knows to be there
    const Ref<Dictionary> entries = Tools::get<Dictionary>(document, dict, "A");
#endif
}
