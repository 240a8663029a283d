#include "support/testing.h"

#include <host/files.h>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sched.h>
#include <thread>

namespace {

using Adapters::Stripe::ElementSize;
using Host::FileSource;
using Host::FileTarget;
using Host::MemoryStripe;
using namespace Support;
using namespace std::string_literals;
namespace fs = std::filesystem;

Bytes readAll(FileSource& source, std::uint64_t block = 65536) {
    Bytes all(source.size() + block);
    std::uint64_t done = 0;
    while (const std::uint64_t got = source.readBytes(all.data() + done, block))
        done += got;
    all.resize(done);
    return all;
}

class Files : public testing::Test {
protected:
    Files() {
        std::string name = (fs::temp_directory_path() / "files-XXXXXX").string();
        folder = ::mkdtemp(name.data()) != nullptr ? name : "/nonexistent";
        write(data);
    }
    ~Files() override { fs::remove_all(folder); }

    [[nodiscard]] std::string path(const std::string& name) const { return folder + "/" + name; }
    [[nodiscard]] auto count() const { return std::distance(fs::directory_iterator(folder), {}); }
    void write(const Bytes& bytes) const {
        std::ofstream file(path("f"), std::ios::binary);
        std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
    }
    [[nodiscard]] Bytes read() const { return readAll(*FileSource::open(path("f"))); }
    /// Where there is room for no more than 300,000 bytes.
    void expectSavesToFail(const char* reason) const {
        for (const auto& [when, block, parts] : {std::tuple("while writing", 70'000U, 30),
                                                 {"at the commit", 250'000U, 2},
                                                 {"straight through", 310'000U, 1}}) {
            write(former);
            auto target = FileTarget::create(path("f"));
            for (int part = 0; part < parts; ++part)
                (void)target->writeBytes(data.data(), block);
            Host::Error::set(Host::NoError);
            EXPECT_FALSE(target->commit()) << when;
            EXPECT_EQ(Host::Error::get(), Host::FileNotWritten) << when;
            EXPECT_STREQ(Host::Error::reason(), reason) << when;
            EXPECT_EQ(read(), former) << when;
            target = nullptr;
            EXPECT_EQ(count(), 1) << when;
        }
    }

    std::string folder;
    Bytes data = Support::noise(900'000);
    Bytes former = bytesOf("former");
};

TEST_F(Files, AreReadInAnyOrder) {
    for (const std::uint64_t block : {1U, 4095U, 65535U, 65536U, 900'000U})
        EXPECT_TRUE(readAll(*FileSource::open(path("f")), block) == data) << block;
    const auto source = FileSource::open(path("f"));
    Bytes back(100'000);
    std::uint32_t seed = 1;
    for (std::uint64_t round = 0; round < 9'000; ++round) {
        seed = seed * 1664525U + 1013904223U;
        const bool backwards = round < 8'500;
        const std::uint64_t position = backwards ? data.size() - 1 - round : seed % data.size();
        const std::uint64_t wanted = backwards ? 1 : (seed >> 8) % back.size();
        const std::uint64_t held = std::min(wanted, data.size() - position);
        const auto expected = data.begin() + static_cast<std::ptrdiff_t>(position);
        source->position(position);
        ASSERT_EQ(source->readBytes(back.data(), wanted), held);
        ASSERT_TRUE(std::equal(back.data(), back.data() + held, expected)) << position;
        const auto window = source->window(position);
        ASSERT_TRUE(std::equal(window.begin(), window.end(), expected)) << position;
    }
}

TEST_F(Files, AreNotReadOnceTheyHaveChanged) {
    const std::tuple<const char*, bool, std::function<void(const std::string&)>> rows[] = {
        {"cut", true, [](const auto& file) { fs::resize_file(file, 400'000); }},
        {"longer", true, [](const auto& file) { std::ofstream(file, std::ios::app) << "more"; }},
        {"written to", true,
         [](const auto& file) {
             fs::last_write_time(file, fs::last_write_time(file) + std::chrono::microseconds(1));
         }},
        {"removed", false, [](const auto& file) { fs::remove(file); }},
        {"replaced", false, [](const auto& file) {
             const auto target = FileTarget::create(file);
             EXPECT_TRUE(target->writeBytes(bytesOf("new").data(), 3) == 3 && target->commit());
         }}};
    for (const auto& [name, fails, change] : rows) {
        for (const std::uint64_t block : {1000U, 300'000U}) {
            write(data);
            const auto source = FileSource::open(path("f"));
            change(path("f"));
            const RecordingLog log;
            Host::Error::set(Host::NoError);
            const Bytes all = readAll(*source, block);
            EXPECT_TRUE(all == (fails ? Bytes() : data)) << name << block;
            EXPECT_EQ(Host::Error::get() == Host::FileNotRead, fails) << name;
            EXPECT_EQ(log.text(), fails ? "The file has been changed since it was opened\n" : "")
                << name;
        }
    }
}

TEST_F(Files, RefuseWhatCannotBeUsed) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", path("loop"));
    constexpr auto irregular = Host::NotARegularFile;
    constexpr auto closed = Host::FileNotOpened;
    const std::tuple<std::string, std::uint32_t, std::string_view> rows[] = {
        {folder, irregular, "it is a folder"},
        {path("pipe"), irregular, ""},
        {"/dev/full", irregular, ""},
        {path("f/f"), closed, "a part of its path is no folder"},
        {path("loop"), closed, "its links lead in a circle"},
        {path(std::string(256, 'n')), closed, "its name is too long"},
        {path("f") + '\0', closed, ""}};
    for (const auto& [name, code, reason] : rows) {
        expectFailure(FileSource::open(name), code);
        EXPECT_EQ(Host::Error::reason(), reason) << name;
        EXPECT_TRUE(FileSource::open(path("f")));
        EXPECT_STREQ(Host::Error::reason(), "") << "it belongs to another file";
        expectFailure(FileTarget::create(name), code);
        EXPECT_EQ(Host::Error::reason(), reason) << name;
    }
    expectFailure(FileSource::open(path("no folder/f")), closed);
    EXPECT_STREQ(Host::Error::reason(), "there is no such file or folder");
    expectFailure(FileTarget::create(path("no folder/f")), closed);
    EXPECT_STREQ(Host::Error::reason(), "its folder is not there");
    expectFailure(FileTarget::create(path("new folder/")), closed);
    EXPECT_STREQ(Host::Error::reason(), "it is a folder");
    EXPECT_EQ(count(), 3);
}

TEST_F(Files, AreReplacedOnlyAtTheCommit) {
    for (const std::uint64_t block : {1000U, 262'143U, 262'144U, 900'000U}) {
        write(former);
        const auto target = FileTarget::create(path("f"));
        for (std::uint64_t done = 0; done < data.size(); done += block) {
            const std::uint64_t size = std::min(block, data.size() - done);
            ASSERT_EQ(target->writeBytes(data.data() + done, size), size);
        }
        EXPECT_EQ(target->position(5), data.size());
        EXPECT_TRUE(readAll(*target->written()) == data) << block;
        EXPECT_EQ(read(), former);
        EXPECT_TRUE(target->commit());
        EXPECT_TRUE(read() == data) << block;
        EXPECT_FALSE(target->commit() || target->writeBytes(data.data(), 1) != 0);
    }
    EXPECT_EQ(FileTarget::create(path("f"))->writeBytes(data.data(), 100), 100U);
    EXPECT_TRUE(read() == data);
    EXPECT_EQ(count(), 1);
}

TEST_F(Files, AreSavedBehindLinksWithTheirPermissions) {
    const bool root = ::geteuid() == 0;
    EXPECT_TRUE(!root || ::chown(path("f").c_str(), 1, 2) == 0);
    fs::permissions(path("f"), fs::perms{0604});
    fs::create_symlink("f", path("inner"));
    fs::create_symlink(path("inner"), path("outer"));
    fs::create_symlink("new", path("open")); // to nothing yet
    const std::string longest(255, 'n');
    const mode_t mask = ::umask(0027);
    for (const auto& [link, name, mode] :
         {std::tuple("outer"s, "f"s, 0604U), {"open", "new", 0640U}, {longest, longest, 0640U}}) {
        const auto target = FileTarget::create(path(link));
        ASSERT_TRUE(target) << link;
        EXPECT_EQ(target->writeBytes(data.data(), 10), 10U);
        EXPECT_TRUE(target->commit()) << link;
        EXPECT_EQ(fs::status(path(name)).permissions(), fs::perms{mode}) << link;
        EXPECT_EQ(fs::file_size(path(name)), 10U) << link;
        EXPECT_EQ(fs::is_symlink(path(link)), link != name) << link;
    }
    ::umask(mask);
    struct stat status {};
    EXPECT_EQ(::stat(path("f").c_str(), &status), 0);
    EXPECT_TRUE(!root || (status.st_uid == 1 && status.st_gid == 2)) << "the owner is kept";
}

/// Runs `body` on a thread of a user without privileges. The system call changes the thread alone.
void asUser(const std::function<void()>& body) {
    std::thread([&] {
        constexpr int nobody = 65534;
        EXPECT_TRUE(::geteuid() != 0 || ::syscall(SYS_setresuid, -1, nobody, -1) == 0);
        body();
    }).join();
}

TEST_F(Files, AreProtectedByTheirModes) {
    const auto allow = [](const std::string& name, unsigned mode) {
        fs::permissions(name, fs::perms{mode});
    };
    const auto refusedAs = [&](const char* reason) {
        expectFailure(FileTarget::create(path("f")), Host::FileNotOpened);
        EXPECT_STREQ(Host::Error::reason(), reason);
    };
    allow(folder, 0777);
    allow(path("f"), 0444);
    asUser([&] { refusedAs("permission denied"); });
    allow(path("f"), 0222);
    asUser([&] {
        expectFailure(FileSource::open(path("f")), Host::FileNotOpened);
        EXPECT_STREQ(Host::Error::reason(), "permission denied");
    });
    allow(folder, 0555);
    asUser([&] { refusedAs("its folder takes no new files"); });
    allow(folder, 0777);
    asUser([&] { // who cannot keep the owner, but saves all the same
        const auto target = FileTarget::create(path("f"));
        EXPECT_TRUE(target && target->writeBytes(data.data(), 10) == 10 && target->commit());
    });
    EXPECT_EQ(fs::status(path("f")).permissions(), fs::perms{0222});
    EXPECT_EQ(fs::file_size(path("f")), 10U);
    allow(folder, 0700);
}

TEST_F(Files, StayAsTheyAreWhenAWriteFails) {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    const rlimit limit{300'000, usual.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    expectSavesToFail("files may not be as large as that");
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &usual), 0);
}

TEST_F(Files, StayAsTheyAreOnAFullDevice) {
    bool mounted = false;
    std::thread([&] { // whose mounts are its own and go with it
        mounted = ::unshare(CLONE_NEWNS) == 0 &&
                  ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                  ::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=300k") == 0;
        if (mounted) expectSavesToFail("no space is left");
    })
        .join();
    if (!mounted) GTEST_SKIP() << "only root may mount a device";
}

TEST_F(Files, StayAsTheyAreWhenTheirFolderVanishes) {
    write(former);
    const auto target = FileTarget::create(path("f"));
    EXPECT_EQ(target->writeBytes(data.data(), data.size()), data.size());
    const std::string moved = folder + ".moved";
    fs::rename(folder, moved);
    Host::Error::set(Host::NoError);
    EXPECT_FALSE(target->written());
    expectFailure(target->commit(), Host::FileNotWritten);
    expectFailure(FileTarget::create(path("f")), Host::FileNotOpened);
    fs::rename(moved, folder);
    EXPECT_EQ(read(), former);
}

TEST_F(Files, GoOneWay) {
    const auto source = FileSource::open(path("f"));
    const auto target = FileTarget::create(path("f"));
    expectFailure(source->writeBytes(data.data(), 1), Host::NotSupported);
    expectFailure(target->readBytes(data.data(), 1), Host::NotSupported);
    EXPECT_EQ(source->position() + target->position() + target->size(), 0U);
}

Bytes contents(const MemoryStripe& stripe) {
    return {stripe.bytes().begin(), stripe.bytes().end()};
}

TEST(MemoryStripe, ReplacesThenGrowsAndStaysWithinItsEnd) {
    const auto stripe = MemoryStripe::create(bytesOf("abcdef"));
    EXPECT_EQ(stripe->position(4), 4U);
    EXPECT_EQ(stripe->writeBytes(bytesOf("XYZ").data(), 3), 3U);
    EXPECT_EQ(stripe->position(8), 7U);
    std::uint32_t mixed[] = {255, 256, 1};
    const auto* data = reinterpret_cast<const std::uint8_t*>(mixed);
    EXPECT_EQ(stripe->read(mixed, 1), 0U);
    EXPECT_TRUE(stripe->window(7).empty());
    EXPECT_EQ(stripe->write(mixed, 3), 1U);
    for (const std::uint64_t unheld : {std::uint64_t{PTRDIFF_MAX}, UINT64_MAX}) {
        stripe->position(4);
        expectFailure(stripe->writeBytes(data, unheld), Host::OutOfMemory);
        EXPECT_EQ(stripe->position(), 4U);
    }
    EXPECT_EQ(contents(*stripe), bytesOf("abcdXYZ\xFF"));
}

TEST(ElementSize, PresentsBytesAsElementsAndBack) {
    const Bytes data = Support::noise(3000);
    const auto memory = MemoryStripe::create();
    const auto bytes = ElementSize::create(memory, 1);
    EXPECT_EQ(bytes->write(data.data(), data.size()), data.size());
    EXPECT_EQ(contents(*memory), data);
    const auto elements = ElementSize::create(bytes, 4);
    elements->position(1000);
    std::vector<std::uint32_t> wide(data.size());
    EXPECT_EQ(elements->read(wide.data(), wide.size()), 2000U);
    EXPECT_TRUE(std::equal(data.begin() + 1000, data.end(), wide.begin()));
    EXPECT_EQ(elements->window(3).data(), memory->bytes().data() + 3);
    // There is room for what is left, and for no more.
    for (const std::uint64_t wanted : {std::uint64_t{6}, std::uint64_t{3000}, UINT64_MAX}) {
        for (Interfaces::Stripe* stripe : {static_cast<Interfaces::Stripe*>(memory.get()),
                                           static_cast<Interfaces::Stripe*>(elements.get())}) {
            std::vector<std::uint32_t> exact(5, 1);
            stripe->position(data.size() - 5);
            EXPECT_EQ(stripe->read(exact.data(), wanted), 5U) << wanted;
            EXPECT_TRUE(std::equal(exact.begin(), exact.end(), data.end() - 5)) << wanted;
        }
    }
    EXPECT_EQ(memory->read(nullptr, 1) + memory->write(nullptr, 1) + elements->read(nullptr, 1) +
                  elements->write(nullptr, 1),
              0U);
    expectFailure(ElementSize::create(memory, 2), Host::InvalidArgument);
    expectFailure(ElementSize::create(nullptr, 4), Host::NullArgument);
}

TEST(Buffered, AsksItsBaseForBlocks) {
    const Bytes data = noise(200'000);
    const auto base = Host::make<FailingStripe>(MemoryStripe::create(data));
    base->failAt(FailingStripe::Call::Read, 0);
    const auto buffered = Adapters::Stripe::Buffered::create(base);
    for (const std::uint64_t position : {0U, 199'999U, 70'000U, 65'535U, 65'536U, 4'095U}) {
        ASSERT_EQ(buffered->position(position), position);
        Bytes piece(100'000);
        piece.resize(buffered->readBytes(piece.data(), piece.size()));
        const auto from = data.begin() + static_cast<std::ptrdiff_t>(position);
        const auto count = std::min<std::size_t>(100'000, data.size() - position);
        EXPECT_EQ(piece, Bytes(from, from + static_cast<std::ptrdiff_t>(count))) << position;
        EXPECT_EQ(buffered->position(), position + count);
    }
    EXPECT_EQ(buffered->position(300'000), 200'000U);
    expectFailure(buffered->writeBytes(data.data(), 1), Host::NotSupported);
    expectFailure(Adapters::Stripe::Buffered::create(nullptr), Host::NullArgument);

    // A document of 100 KB, and the same with a base that fails at each of its calls.
    const std::string file =
        DocumentBuilder::minimal().object(5, "[" + std::string(100'000, ' ') + "1 2]").bytes();
    using Call = FailingStripe::Call;
    const auto source = Host::make<FailingStripe>(stripeOf(file));
    source->failAt(Call::Read, 0);
    const auto plain = PDF::Document::create(Adapters::Stripe::Buffered::create(source));
    ASSERT_TRUE(plain);
    const std::uint64_t reads = source->calls(Call::Read);
    EXPECT_LE(reads, 170U) << "it is read once, and searched backwards from its end";
    EXPECT_EQ(write(*plain), write(*Support::open(file)));
    for (std::uint64_t number = 1; number <= reads; number += 9) {
        for (const auto fault : {FailingStripe::Fault::Failed, FailingStripe::Fault::Short}) {
            source->failAt(Call::Read, number, fault);
            const RecordingLog log;
            const auto opened = PDF::Document::create(Adapters::Stripe::Buffered::create(source));
            EXPECT_TRUE(!opened || write(*opened) == write(*plain)) << number;
        }
    }
}

} // namespace
