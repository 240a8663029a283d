#include "forms/form_file.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <pthread.h>

namespace {

using namespace Libraries::Files::PDF;
using namespace Host::Literals;
using Testing::RecordingLog;

constexpr std::uint32_t untouched = 4711;

using BodyOf = std::function<std::string(std::uint32_t id)>;

/// A document of `count` objects from number 3 on, which is the form's only field.
std::string treeFile(std::uint32_t count, const BodyOf& bodyOf) {
    std::string file = "%PDF-1.7\n";
    std::string table = "0000000000 65535 f \n";
    const auto add = [&](std::uint32_t id, const std::string& body) {
        char entry[32];
        std::snprintf(entry, sizeof(entry), "%010zu 00000 n \n", file.size());
        table += entry;
        file += std::to_string(id) + " 0 obj\n" + body + "\nendobj\n";
    };
    add(1, "<< /Type /Catalog /Pages 2 0 R /AcroForm << /Fields [ 3 0 R ] >> >>");
    add(2, "<< /Type /Pages /Count 0 /Kids [ ] >>");
    for (std::uint32_t id = 3; id < count + 3; ++id)
        add(id, bodyOf(id));
    const std::string start = std::to_string(file.size());
    const std::string size = std::to_string(count + 3);
    file += "xref\n0 " + size + "\n" + table;
    return file + "trailer\n<< /Size " + size + " /Root 1 0 R >>\nstartxref\n" + start +
           "\n%%EOF\n";
}

/// A field whose Kids list one object several times.
std::string field(std::uint32_t kid = 0, unsigned times = 0) {
    std::string text = "<</FT/Tx/T(f)/Kids[";
    for (unsigned time = 0; time < times; ++time)
        text += std::to_string(kid) + " 0 R ";
    return text + "]>>";
}

/// Runs `body` on a thread of so little stack that no walk down a deep tree fits into it.
void onSmallStack(std::function<void()> body) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{512} * 1024);
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::uint64_t depthOf(const Form& form) {
    std::uint64_t depth = 0;
    for (Ref<Field> field = form.field(0); field; field = field->child(0))
        ++depth;
    return depth;
}

TEST(HostileTree, IsBuiltAndReleasedWithBoundedStack) {
    constexpr std::uint32_t deep = 100'000;
    const std::string file =
        treeFile(deep, [](auto id) { return id < deep + 2 ? field(id + 1, 1) : field(); });
    onSmallStack([&] {
        Ref<Document> document = Testing::open(file);
        ASSERT_TRUE(document);
        Host::Error::set(untouched);
        Ref<Form> form = document->form();
        ASSERT_TRUE(form);
        EXPECT_EQ(Host::Error::get(), untouched);
        EXPECT_EQ(depthOf(*form), deep);
        const Ref<Field> kept = form->field(0)->child(0);
        document = nullptr;
        form = nullptr;
        EXPECT_EQ(kept->childCount(), 1U);
    });
}

TEST(HostileTree, MayBeAMillionWide) {
    constexpr std::uint32_t wide = 1'000'000;
    const auto document = Testing::open(treeFile(wide / 4, [](auto id) -> std::string {
        if (id > 4) return "0";
        return id == 3 ? field(4, 1) : field();
    }));
    ASSERT_TRUE(document);
    const auto kids =
        Host::cast<Dictionary>(Testing::valueOf(*document, 3))->findAsArray("Kids"_str);
    while (kids->size() < wide)
        kids->add(kids->get(0));
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
        BodyOf bodyOf;
        std::uint64_t messages; ///< one for each level that fails
    } rows[] = {
        {"as many", 3, [](auto id) { return id == 3 ? field(4, 19) : field(); }, 0},
        {"one too many", 3, [](auto id) { return id == 3 ? field(4, 20) : field(); }, 2},
        {"its own kid", 50'000, [](auto id) { return id == 3 ? field(id, 1) : "0"; }, 200'009},
        {"kid of its kid", 2, [](auto id) { return field(7 - id, 1); }, 17},
        {"doubling", 41, [](auto id) { return id < 43 ? field(id + 1, 2) : field(); }, 39},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        onSmallStack([&] {
            const auto document = Testing::open(treeFile(row.count, row.bodyOf));
            ASSERT_TRUE(document);
            RecordingLog log;
            Host::Error::set(untouched);
            const auto form = document->form();
            ASSERT_TRUE(form);
            const bool refused = row.messages != 0;
            EXPECT_EQ(Host::Error::get(), refused ? std::uint32_t{FormIncomplete} : untouched);
            EXPECT_EQ(form->fieldCount(), refused ? 0U : 1U);
            const std::string messages = Testing::formMessages(log);
            EXPECT_EQ(std::ranges::count(messages, '\n'), row.messages);
        });
    }
}

} // namespace
