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
using namespace Testing;

Ref<Document> with(std::string_view resources, std::string_view other) {
    return open(DocumentBuilder::minimal().object(5, resources).object(6, other).bytes());
}

struct Merge {
    const char* target;
    const char* added;
    std::string result; ///< what the target then is, or the message of a refusal
    const char* note = "";
};

const Merge merges[] = {
    {"<< >>", "<< /Font << /F 1 >> /ProcSet [/PDF] >>",
     "<< Font -> << F -> 1.0 >> ProcSet -> [PDF ] >>"},
    {"<< /ProcSet [/PDF] >>", "<< /ProcSet [/PDF /Text /Text] >>", "<< ProcSet -> [PDFText ] >>"},
    {"<< /Font << /F << /A 1 >> >> >>", "<< /Font << /F << /A 1 >> >> >>",
     "<< Font -> << F -> << A -> 1.0 >> >> >>", "Resource is equal, reusing: F\n"},
    {"<< /Font << /F 2 0 R >> >>", "<< /Font << /F 2 0 R >> >>", "<< Font -> << F -> 2 (0) >> >>",
     "Resource is equal, reusing: F\n"},
    {"<< /Font << /F 2 0 R >> >>", "<< /Font << /F 4 0 R >> >>",
     "A resource already exists with name F of resource to add Font\n"},
    {"<< /Font << /N 1 >> >>", "<< /XObject << /N 1 >> >>",
     "A resource already exists with name N of resource to add XObject\n"},
    {"<< >>", "<< /Font << /N 1 >> /XObject << /N 2 >> >>",
     "<< Font -> << N -> 1.0 >> XObject -> << N -> 2.0 >> >>"},
    {"<< /Font << /G 1 >> >>", "<< /Font << /F 4 0 R >> >>",
     "<< Font -> << F -> 7 (0) G -> 1.0 >> >>"},
    {"<< /Font 6 0 R >>", "<< /Font 6 0 R >>", "<< Font -> 6 (0) >>",
     "Resource is equal, reusing: Z\n"},
    {"<< /ProcSet [/PDF] >>", "<< /ProcSet << >> >>",
     "Original resource expects an Array, but resource to add provides a Dictionary for ProcSet\n"},
    {"<< /Font << >> >>", "<< /Font [1] >>",
     "Original resource expects a Dictionary, but resource to add provides an Array for Font\n"},
    {"<< /Font 1 >>", "<< >>", "Invalid type of resource entry Font has invalid type 3h (3)\n"},
    {"<< /Font 99 0 R >>", "<< >>", "Failed to resolve object reference 99 (0)\n"},
    {"<< >>", "<< /Font 1 >>", "Font of resources to add has invalid type for resource: 3h (3)\n"},
    {"<< >>", "<< /Font << /F 99 0 R >> >>",
     "Failed to resolve to be cloned object reference: 99 (0)\n"
     "Failed to clone value of F of resource to add Font\n"},
    {"<< >>", "<< /ProcSet [/PDF 99 0 R] >>",
     "Failed to resolve to be cloned object reference: 99 (0)\n"
     "Failed to clone array value 1h (1) of resource to add: ProcSet\n"}};

TEST(ResourceMerging, AddsOrRefuses) {
    for (const Merge& row : merges) {
        SCOPED_TRACE(row.target + std::string(" and ") + row.added);
        const Ref<Document> document = with(row.target, "<< /Z 1 >>");
        const Ref<Document> foreign = with(row.added, "<< /Y 2 /Z 1 >>");
        Cloner cloner(dynamic_cast<DocumentObj&>(*document).state(), *document);
        const auto target = castTo<Dictionary>(valueOf(*document, 5));
        const auto added = castTo<Dictionary>(valueOf(*foreign, 5));
        const RecordingLog log;
        const bool merged = ResourceMerge(*document, cloner).merge(*target, *added, foreign);
        EXPECT_EQ(merged ? textOf(target) : log.text(), row.result);
        EXPECT_EQ(merged, row.result.starts_with("<<"));
        if (!merged) continue;
        EXPECT_EQ(log.text(), row.note);
        const bool behindReference = row.result == "<< Font -> 6 (0) >>";
        EXPECT_EQ(textOf(valueOf(*document, 6)),
                  behindReference ? "<< Y -> 2.0 Z -> 1.0 >>" : "<< Z -> 1.0 >>");
        // With itself it ends, and changes nothing.
        EXPECT_TRUE(ResourceMerge(*document, cloner).merge(*target, *target, document));
        EXPECT_EQ(textOf(target), row.result);
    }
}

TEST(PageResources, AreFoundOrRefused) {
    const struct {
        const char* node;
        const char* found;
        std::uint32_t code;
        const char* log = "";
    } rows[] = {
        {"<< >>", "(null)", KeyNotFound},
        {"<< /Resources << /A 1 >> >>", "<< A -> 1.0 >>", 0},
        {"<< /Resources 6 0 R >>", "<< B -> 2.0 >>", 0},
        {"<< /Resources [1] >>", "(null)", ObjectUnreadable,
         "Invalid type for page resource: 8h (8)\n"},
        {"<< /Resources 4 0 R >>", "(null)", ObjectUnreadable,
         "Expected value of type 6h (6)\n, but got one of type 7h (7)\n"
         "Failed to retrieve resource object dictionary\n"},
    };
    for (const auto& row : rows) {
        const Ref<Document> document = with(row.node, "<< /B 2 >>");
        RecordingLog log;
        Host::Error::set(0);
        const auto node = castTo<Dictionary>(valueOf(*document, 5));
        EXPECT_EQ(textOf(pageResources(*node, *document)), row.found) << row.node;
        EXPECT_EQ(Host::Error::get(), row.code) << row.node;
        EXPECT_EQ(log.text(), row.log) << row.node;
    }
}

} // namespace
