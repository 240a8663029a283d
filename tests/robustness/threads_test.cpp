// Different documents on different threads at once, which the thread sanitizer watches.

#include "support/testing.h"

#include <algorithm>
#include <thread>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

namespace {

/// Everything that can be done to a document, and what is written in the end.
std::string workOn(const std::string& bytes) {
    const auto document = Support::open(bytes);
    if (!document) return {};
    static_cast<void>(document->getPages());
    static_cast<void>(document->getObject(nullptr)); // sets this thread's error code
    const std::uint32_t code = Host::Error::get();
    for (const auto& object : document->getObjects())
        static_cast<void>(object->value()->asText());
    if (const auto form = document->form()) static_cast<void>(form->fieldByPath("none"_str));
    static_cast<void>(document->setCompression(Compression::None));
    static_cast<void>(document->setCompression(Compression::FlateDecode));
    static_cast<void>(document->addBackground(Support::open(bytes), 1));
    static_cast<void>(document->cacheStreamData());
    return Support::write(*document) + std::to_string(code);
}

TEST(Threads, DocumentsAreIndependent) {
    const std::vector<std::string> names = Support::sampleNames();
    std::vector<std::string> bytes;
    std::vector<std::string> expected;
    for (const std::string& name : names) {
        bytes.push_back(Support::sample(name));
        expected.push_back(workOn(bytes.back()));
        ASSERT_FALSE(expected.back().empty()) << name;
    }
    constexpr std::size_t threadCount = 4;
    std::vector<std::string> faulty(threadCount);
    std::vector<Ref<Document>> kept(threadCount); // released by another thread than made them
    std::vector<std::thread> threads;
    for (std::size_t number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            kept[number] = Support::open(bytes[number % bytes.size()]);
            for (std::size_t step = 0; step < 2 * names.size(); ++step) {
                const std::size_t index = (step + number) % names.size();
                if (workOn(bytes[index]) != expected[index]) faulty[number] += names[index] + ' ';
            }
        });
    }
    std::ranges::for_each(threads, &std::thread::join);
    for (const std::string& fault : faulty)
        EXPECT_EQ(fault, "");
}

} // namespace
