// Every operation with every one of its allocations failing, and every call of its stripes.

#include "operations.h"

#include "failing_heap.h"
#include "support/document_builder.h"

#include <host/log.h>
#include <host/memory_stripe.h>
#include <host/stream.h>
#include <pdf/errors.h>
#include <pdf/tools/editing.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

using namespace Libraries::Files::PDF;
using namespace Host::Literals;

namespace {

using Faults::Does;
using Faults::Operation;
using Faults::Subject;
using Support::FailingHeap;
using Support::FailingStripe;

class Nowhere final : public Host::LogPrinter {
    void print(std::uint32_t, Host::LogLevel, std::string_view) noexcept override {}
};

/// Why the operation failed, if it did.
std::optional<Tools::Failure> failureOf(const Operation& operation, Subject& subject) {
    try {
        operation.run(subject);
    } catch (const Tools::BadResultAccess<Tools::Failure>& access) {
        return access.error();
    }
    return std::nullopt;
}

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = [] {
        std::vector<Operation> both = Faults::documentOperations();
        std::ranges::move(Faults::toolOperations(), std::back_inserter(both));
        return both;
    }();
    return all;
}

std::string contentsOfPages(const Document& document) {
    std::string all;
    for (const auto& page : document.getPages())
        all += Support::textOf(page->valueAsDictionary()->find("Contents"_str)) + '\n';
    return all;
}

/// What the operation is expected to lead to.
struct Expected {
    std::string contents; ///< of the pages, before
    std::string before;
    std::string after;
    std::string result;
    std::string foreign; ///< in any case
};

Expected expectedOf(const Operation& operation) {
    Subject before(operation.nested);
    before.open();
    Subject after(operation.nested);
    after.open();
    EXPECT_FALSE(failureOf(operation, after));
    return {contentsOfPages(*before.document), Support::write(*before.document),
            Support::write(*after.document), Support::contentsOf(after.result),
            Support::write(*before.foreign)};
}

void expectUsable(const Operation& operation, const Expected& expected, Subject& subject,
                  bool done) {
    const bool allOrNothing = operation.does == Does::Changes;
    if (!subject.document) {
        EXPECT_TRUE(operation.does == Does::Opens && !done);
    } else if (done || allOrNothing) {
        EXPECT_EQ(Support::write(*subject.document), done ? expected.after : expected.before);
    } else {
        EXPECT_EQ(contentsOfPages(*subject.document), expected.contents);
        EXPECT_TRUE(Support::open(Support::write(*subject.document)));
    }
    EXPECT_EQ(Support::write(*subject.foreign), expected.foreign);
    if (done || operation.does == Does::ChangesInPart) return;
    EXPECT_FALSE(failureOf(operation, subject)) << "once there is memory again";
    EXPECT_EQ(Support::write(*subject.document), expected.after);
}

/// One run with a fault; false when the operation is over before it. `stop` says which it was.
template <class Arm, class Stop>
bool survives(const Operation& operation, const Expected& expected, Subject& subject, Arm arm,
              Stop stop) {
    constexpr std::uint32_t former = 77;
    subject.open();
    Host::Error::set(former);
    arm();
    const auto failure = failureOf(operation, subject);
    const bool faulty = stop();
    EXPECT_TRUE(!operation.isTool || Host::Error::get() == former) << "the code is the caller's";
    if (failure) {
        EXPECT_TRUE(faulty) << "without a fault it succeeds";
        const std::uint32_t code = failure->code();
        EXPECT_TRUE(code == Host::OutOfMemory || operation.codes.contains(code))
            << "a failure has one of its codes: " << code << ", " << failure->text();
    } else {
        EXPECT_EQ(Support::contentsOf(subject.result), expected.result);
    }
    subject.result = subject.target = Host::MemoryStripe::create();
    expectUsable(operation, expected, subject, !failure);
    return faulty;
}

bool survivesWithoutMemory(const Operation& operation, const Expected& expected,
                           std::uint64_t number, FailingHeap::Fault fault) {
    const std::int64_t live = FailingHeap::live();
    const bool faulty = [&] {
        Subject subject(operation.nested);
        return survives(
            operation, expected, subject, [&] { FailingHeap::failAt(number, fault); },
            FailingHeap::stop);
    }();
    EXPECT_EQ(FailingHeap::live(), live) << "nothing leaks";
    return faulty;
}

struct StripeFault {
    bool ofSource;
    FailingStripe::Call call;
    FailingStripe::Fault fault;
};

bool survivesWithoutStripe(const Operation& operation, const Expected& expected,
                           std::uint64_t number, const StripeFault& fault) {
    Subject subject(operation.nested);
    FailingStripe& stripe = fault.ofSource ? *subject.failing : *subject.failingTarget;
    if (fault.ofSource) subject.source = subject.failing;
    return survives(
        operation, expected, subject, [&] { stripe.failAt(fault.call, number, fault.fault); },
        [&] {
            const bool faulty = stripe.calls(fault.call) >= number;
            stripe.failAt(fault.call, 0);
            return faulty;
        });
}

/// Puts messages together, which takes memory as well, and shows them to nobody.
void logToNowhere() {
    static Nowhere nowhere;
    Host::SysLogStream::printer(nowhere);
    Host::SysLogFilter::level(Host::LogLevel::Note);
}

