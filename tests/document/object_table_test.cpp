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
        const Object& object = *slot.object;
        if (object.id() == identity.first && object.generation() == identity.second) return &object;
    }
    return nullptr;
}

void expectLookupsAgree(const ObjectTable& table, const char* name) {
    for (const std::uint32_t id : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U, 90U, UINT32_MAX}) {
        for (const std::uint16_t generation : {0, 1, 65535}) {
            EXPECT_EQ(table.find(id, generation), walked(table, {id, generation}))
                << name << ": " << id << " " << generation;
        }
    }
}

TEST(ObjectTable, FindsWhatAWalkFinds) {
    const struct {
        const char* name;
        std::vector<Identity> objects;
        bool ascending;
    } rows[] = {
        {"empty", {}, true},
        {"dense", {{5, 0}, {6, 1}, {7, 0}}, true},
        {"gaps", {{1, 0}, {3, 0}, {4, 65535}, {90, 0}, {UINT32_MAX, 0}}, true},
        {"unordered", {{3, 0}, {1, 0}, {2, 0}}, false},
        {"duplicates", {{1, 0}, {2, 0}, {2, 1}, {2, 0}, {3, 0}}, false},
    };
    for (const auto& row : rows) {
        ObjectTable table;
        for (const Identity& identity : row.objects)
            table.append(newValue<ObjectObj>(identity.first, identity.second, nullptr));
        EXPECT_EQ(table.ascending(), row.ascending) << row.name;
        expectLookupsAgree(table, row.name);

        ObjectTable cut = table;
        cut.truncate(1);
        EXPECT_TRUE(cut.ascending()) << row.name;
        expectLookupsAgree(cut, row.name);
        cut.append(newValue<ObjectObj>(4U, std::uint16_t{1}, nullptr));
        expectLookupsAgree(cut, row.name);

        EXPECT_FALSE(table.remove(8, 0)) << row.name;
        std::vector<Identity> rest = row.objects;
        while (!rest.empty()) {
            const Identity last = rest.back();
            rest.erase(std::ranges::find(rest, last));
            EXPECT_TRUE(table.remove(last.first, last.second)) << row.name;
            EXPECT_TRUE(std::ranges::equal(rest, table.slots(), {}, {}, [](const auto& slot) {
                return Identity(slot.id, slot.generation);
            })) << row.name;
            expectLookupsAgree(table, row.name);
        }
    }
}

} // namespace
