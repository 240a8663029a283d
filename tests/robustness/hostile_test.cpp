#include "support/testing.h"

namespace {

using namespace Support;

/// Does with a document what applications do, as far as it goes: every failure must be an ordinary
/// one, with a code. Gives whether the document was opened and written.
bool exercise(const Ref<Interfaces::Stripe>& source, const Ref<Interfaces::Stripe>& target) {
    const auto failed = [](bool result) {
        EXPECT_TRUE(result || Host::Error::get() != Host::NoError);
        Host::Error::set(Host::NoError);
        return !result;
    };
    Host::Error::set(Host::NoError);
    const Ref<Document> document = Document::create(source);
    if (failed(bool(document))) return false;
    (void)document->getPages();
    (void)document->form();
    (void)document->changed();
    for (const Ref<Object>& object : document->getObjects()) {
        (void)object->value()->asText();
        (void)object->value()->equal(object->value());
        const Ref<Stream> stream = Host::cast<Stream>(object->value());
        if (stream) failed(bool(document->readStreamData(stream, true)));
    }
    Host::Error::set(Host::NoError);
    return !failed(document->write(target));
}

bool exercise(std::string_view bytes) {
    return exercise(stripeOf(bytes), Host::MemoryStripe::create());
}

TEST(Hostile, BoundsNesting) {
    constexpr std::size_t deep = 100'000;
    const std::pair<std::string, bool> rows[] = {
        {repeated("[", deep) + repeated("]", deep), false},
        {repeated("<</A", deep) + "1" + repeated(">>", deep), false},
        {repeated("[", deep), false},
        {repeated("[<</A", deep) + "1" + repeated(">>]", deep), false},
        {repeated("(", deep) + repeated(")", deep), true},
        {repeated("[", 512) + repeated("]", 512), true},
        {repeated("[", 513) + repeated("]", 513), false},
        {"[" + repeated("[]<<>>", deep) + "]", true},
    };
    for (const auto& [value, opens] : rows) {
        const RecordingLog log;
        EXPECT_EQ(exercise(DocumentBuilder::minimal().object(5, value).bytes()), opens)
            << value.substr(0, 9) << ": " << value.size();
    }
}

TEST(Hostile, TrustsNoClaim) {
    const std::tuple<Part, std::string, bool> rows[] = {
        {Part::XrefRange, "0 4294967295\n", false},
        {Part::XrefRange, "4294967295 5\n", false},
        {Part::XrefRange, repeated("0", 99'999) + " 5\n", true},
        {Part::XrefOffset, "18446744073709551612\n", false},
        {Part::XrefOffset, "18446744073709551615\n", false},
        {Part::Offset, "18446744073709551615", false},
        {Part::Offset, "18446744073709551614", false},
        {Part::Offset, "9223372036854775808", false},
        {Part::TrailerEntries, "/A " + repeated("<</A", 9999) + repeated(">>", 9999), false},
        {Part::TrailerEntries, repeated(">>", 9999), false},
    };
    for (const auto& [part, text, opens] : rows) {
        const RecordingLog log;
        const std::string hostile = DocumentBuilder::minimal().put(part, text).bytes();
        EXPECT_EQ(exercise(hostile), opens) << text.substr(0, 30);
    }
}

/// Every object is the beginning of the next outer one's string, and ends behind `core`.
std::string withinEachOther(std::uint32_t count, const std::string& core) {
    std::string bytes = "%PDF-1.7\n";
    std::string table = "xref\n0 " + std::to_string(count + 1) + "\n0000000000 65535 f \n";
    for (std::uint32_t id = 1; id <= count; ++id) {
        table += std::to_string(bytes.size()) + " 0 n\n";
        bytes += std::to_string(id) + " 0 obj (";
    }
    bytes += core + repeated(")", count) + " ";
    const std::string offset = std::to_string(bytes.size());
    return bytes + table + "trailer\n<< /Root 1 0 R >>\nstartxref\n" + offset + "\n%%EOF";
}

TEST(Hostile, ObjectsWithinEachOtherAreReadInLinearTime) {
    const std::string bytes = withinEachOther(4'000, "");
    const RecordingLog log;
    const auto source = Host::make<FailingStripe>(stripeOf(bytes));
    EXPECT_FALSE(exercise(source, Host::MemoryStripe::create()));
    EXPECT_LT(source->calls(FailingStripe::Call::Read), bytes.size() * 10 + (1U << 20));
    EXPECT_TRUE(log.text().starts_with("Failed to read object at "));
}

TEST(Hostile, ObjectsWithinEachOtherTakeNoMoreThanOthersMay) {
    const std::string plain = repeated("x", 600'000);
    const std::string octal = repeated("\xFF", 1'500'000); // four bytes for each
    const std::string mixed = repeated("x\xFF", 600'000);
    const RecordingLog log;
    EXPECT_TRUE(exercise(DocumentBuilder().object(1, "(" + octal + ")").object(2, "1 ").bytes()));
    EXPECT_TRUE(exercise(withinEachOther(4, plain)));
    EXPECT_TRUE(exercise(withinEachOther(2, mixed))) << "looked at before each object";
    expectFailure(open(withinEachOther(3, mixed)), ObjectUnreadable);
}

TEST(Hostile, SurvivesEveryCutAndFlip) {
    const RecordingLog log;
    const std::string letter = sample("letterhead.pdf");
    ASSERT_TRUE(exercise(letter));
    std::size_t survivors = 0;
    for (std::size_t index = 0; index < letter.size(); ++index) {
        EXPECT_EQ(exercise(letter.substr(0, index)), index + 1 == letter.size()) << index;
        for (const int flip : {0xFF, 0x01, 0x20}) {
            std::string flipped = letter;
            flipped[index] = static_cast<char>(flipped[index] ^ flip);
            if (exercise(flipped)) ++survivors;
        }
    }
    // Both outcomes are to be had: text may change, structure may not.
    EXPECT_GT(survivors, letter.size() / 4);
    EXPECT_LT(survivors, letter.size() * 3);
}

} // namespace
