#include "state/object_table.h"
#include "support/testing.h"

#include <functional>

namespace {

using namespace Support;
using Identity = std::pair<std::uint32_t, std::uint16_t>;

TEST(Navigation, ExplainsWhatIsWrongWithThePageTree) {
    enum Step { Catalog, Tree, Pages };
    enum { Trailer, Root, Kids }; // what is replaced in a good document
    const std::tuple<Step, int, const char*, std::uint32_t, const char*> rows[] = {
        {Catalog, Trailer, "/Root 1", RootMissing, "retrieve root object reference"},
        {Catalog, Trailer, "/Root 9 0 R", RootInvalid, "Document has no root object"},
        {Catalog, Root, "[ ]", RootInvalid, "retrieve root object dictionary"},
        {Catalog, Root, "<< >>", CatalogInvalid, "Root object has no valid Type entry"},
        {Catalog, Root, "<< /Type /catalog >>", CatalogInvalid,
         "Root object Type entry is not of type Catalog. Got: catalog"},
        {Tree, Trailer, "", RootInvalid, "Document has no root object"},
        {Tree, Root, "<< /Type /Catalog >>", CatalogInvalid, "retrieve pages object reference"},
        {Tree, Root, "<< /Type /Catalog /Pages 8 0 R >>", PageTreeInvalid, "retrieve pages object"},
        {Tree, Kids, "12", PageTreeInvalid, "retrieve pages object dictionary"},
        {Tree, Kids, "<< /Type (Pages) >>", PageTreeInvalid,
         "Pages object has no valid Type entry"},
        {Tree, Kids, "<< /Type /Page >>", PageTreeInvalid,
         "Pages object Type entry is not of type Pages. Got: Page"},
        {Pages, Kids, "<< /Type /Pages /Kids 3 0 R >>", PageTreeInvalid,
         "Pages object has no valid Kids entry"},
        {Pages, Kids, "<< /Type /Pages /Kids [3 0 R 3] >>", PageTreeInvalid,
         "retrieve pages object's Kids entry object reference 1h (1)"},
        {Pages, Kids, "<< /Type /Pages /Kids [3 0 R 3 1 R] >>", PageTreeInvalid,
         "resolve page object reference entry 1h (1)"},
    };
    for (const auto& [step, part, replacement, code, message] : rows) {
        DocumentBuilder builder = DocumentBuilder::minimal();
        if (part == Trailer)
            builder.trailer(replacement);
        else
            builder.object(part == Root ? 1 : 2, replacement);
        const auto document = open(builder);
        ASSERT_TRUE(document) << message;
        const RecordingLog log;
        const bool found = step == Catalog ? bool(document->getCatalog())
                           : step == Tree  ? bool(document->getPageCatalog())
                                           : !document->getPages().empty();
        expectFailure(found, code);
        const bool failed = std::islower(static_cast<unsigned char>(message[0])) != 0;
        const std::string last = (failed ? "Failed to " : "") + std::string(message) + "\n";
        EXPECT_TRUE(log.text().ends_with(last)) << log.text() << message;
    }
}

TEST(Navigation, FollowsOneReferenceToADictionary) {
    const auto document = open(DocumentBuilder::minimal()
                                   .object(5, "[5 0 R 1 0 R 9 0 R 6 0 R << /B 2 >> (s)]")
                                   .stream(6, "", "x"));
    ASSERT_TRUE(document);
    const Ref<Array> values = castTo<Array>(valueOf(*document, 5));
    const std::string rows[] = {
        failure(ObjectUnreadable, "Invalid object type 8h (8)\n"),
        "<< Pages -> 2 (0) Type -> Catalog >>",
        failure(ReferenceNotResolved, "Failed to resolve object reference\n"),
        failure(ObjectUnreadable, "Invalid object type 7h (7)\n"),
        "<< B -> 2.0 >>",
        failure(ObjectUnreadable, "Invalid object type 4h (4)\n"),
        failure(NullArgument), // behind the end
    };
    for (std::uint64_t index = 0; index < std::size(rows); ++index) {
        Ref<Dictionary> dict;
        const std::string outcome =
            outcomeOf([&] { return bool(dict = document->valueAsDict(values->get(index))); });
        EXPECT_EQ(dict ? textOf(dict) : outcome, rows[index]) << index;
    }
    expectFailure(document->getObject(nullptr), NullArgument);
}

/// A document of an application's own class.
class ApplicationDocument final : public Document {
public:
    [[nodiscard]] PdfVersion version() const noexcept override { return PdfVersion::V1_7; }
    [[nodiscard]] Ref<Dictionary> trailer() const noexcept override { return nullptr; }
    [[nodiscard]] Ref<Form> form() noexcept override { return nullptr; }
    [[nodiscard]] Ref<PDF::Object> getObject(const Ref<ObjectRef>&) const noexcept override {
        return nullptr;
    }
    bool write(Ref<Interfaces::Stripe>) noexcept override { return false; }
    Ref<Interfaces::Stripe> readStreamData(Ref<Stream>, bool) noexcept override { return nullptr; }
    std::uint32_t writeStreamData(Ref<Stream>, Ref<Interfaces::Stripe>, bool) noexcept override {
        return 0;
    }
    bool cacheStreamData() noexcept override { return false; }
    [[nodiscard]] bool changed() const noexcept override { return false; }
    bool addBackground(Ref<Document>, std::uint32_t) noexcept override { return false; }
    bool setCompression(Compression) noexcept override { return false; }
};

TEST(Document, OffersNoAdditionsToAnApplicationsOwnClass) {
    const auto ours = open(DocumentBuilder::minimal());
    const auto own = Host::makeOrThrow<ApplicationDocument>();
    const auto object = ours->getObjects().at(0);
    const std::pair<const char*, std::function<bool(Document&)>> rows[] = {
        {"getObjects", [](Document& to) { return !to.getObjects().empty(); }},
        {"addObject", [](Document& to) { return bool(to.addObject(number(1))); }},
        {"usedObjects", [](Document& to) { return !to.usedObjects().empty(); }},
        {"removeObject", [&](Document& to) { return to.removeObject(object); }},
        {"raiseVersion", [](Document& to) { return to.raiseVersion(PdfVersion::V2_0); }},
        {"lineEnding", [](Document& to) { return !to.lineEnding().empty(); }},
    };
    for (const auto& row : rows) {
        const auto& call = row.second;
        EXPECT_EQ(outcomeOf([&] { return call(*own); }), failure(NotSupported)) << row.first;
        EXPECT_TRUE(call(*ours)) << row.first;
    }
    own->faithfulNumbers(true);
    EXPECT_FALSE(own->faithfulNumbers());
    EXPECT_EQ(own->metOnReading(Loss::Gaps).count, 0U);
}

TEST(Document, RaisesItsVersion) {
    const std::tuple<PdfVersion, std::uint32_t, const char*, bool> rows[] = {
        {PdfVersion::V1_3, Host::NoError, "%PDF-1.4", false},
        {PdfVersion::V1_4, Host::NoError, "%PDF-1.4", false},
        {PdfVersion::V1_5, Host::NoError, "%PDF-1.5", true},
        {PdfVersion::V2_0, Host::NoError, "%PDF-2.0", true},
        {PdfVersion::Unsupported, InvalidArgument, "%PDF-1.4", false},
        {static_cast<PdfVersion>(9), InvalidArgument, "%PDF-1.4", false},
        {static_cast<PdfVersion>(14), InvalidArgument, "%PDF-1.4", false},
    };
    for (const auto& [asked, code, header, changed] : rows) {
        SCOPED_TRACE(static_cast<std::uint32_t>(asked));
        const auto document = open(DocumentBuilder::minimal().version("1.4"));
        Host::Error::set(Host::NoError);
        EXPECT_EQ(document->raiseVersion(asked), code == Host::NoError);
        EXPECT_EQ(Host::Error::get(), code);
        EXPECT_EQ(document->changed(), changed);
        EXPECT_TRUE(write(*document).starts_with(header));
    }
}

TEST(ObjectTable, FindsWhatAWalkFinds) {
    const std::pair<const char*, std::vector<Identity>> rows[] = {
        {"empty", {}},
        {"dense", {{5, 0}, {6, 1}, {7, 0}}},
        {"gaps", {{1, 0}, {3, 0}, {4, 65535}, {90, 0}, {UINT32_MAX, 0}}},
    };
    for (const auto& [name, objects] : rows) {
        ObjectTable table;
        for (const auto& [id, generation] : objects)
            table.append(id, generation, nullptr);
        for (;; table.truncate(table.size() - 1)) {
            for (const std::uint32_t id : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 90U, UINT32_MAX}) {
                for (const auto generation : std::initializer_list<std::uint16_t>{0, 1, 65535}) {
                    const ObjectTable::Slot* walked = nullptr;
                    for (const ObjectTable::Slot& slot : table.slots())
                        if (slot.id() == id && slot.generation() == generation) walked = &slot;
                    EXPECT_EQ(table.find(id, generation), walked) << name << ": " << id;
                }
            }
            if (table.size() == 0) break;
        }
    }
}

} // namespace
