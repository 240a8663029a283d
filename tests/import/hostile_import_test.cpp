// Documents that nobody vouches for: libqpdf alone would take gigabytes, hours or the whole stack.

#include "import/modern_file.h"
#include "support/documents.h"
#include "support/failing_stripe.h"

#include <pdf/errors.h>
#include <pdf/import.h>

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace {

using namespace Libraries::Files::PDF;
using Import::normalise;
using Support::deflated;
using Support::DocumentBuilder;
using Support::FailingStripe;
using Support::ModernFile;
using Support::stripeOf;

constexpr std::uint32_t done = Host::NoError;

std::uint32_t codeOf(const std::string& bytes, const Import::Options& options = {}) {
    Host::Error::set(done);
    const auto result = normalise(stripeOf(bytes), options);
    return result ? done : Host::Error::get();
}

/// Spaces behind `data`, which stays what it is, as much as the default limit is.
std::string blown(const std::string& data) {
    return deflated(data + std::string(std::size_t{9} << 20, ' '));
}

std::string twice(const std::string& data) {
    return deflated(blown(data));
}

TEST(HostileImport, BoundsWhatItsStructureHolds) {
    const std::string held = "9 0 << /A 1 >>";
    const std::string flate = "/Filter /FlateDecode /First 4 /Length ";
    const auto inStream = [&](const std::string& data, const std::string& entries) {
        return ModernFile().objectStream(8, {9}, entries + std::to_string(data.size()), data);
    };
    const auto plain = [](const std::string& table) { return table; };
    const ModernFile file = inStream(held, "/First 4 /Length ");
    EXPECT_EQ(codeOf(file.bytes()), done);
    EXPECT_EQ(codeOf(inStream(deflated(held), flate).bytes()), done);
    EXPECT_EQ(codeOf(inStream(blown(held), flate).bytes()), LimitExceeded);
    EXPECT_EQ(codeOf(file.bytes("/Filter /FlateDecode", blown)), LimitExceeded);
    EXPECT_EQ(codeOf(file.bytes("/Filter [ /FlateDecode /FlateDecode ]", twice)), LimitExceeded);
    EXPECT_EQ(codeOf(file.bytes("/Filter 9 0 R", plain)), BeyondRepair);
    EXPECT_EQ(codeOf(file.bytes(), {.objectLimit = 50}), LimitExceeded);
    EXPECT_EQ(codeOf(file.bytes("", plain), {.objectLimit = 200}), done);

    // Disguised: the name spelled otherwise, an object in front that is only text, another length.
    const std::pair<std::string, std::string> disguises[] = {
        {"/XRef", "/X#52ef"},
        {"/Type /XRef", "/A (1 0 obj << >> endobj) /Type /XRef"},
        {"/Type /XRef", "/A [ >> ] /Type /XRef"},
        {"/Length ", "/Length 1 /L "},
        {"/XRef", "8 0 R"},
    };
    for (const auto& [former, text] : disguises) {
        std::string bytes = file.bytes("/Filter /FlateDecode", blown);
        bytes.replace(bytes.rfind(former), former.size(), text);
        EXPECT_NE(codeOf(bytes), done) << text;
    }
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
    std::string all;
    for (std::uint32_t id = 5; id < 4'000; ++id) {
        endless.object(id, "<< /Length 9 >>\nstream\nxxxxxxxxxxxx");
        all += std::to_string(id) + " 0 R ";
    }
    endless.object(1, "<< /Type /Catalog /Pages 2 0 R /X [ " + all + "] >>");
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
            EXPECT_TRUE(Support::open(Support::contentsOf(result))) << at;
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
        expectFaultsSurvived(Support::sample(name));
}

TEST(HostileImport, RunsOnManyThreads) {
    std::vector<std::thread> threads;
    std::array<bool, 4> same{};
    const std::string bytes = Support::sample("modern/encrypted-empty-password.pdf");
    const std::string wanted = Support::contentsOf(normalise(stripeOf(bytes)));
    for (bool& result : same) {
        threads.emplace_back(
            [&] { result = Support::contentsOf(normalise(stripeOf(bytes))) == wanted; });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(same, (std::array<bool, 4>{true, true, true, true}));
}

} // namespace
