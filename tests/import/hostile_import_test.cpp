// Documents that nobody vouches for: libqpdf alone would take gigabytes, hours or the whole stack.

#include "import/modern_file.h"
#include "support/testing.h"

#include <pdf/import.h>

#include <algorithm>
#include <array>
#include <future>

namespace {

using namespace Support;
using Import::normalise;

constexpr std::uint32_t done = Host::NoError;

std::uint32_t codeOf(const std::string& bytes) {
    Host::Error::set(done);
    const auto result = normalise(stripeOf(bytes));
    return result ? done : Host::Error::get();
}

TEST(HostileImport, ReadsNothingAgainAndAgain) {
    // Each object is a string that only the end of the stream ends.
    std::string offsets;
    std::vector<std::uint32_t> held;
    for (std::uint32_t id = 10; id < 50'000; ++id) {
        held.push_back(id);
        offsets += std::to_string(id) + " " + std::to_string(id) + " ";
    }
    const std::string data = deflated(offsets + std::string(50'000, '('));
    const std::string entries = "/Filter /FlateDecode /First " + std::to_string(offsets.size()) +
                                " /Length " + std::to_string(data.size());
    EXPECT_EQ(codeOf(ModernFile().objectStream(8, held, entries, data).bytes()), BeyondRepair);

    // The end of each stream is looked for up to the end of the file.
    DocumentBuilder endless = DocumentBuilder::minimal();
    for (std::uint32_t id = 5; id < 4'000; ++id)
        endless.object(id, "<< /Length 9 >>\nstream\nxxxxxxxxxxxx");
    endless.object(1, "<< /Type /Catalog /Pages 2 0 R /X [ " + references(5, 3'995) + "] >>");
    std::string unended = endless.bytes();
    for (std::size_t at = 0; (at = unended.find("endobj", at)) != std::string::npos;)
        unended.replace(at, 6, "unbobj");
    EXPECT_EQ(codeOf(unended), BeyondRepair);

    // To know how long a stream is takes another stream, or an object stream.
    DocumentBuilder chain = DocumentBuilder::minimal();
    chain.object(1, "<< /Type /Catalog /Pages 2 0 R /X 5 0 R >>");
    for (std::uint32_t id = 5; id < 8'000; ++id) {
        const std::string next = std::to_string(id + 1) + " 0 R";
        chain.object(id, "<< /Length " + next + " >>\nstream\n\nendstream");
    }
    EXPECT_EQ(codeOf(chain.bytes()), BeyondRepair);
    ModernFile nested;
    nested.objectStream(7, {9}, "/First 4 /Length 10 0 R", "9 0 null");
    nested.objectStream(8, {10}, "/First 5 /Length 6", "10 0 8");
    std::string bytes = nested.bytes();
    EXPECT_EQ(codeOf(bytes), BeyondRepair);
    bytes.replace(bytes.find("7 0 obj\n"), 8, "7 0%obj\n");
    bytes.replace(bytes.find("<< /Type /ObjStm /N"), 19, "obj<</Type/ObjStm/N");
    EXPECT_EQ(codeOf(bytes), BeyondRepair) << "the keyword in a comment";

    // A ring and a long way down, both in the page tree; and values that nest.
    DocumentBuilder tree = DocumentBuilder::minimal();
    for (std::uint32_t id = 5; id < 8'000; ++id)
        tree.object(id, "<< /Kids [ " + std::to_string(id + 1) + " 0 R 2 0 R ] >>");
    tree.object(2, "<< /Type /Pages /Kids [ 3 0 R 5 0 R 2 0 R ] /Count 1 >>");
    EXPECT_EQ(codeOf(tree.bytes()), done);
    const std::string deep(100'000, '[');
    EXPECT_EQ(codeOf(DocumentBuilder::minimal().object(4, deep).bytes()), done);
}

TEST(HostileImport, TakesAnythingCutOrChanged) {
    const std::string bytes =
        ModernFile().objectStream(8, {9}, "/First 4 /Length 14", "9 0 << /A 1 >>").bytes();
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ 0x15);
        for (const std::string& input : {bytes.substr(0, at), changed}) {
            const auto result = normalise(stripeOf(input));
            if (!result) continue;
            EXPECT_TRUE(Support::open(contentsOf(result))) << at;
        }
    }
}

void expectFaultsSurvived(const std::string& bytes) {
    const auto source = Host::make<FailingStripe>(stripeOf(bytes));
    const auto target = Host::make<FailingStripe>(Host::MemoryStripe::create());
    ASSERT_TRUE(normalise(source, target));
    using Call = FailingStripe::Call;
    const std::tuple<FailingStripe*, Call, FailingStripe::Fault, std::uint32_t> rows[] = {
        {source.get(), Call::Read, FailingStripe::Fault::Failed, SourceNotRead},
        {source.get(), Call::Read, FailingStripe::Fault::Short, SourceNotRead},
        {source.get(), Call::Read, FailingStripe::Fault::NoByte, SourceNotRead},
        {source.get(), Call::Seek, FailingStripe::Fault::Misplaced, SourceNotRead},
        {target.get(), Call::Write, FailingStripe::Fault::Failed, TargetNotWritten},
        {target.get(), Call::Write, FailingStripe::Fault::Short, TargetNotWritten},
    };
    for (const auto& [stripe, call, fault, code] : rows) {
        stripe->failAt(call, 0);
        ASSERT_TRUE(normalise(source, target));
        const std::uint64_t calls = stripe->calls(call);
        ASSERT_GT(calls, 0U);
        for (std::uint64_t number = 1; number <= calls; ++number) {
            stripe->failAt(call, number, fault);
            EXPECT_FALSE(normalise(source, target)) << number;
            EXPECT_EQ(Host::Error::get(), code) << number;
        }
        stripe->failAt(call, 0);
    }
}

TEST(HostileImport, SurvivesFaultsOfStripes) {
    for (const char* name : {"modern/object-streams-office.pdf", "modern/trailer-on-one-line.pdf"})
        expectFaultsSurvived(sample(name));
}

TEST(HostileImport, RunsOnManyThreads) {
    const std::string bytes = sample("modern/encrypted-empty-password.pdf");
    const std::string wanted = contentsOf(normalise(stripeOf(bytes)));
    const auto import = [&] { return contentsOf(normalise(stripeOf(bytes))); };
    std::array<std::future<std::string>, 4> imports;
    std::ranges::generate(imports, [&] { return std::async(std::launch::async, import); });
    for (auto& result : imports)
        EXPECT_TRUE(result.get() == wanted);
}

} // namespace
