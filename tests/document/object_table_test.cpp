#include "document/object_table.h"

#include "values/kind.h"
#include "values/object.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using namespace Libraries::Files::PDF;
using Identity = std::pair<std::uint32_t, std::uint16_t>;

/// The object that a walk from the front finds.
const Object* walked(const ObjectTable& table, Identity identity) {
    for (const ObjectTable::Slot& slot : table.slots()) {
        if (Identity(slot.object->id(), slot.object->generation()) == identity)
            return slot.object.get();
    }
    return nullptr;
}

void expectLookupsAgree(const ObjectTable& table, const char* name) {
    for (const std::uint32_t id : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 90U, UINT32_MAX}) {
        for (const auto generation : std::initializer_list<std::uint16_t>{0, 1, 65535}) {
            EXPECT_EQ(table.find(id, generation), walked(table, {id, generation}))
                << name << ": " << id << " " << generation;
        }
    }
}

TEST(ObjectTable, FindsWhatAWalkFinds) {
    const std::tuple<const char*, std::vector<Identity>, bool> rows[] = {
        {"empty", {}, true},
        {"dense", {{5, 0}, {6, 1}, {7, 0}}, true},
        {"gaps", {{1, 0}, {3, 0}, {4, 65535}, {90, 0}, {UINT32_MAX, 0}}, true},
        {"unordered", {{3, 0}, {1, 0}, {2, 0}}, false},
        {"duplicates", {{1, 0}, {2, 0}, {2, 1}, {2, 0}, {3, 0}}, false},
    };
    for (const auto& [name, objects, ascending] : rows) {
        ObjectTable table;
        for (const auto& [id, generation] : objects)
            table.append(newValue<ObjectObj>(id, generation, nullptr));
        EXPECT_EQ(table.ascending(), ascending) << name;
        expectLookupsAgree(table, name);

        ObjectTable cut = table;
        cut.truncate(1);
        EXPECT_TRUE(cut.ascending()) << name;
        cut.append(newValue<ObjectObj>(4U, std::uint16_t{1}, nullptr));
        expectLookupsAgree(cut, name);

        EXPECT_FALSE(table.remove(8, 0)) << name;
        for (std::vector<Identity> rest = objects; !rest.empty();) {
            const auto [id, generation] = rest.back();
            rest.erase(std::ranges::find(rest, Identity(id, generation)));
            EXPECT_TRUE(table.remove(id, generation)) << name;
            EXPECT_TRUE(std::ranges::equal(rest, table.slots(), {}, {}, [](const auto& slot) {
                return Identity(slot.id, slot.generation);
            })) << name;
            expectLookupsAgree(table, name);
        }
    }
}

} // namespace
