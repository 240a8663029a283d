#include "compose/resources.h"

#include "document/document_obj.h"
#include "support/document_builder.h"
#include "support/recording_log.h"
#include "values/dictionary.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Testing::DocumentBuilder;
using Testing::textOf;
using Testing::valueOf;

Ref<Document> with(std::string_view resources, std::string_view other) {
    return Testing::open(DocumentBuilder::minimal().object(5, resources).object(6, other).bytes());
}

struct Merge {
    const char* name;
    const char* target;
    const char* added;
    const char* result; ///< what the target then is; null where the merge is refused
    const char* log;
};

const Merge merges[] = {
    {"NewCategories", "<< >>", "<< /Font << /F 1 >> /ProcSet [/PDF] >>",
     "<< Font -> << F -> 1.0 >> ProcSet -> [PDF ] >>", ""},
    {"ElementsOnce", "<< /ProcSet [/PDF] >>", "<< /ProcSet [/PDF /Text /Text] >>",
     "<< ProcSet -> [PDFText ] >>", ""},
    {"EqualName", "<< /Font << /F << /A 1 >> >> >>", "<< /Font << /F << /A 1 >> >> >>",
     "<< Font -> << F -> << A -> 1.0 >> >> >>", "Resource is equal, reusing: F\n"},
    {"EqualReference", "<< /Font << /F 2 0 R >> >>", "<< /Font << /F 2 0 R >> >>",
     "<< Font -> << F -> 2 (0) >> >>", "Resource is equal, reusing: F\n"},
    {"OtherReference", "<< /Font << /F 2 0 R >> >>", "<< /Font << /F 4 0 R >> >>", nullptr,
     "A resource already exists with name F of resource to add Font\n"},
    {"NameOfOtherCategory", "<< /Font << /N 1 >> >>", "<< /XObject << /N 1 >> >>", nullptr,
     "A resource already exists with name N of resource to add XObject\n"},
    {"SameNewNameTwice", "<< >>", "<< /Font << /N 1 >> /XObject << /N 2 >> >>",
     "<< Font -> << N -> 1.0 >> XObject -> << N -> 2.0 >> >>", ""},
    {"Copied", "<< /Font << /G 1 >> >>", "<< /Font << /F 4 0 R >> >>",
     "<< Font -> << F -> 7 (0) G -> 1.0 >> >>", ""},
    {"BehindReferences", "<< /Font 6 0 R >>", "<< /Font 6 0 R >>", "<< Font -> 6 (0) >>",
     "Resource is equal, reusing: Z\n"},
    {"ArrayExpected", "<< /ProcSet [/PDF] >>", "<< /ProcSet << >> >>", nullptr,
     "Original resource expects an Array, but resource to add provides a Dictionary for "
     "ProcSet\n"},
    {"DictionaryExpected", "<< /Font << >> >>", "<< /Font [1] >>", nullptr,
     "Original resource expects a Dictionary, but resource to add provides an Array for "
     "Font\n"},
    {"TargetOfOtherKind", "<< /Font 1 >>", "<< >>", nullptr,
     "Invalid type of resource entry Font has invalid type 3h (3)\n"},
    {"TargetObjectOfOtherKind", "<< /Font 4 0 R >>", "<< >>", nullptr,
     "Object Font has invalid type 7h (7)\n"},
    {"TargetUnresolved", "<< /Font 99 0 R >>", "<< >>", nullptr,
     "Failed to resolve object reference 99 (0)\n"},
    {"AddedOfOtherKind", "<< >>", "<< /Font 1 >>", nullptr,
     "Font of resources to add has invalid type for resource: 3h (3)\n"},
    {"AddedUnresolved", "<< >>", "<< /Font 99 0 R >>", nullptr,
     "Failed to resolve object reference 99 (0)\n"},
    {"NameNotCopied", "<< >>", "<< /Font << /F 99 0 R >> >>", nullptr,
     "Failed to resolve to be cloned object reference: 99 (0)\n"
     "Failed to clone value of F of resource to add Font\n"},
    {"ElementNotCopied", "<< >>", "<< /ProcSet [/PDF 99 0 R] >>", nullptr,
     "Failed to resolve to be cloned object reference: 99 (0)\n"
     "Failed to clone array value 1h (1) of resource to add: ProcSet\n"}};

TEST(ResourceMerging, AddsOrRefuses) {
    for (const Merge& row : merges) {
        SCOPED_TRACE(row.name);
        const Ref<Document> document = with(row.target, "<< /Z 1 >>");
        const Ref<Document> foreign = with(row.added, "<< /Y 2 /Z 1 >>");
        Cloner cloner(dynamic_cast<DocumentObj&>(*document).state(), *document);
        const Ref<Dictionary> target = castTo<Dictionary>(valueOf(*document, 5));
        const Ref<Dictionary> added = castTo<Dictionary>(valueOf(*foreign, 5));

        Testing::RecordingLog log;
        const bool merged = ResourceMerge(*document, cloner).merge(*target, *added, foreign);
        EXPECT_EQ(merged, row.result != nullptr);
        EXPECT_EQ(log.text(), row.log);
        if (!merged) continue;
        EXPECT_EQ(textOf(target), row.result);
        if (row.name == std::string_view("BehindReferences")) {
            EXPECT_EQ(textOf(valueOf(*document, 6)), "<< Y -> 2.0 Z -> 1.0 >>");
        }
    }
}

TEST(ResourceMerging, WithItselfChangesNothingAndEnds) {
    const Ref<Document> document = with("<< /Font << /F 4 0 R >> /ProcSet [/A /B] >>", "1");
    Cloner cloner(dynamic_cast<DocumentObj&>(*document).state(), *document);
    const Ref<Dictionary> target = castTo<Dictionary>(valueOf(*document, 5));
    const std::string before = textOf(target);
    EXPECT_TRUE(ResourceMerge(*document, cloner).merge(*target, *target, document));
    EXPECT_EQ(textOf(target), before);
}

TEST(PageResources, AreFoundOrRefused) {
    struct Row {
        const char* node;
        const char* found;
        std::uint32_t code;
        const char* log;
    };
    const Row rows[] = {
        {"<< >>", "(null)", KeyNotFound, ""},
        {"<< /Resources << /A 1 >> >>", "<< A -> 1.0 >>", 0, ""},
        {"<< /Resources 6 0 R >>", "<< B -> 2.0 >>", 0, ""},
        {"<< /Resources 99 0 R >>", "(null)", ObjectUnreadable,
         "Failed to retrieve resource object\n"},
        {"<< /Resources [1] >>", "(null)", ObjectUnreadable,
         "Invalid type for page resource: 8h (8)\n"},
        {"<< /Resources 4 0 R >>", "(null)", ObjectUnreadable,
         "Expected value of type 6h (6)\n, but got one of type 7h (7)\n"
         "Failed to retrieve resource object dictionary\n"},
    };
    for (const Row& row : rows) {
        const Ref<Document> document = with(row.node, "<< /B 2 >>");
        Testing::RecordingLog log;
        Host::Error::set(0);
        const auto node = castTo<Dictionary>(valueOf(*document, 5));
        EXPECT_EQ(textOf(pageResources(*node, *document)), row.found) << row.node;
        EXPECT_EQ(Host::Error::get(), row.code) << row.node;
        EXPECT_EQ(log.text(), row.log) << row.node;
    }
}

} // namespace
