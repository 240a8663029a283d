#include "writer/document_writer.h"

#include "support/bytes.h"
#include "support/document_builder.h"
#include "support/failing_stripe.h"
#include "support/recording_log.h"
#include "support/values.h"
#include "values/object.h"

#include <pdf/errors.h>

#include <gtest/gtest.h>

#include <regex>

namespace {

using namespace Testing;
using namespace Libraries::Files::PDF;
using Call = FailingStripe::Call;
using Fault = FailingStripe::Fault;

DocumentState document(std::string_view lineEnding = "\n") {
    DocumentState state;
    state.lineEnding = lineEnding;
    state.version = PdfVersion::V1_4;
    state.trailer = dictionary({{"Size", number(99)}, {"Z", null()}});
    return state;
}

void add(DocumentState& state, std::uint32_t id, AnyValue value, std::uint16_t generation = 0) {
    state.objects.append(newValue<ObjectObj>(id, generation, std::move(value)));
}

std::string replaced(const std::string& text, const std::string& from, const char* to) {
    return std::regex_replace(text, std::regex(from), to);
}

/// Writes the document into `target` and gives the code, or `NoError`.
std::uint32_t write(DocumentState& state, Interfaces::Stripe& target) {
    Host::Error::set(Host::NoError);
    const bool written = writeDocument(state, target, [](const Ref<Stream>& stream) {
        return static_cast<StreamObj&>(*stream).strmData();
    });
    EXPECT_EQ(written, Host::Error::get() == Host::NoError);
    return Host::Error::get();
}

TEST(DocumentWriter, WritesEveryByteAsAgreed) {
    const std::array<const char*, 6> rows[] = {
        // line ending, what stands before it in the table, offsets
        {"\n", " ", "0000000009", "0000000030", "0000000050", "70"},
        {"\r\n", "", "0000000010", "0000000034", "0000000057", "80"},
        {"", " ", "0000000008", "0000000026", "0000000043", "60"},
    };
    for (const auto& row : rows) {
        DocumentState state = document(row[0]);
        state.xrefFirstId = 6;
        add(state, 5, boolean(true), 7);
        add(state, 1, array({number(1)}));
        add(state, 2, null());
        std::string expected = "%PDF-1.4\n1 0 obj\n[ 1 ]\nendobj\n2 0 obj\nnull\nendobj\n"
                               "5 7 obj\ntrue\nendobj\nxref\n6 4\n0000000000 65535 f@1\n"
                               "@2 00000 n@1\n@3 00000 n@1\n@4 00007 n@1\n"
                               "trailer\n<< /Size 4 /Z null >>\nstartxref\n@5\n%%EOF\n";
        for (std::size_t mark = 1; mark < row.size(); ++mark)
            expected = replaced(expected, "@" + std::to_string(mark), row[mark]);
        for (int repeat = 0; repeat < 2; ++repeat) {
            const auto target = Host::MemoryStripe::create();
            EXPECT_EQ(write(state, *target), Host::NoError);
            EXPECT_EQ(contentsOf(target), replaced(expected, "\n", row[0])) << repeat;
        }
        EXPECT_EQ(state.objects[0]->id(), 5U) << "the table keeps its order";
        EXPECT_EQ(textOf(state.trailer), "<< Size -> 4.0 Z -> Null >>");
    }
}

TEST(DocumentWriter, NamesTheVersion) {
    const std::string names[] = {"",    "1.0", "1.1", "1.2", "1.3", "1.4", "1.5", "1.6",
                                 "1.7", "",    "",    "",    "",    "2.0", ""};
    for (std::uint32_t version = 0; version < std::size(names); ++version) {
        DocumentState state = document();
        state.version = static_cast<PdfVersion>(version);
        const auto target = Host::MemoryStripe::create();
        const RecordingLog log;
        const bool known = !names[version].empty();
        EXPECT_EQ(write(state, *target), known ? Host::NoError : std::uint32_t{VersionNotWritten});
        EXPECT_EQ(contentsOf(target).substr(0, 9), known ? "%PDF-" + names[version] + "\n" : "");
        if (version != 9) continue;
        EXPECT_EQ(log.text(), "PDF version can not be converted to string 9h (9)\n"
                              "Failed to convert version to string: 9h (9)\n"
                              "Failed to write PDF version\n");
        EXPECT_EQ(log.entries()[0].level, Host::LogLevel::Warning);
    }
}

TEST(DocumentWriter, StopsAtWhatCannotBeWritten) {
    const auto bad = dictionary({{"A", foreign(9)}});
    const std::string badLog = "Failed to cast value to Null\n"
                               "Failed to convert value of dictionary key to buffer: A\n"
                               "Failed to convert value to buffer\n";
    const std::string object = "Failed to write object 2 (0)\n";
    const std::string before = "%PDF-1.4\n1 0 obj\nnull\nendobj\n";
    const std::tuple<AnyValue, Ref<Dictionary>, std::uint32_t, std::string, std::string> rows[] = {
        {nullptr, dictionary({}), ObjectNotWritten, before,
         "Object has no value: 2 (0)\n" + object},
        {bad, dictionary({}), ObjectNotWritten, before + "2 0 obj\n",
         badLog + "Failed to write value of object 2 (0)\n" + object},
        {null(), nullptr, TrailerNotWritten, "trailer\n",
         "Failed to update trailer dictionary Size entry\nFailed to write trailer\n"},
        {null(), bad, TrailerNotWritten, "trailer\n",
         badLog + "Failed to write trailer dictionary\nFailed to write trailer\n"},
    };
    for (const auto& [value, trailer, code, end, message] : rows) {
        DocumentState state = document();
        add(state, 2, value);
        add(state, 1, null());
        state.trailer = trailer;
        const auto target = Host::MemoryStripe::create();
        const RecordingLog log;
        EXPECT_EQ(write(state, *target), code) << message;
        EXPECT_EQ(log.text(), message);
        EXPECT_TRUE(contentsOf(target).ends_with(end)) << message << contentsOf(target);
    }
}

TEST(DocumentWriter, TellsHowFarAFailingTargetCame) {
    DocumentState state = document();
    for (const std::uint32_t id : {1U, 2U}) {
        const Ref<Interfaces::Stripe> data = Host::MemoryStripe::create(noise(66000, id));
        add(state, id, newValue<StreamObj>(dictionary({}), data));
    }
    const auto target = newValue<FailingStripe>(Host::MemoryStripe::create());
    ASSERT_EQ(write(state, *target), Host::NoError);
    const std::string whole = contentsOf(target);
    using Outcome = std::pair<std::uint32_t, std::string_view>;
    const Outcome header{VersionNotWritten, "length 8h (8)\nFailed to write PDF version\n"};
    const Outcome object{ObjectNotWritten, " (0)\n"};
    const Outcome trailer{TrailerNotWritten,
                          "length 5h (5)\nFailed to write EOF marker\nFailed to write trailer\n"};
    for (std::uint64_t call = 1; call <= target->calls(Call::Write); ++call) {
        for (const Fault fault : {Fault::Failed, Fault::Short}) {
            const auto written = Host::MemoryStripe::create();
            const auto broken = newValue<FailingStripe>(written);
            broken->failAt(Call::Write, call, fault);
            const RecordingLog log;
            const std::uint32_t code = write(state, *broken);
            const auto& [expected, end] = written->size() < 9                        ? header
                                          : written->size() <= whole.rfind("\nxref") ? object
                                                                                     : trailer;
            EXPECT_EQ(code, expected) << call;
            EXPECT_TRUE(log.text().ends_with(end)) << call << log.text();
            EXPECT_TRUE(whole.starts_with(contentsOf(written))) << call;
        }
    }
}

TEST(DocumentWriter, ComplainsAboutLongLineEndings) {
    DocumentState state = document("\r\n\n");
    const auto target = Host::MemoryStripe::create();
    const RecordingLog log;
    EXPECT_EQ(write(state, *target), Host::NoError);
    const std::regex expected(R"(ASSERT CONDITION _lineEnding->length\(\) <= 2 FAILED IN LINE )"
                              R"([0-9A-F]+h \(\d+\), FUNCTION )"
                              R"(Libraries::Files::PDF::DocumentObj::writeLine\n)");
    ASSERT_EQ(log.entries().size(), 8U) << "one for each line";
    EXPECT_EQ(log.entries()[0].filter, Host::SysLogFilter::global);
    EXPECT_TRUE(std::regex_match(log.entries()[0].text, expected)) << log.text();
}

TEST(Document, RefusesUnusableTargets) {
    const auto document = open(DocumentBuilder::minimal().bytes());
    EXPECT_FALSE(document->write(nullptr));
    EXPECT_EQ(Host::Error::get(), NullArgument);
    const auto memory = Host::MemoryStripe::create();
    EXPECT_FALSE(document->write(Adapters::Stripe::ElementSize::create(memory, 1)));
    EXPECT_EQ(Host::Error::get(), InvalidArgument);
    EXPECT_EQ(memory->size(), 0U);
}

} // namespace
