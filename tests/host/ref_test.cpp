#include <host/ref.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

using Host::Ref;
using Host::WeakRef;

struct Plain : Host::Object {
    explicit Plain(int* live) : live_(live) { ++*live_; }
    ~Plain() override { --*live_; }
    int* live_;
};
struct Special final : Plain {
    using Plain::Plain;
};

TEST(Ref, CastsOnlyToWhatTheObjectIs) {
    int live = 0;
    const Ref<Plain> special = Host::make<Special>(&live);
    EXPECT_EQ(Host::cast<Special>(special), special);
    EXPECT_FALSE(Host::cast<Special>(Host::make<Plain>(&live)));
    EXPECT_FALSE(Host::cast<Special>(Ref<Plain>()));
    EXPECT_EQ(live, 1);
}

TEST(WeakRef, NeverRevivesAnObjectThatAnotherThreadReleases) {
    for (int round = 0; round < 500; ++round) {
        int live = 0;
        Ref<Plain> object = Host::make<Plain>(&live);
        const WeakRef<Plain> weak(object.get());
        EXPECT_EQ(weak.lock(), object);
        std::thread other([&weak] {
            while (const Ref<Plain> locked = weak.lock())
                EXPECT_EQ(*locked->live_, 1);
        });
        object = nullptr;
        other.join();
        EXPECT_EQ(live, 0);
    }
}

} // namespace
