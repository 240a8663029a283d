#include <host/ref.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

struct Counted : Host::Object {
    explicit Counted(int* live) : live_(live) { ++*live_; }
    ~Counted() override { --*live_; }
    int* live_;
};

TEST(WeakRef, NeverRevivesAnObjectThatAnotherThreadReleases) {
    for (int round = 0; round < 500; ++round) {
        int live = 0;
        auto object = Host::make<Counted>(&live);
        const Host::WeakRef<Counted> weak(object.get());
        std::thread other([&weak] {
            while (const auto locked = weak.lock())
                EXPECT_EQ(*locked->live_, 1);
        });
        object = nullptr;
        other.join();
        EXPECT_EQ(live, 0);
    }
}

} // namespace
