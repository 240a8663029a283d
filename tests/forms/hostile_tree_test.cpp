#include "document/document_obj.h"
#include "forms/form_file.h"
#include "support/values.h"
#include "values/object.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

constexpr std::uint32_t untouched = 4711;
#ifdef NDEBUG
constexpr std::uint32_t wide = 1'000'000;
#else
constexpr std::uint32_t wide = 100'000; // a build without optimization takes its time
#endif

using Kids = std::vector<std::uint32_t>;
using KidsOf = std::function<Kids(std::uint32_t id)>;

/// A document of five objects and `count` fields, of which the form lists the first, number 6.
Ref<Document> treeOf(std::uint32_t count, const KidsOf& kidsOf) {
    const auto document = Testing::open(Testing::formFile("<< /Fields [ 6 0 R ] >>", {}));
    auto& objects = dynamic_cast<DocumentObj&>(*document).state().objects;
    const auto label = newValue<StringObj>("f"_str);
    for (std::uint32_t id = 6; id < 6 + count; ++id) {
        const auto kids = newValue<ArrayObj>();
        for (const std::uint32_t kid : kidsOf(id))
            kids->add(Testing::reference(kid, 0));
        const auto field =
            Testing::dictionary({{"FT", Testing::name("Tx")}, {"T", label}, {"Kids", kids}});
        objects.append(Host::make<ObjectObj>(id, std::uint16_t{0}, field));
    }
    return document;
}

// Deep enough that no walk down, one call for each level, fits into the stack.
TEST(HostileTree, IsBuiltAndReleasedWithBoundedStack) {
    constexpr std::uint32_t deep = 200'000;
    auto document = treeOf(deep, [](auto id) { return id < deep + 5 ? Kids{id + 1} : Kids{}; });
    Host::Error::set(untouched);
    Ref<Form> form = document->form();
    ASSERT_TRUE(form);
    EXPECT_EQ(Host::Error::get(), untouched);
    std::uint64_t depth = 0;
    for (Ref<Field> field = form->field(0); field; field = field->child(0))
        ++depth;
    EXPECT_EQ(depth, deep);
    const Ref<Field> kept = form->field(0)->child(0);
    document = nullptr;
    form = nullptr;
    EXPECT_EQ(kept->childCount(), 1U);
}

TEST(HostileTree, MayBeAMillionWide) {
    const auto document =
        treeOf(wide / 4, [](auto id) { return id == 6 ? Kids(wide, 7) : Kids{}; });
    Host::Error::set(untouched);
    const auto form = document->form();
    ASSERT_TRUE(form);
    EXPECT_EQ(Host::Error::get(), untouched);
    EXPECT_EQ(form->field(0)->childCount(), wide);
    EXPECT_EQ(form->fieldByPath("f.f"_str), form->field(0)->child(0));
}

TEST(HostileTree, HasAtMostFourFieldsForEachObject) {
    const struct {
        const char* name;
        std::uint32_t count;
        KidsOf kidsOf;
        std::uint64_t messages; ///< one for each level that fails
    } rows[] = {
        {"as many", 2, [](auto id) { return id == 6 ? Kids(27, 7) : Kids{}; }, 0},
        {"one too many", 2, [](auto id) { return id == 6 ? Kids(28, 7) : Kids{}; }, 2},
        {"its own kid", 50'000, [](auto id) { return Kids{id}; }, 200'021},
        {"kid of its kid", 2, [](auto id) { return Kids{13 - id}; }, 29},
        {"doubling", 41, [](auto id) { return id < 46 ? Kids(2, id + 1) : Kids{}; }, 40},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto document = treeOf(row.count, row.kidsOf);
        Testing::RecordingLog log;
        Host::Error::set(untouched);
        const auto form = document->form();
        ASSERT_TRUE(form);
        const bool refused = row.messages != 0;
        EXPECT_EQ(Host::Error::get(), refused ? std::uint32_t{FormIncomplete} : untouched);
        EXPECT_EQ(form->fieldCount(), refused ? 0U : 1U);
        EXPECT_EQ(std::ranges::count(Testing::formMessages(log), '\n'), row.messages);
    }
}

} // namespace