TEST(Faults, ExhaustedMemoryIsAnOrdinaryFailure) {
    logToNowhere();
    for (const Operation& operation : operations()) {
        const Expected expected = expectedOf(operation);
        for (const auto fault : {FailingHeap::Fault::Once, FailingHeap::Fault::FromThenOn}) {
            std::uint64_t number = 1;
            while (survivesWithoutMemory(operation, expected, number, fault) && !HasFailure())
                ++number;
            ASSERT_FALSE(HasFailure()) << operation.name << ", allocation " << number
                                       << (fault == FailingHeap::Fault::Once ? "" : " and on");
            EXPECT_GT(number, 1U) << operation.name << " allocates something";
        }
    }
}

TEST(Faults, AFailingStripeIsAnOrdinaryFailure) {
    using Call = FailingStripe::Call;
    using Fault = FailingStripe::Fault;
    constexpr StripeFault faults[] = {
        {true, Call::Read, Fault::Failed},    {true, Call::Read, Fault::Short},
        {true, Call::Read, Fault::NoByte},    {true, Call::Seek, Fault::Failed},
        {true, Call::Seek, Fault::Misplaced}, {false, Call::Write, Fault::Failed},
        {false, Call::Write, Fault::Short},   {false, Call::Seek, Fault::Failed},
        {false, Call::Seek, Fault::Misplaced}};
    logToNowhere();
    std::uint64_t survived = 0;
    for (const Operation& operation : operations()) {
        const Expected expected = expectedOf(operation);
        for (const StripeFault& fault : faults) {
            std::uint64_t number = 1;
            while (survivesWithoutStripe(operation, expected, number, fault) && !HasFailure())
                ++number;
            ASSERT_FALSE(HasFailure())
                << operation.name << (fault.ofSource ? ", source" : ", target") << " call "
                << number << ", fault " << static_cast<int>(fault.fault);
            survived += fault.ofSource ? 0 : number - 1;
        }
    }
    EXPECT_GT(survived, 2U) << "targets fail as well as sources";
}

TEST(Faults, WhatTheHostMakesSaysThatMemoryIsExhausted) {
    constexpr bool (*makers[])() = {
        [] { return bool(Host::String::create("text")); },
        [] { return bool(Host::MemoryStripe::create()); },
        [] { return bool(Host::ZlibFilter::createCompressorStream(0)); },
        [] { return Host::ByteBuffer().reserve(1); }};
    for (const auto& make : makers) {
        Host::Error::set(Host::NoError);
        FailingHeap::failAt(1, FailingHeap::Fault::Once);
        const bool made = make();
        EXPECT_TRUE(FailingHeap::stop() && !made) << &make - makers;
        EXPECT_EQ(Host::Error::get(), Host::OutOfMemory) << &make - makers;
    }
}

TEST(Failures, TakeNoMemoryToCopyAndDoWithoutAText) {
    const Tools::Failure first(FileDamaged, "the text", 3);
    Host::Error::set(77);
    FailingHeap::failAt(1, FailingHeap::Fault::FromThenOn);
    const Tools::Failure copy = first;
    EXPECT_FALSE(FailingHeap::stop());
    EXPECT_TRUE(copy == first);
    FailingHeap::failAt(1, FailingHeap::Fault::FromThenOn);
    const Tools::Failure bare(FileDamaged, "the text", 3);
    EXPECT_TRUE(FailingHeap::stop());
    EXPECT_EQ(bare.text(), std::string_view(errorText(FileDamaged)));
    EXPECT_EQ(bare.object(), 3U);
    EXPECT_EQ(Host::Error::get(), 77U);
}

// Neither handles nor values: a hundred views of stream data, and buffers that grow by doubling.
TEST(Rewriting, MakesNothingForSingleObjects) {
    Support::DocumentBuilder file = Support::DocumentBuilder::minimal();
    for (std::uint32_t id = 5; id < 3'000; ++id)
        file.object(id, id % 2 == 0 ? "<< /K [ (text) 7 0 R 1.50 ] /B (\\n) >>" : "[ 1.05 <00> ]");
    for (std::uint32_t id = 3'000; id < 3'100; ++id)
        file.stream(id, "/K 1 ", "data");
    const Ref<Interfaces::Stripe> source = Support::stripeOf(file.bytes());
    const Ref<Interfaces::Stripe> target = Host::MemoryStripe::create();
    FailingHeap::failAt(300, FailingHeap::Fault::FromThenOn);
    const Ref<Document> document = Document::create(source);
    const bool written = document && document->write(target) && !document->changed();
    EXPECT_FALSE(FailingHeap::stop());
    EXPECT_TRUE(written);
}

TEST(Lookups, AllocateNothing) {
    const Ref<Document> document = Support::open(Faults::sampleBytes("q Q"));
    const Ref<Dictionary> catalog = document->getCatalog()->valueAsDictionary();
    const Ref<Array> kids =
        document->getPageCatalog()->valueAsDictionary()->findAsArray("Kids"_str);
    // An object and its value are made when they are asked for, once.
    const Ref<Object> page = document->getObject(kids->getAsObjectRef(1));
    const Ref<Value> value = page->value();
    FailingHeap::failAt(1, FailingHeap::Fault::FromThenOn);
    const bool found = catalog->findAsName("Type"_str) && !catalog->find("Absent"_str) &&
                       catalog->findAsName("Type") && !catalog->find("Absent") &&
                       document->getObject(catalog->findAsObjectRef("Pages"_str)) &&
                       document->getObject(kids->getAsObjectRef(1)) == page &&
                       Tools::get<Dictionary>(document, kids, 1) == value &&
                       Tools::get<Dictionary>(document, catalog, "ViewerPreferences");
    EXPECT_FALSE(FailingHeap::stop());
    EXPECT_TRUE(found);
}

} // namespace
