#include "support/bytes.h"

#include <host/files.h>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using Host::FileSource;
using Host::FileTarget;
using Host::Ref;
using Testing::Bytes;

Bytes readAll(FileSource& source, std::uint64_t block) {
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
        write("f", data);
    }
    ~Files() override { fs::remove_all(folder); }

    [[nodiscard]] std::string path(const std::string& name) const { return folder + "/" + name; }
    [[nodiscard]] std::ptrdiff_t count() const {
        return std::distance(fs::directory_iterator(folder), {});
    }
    void write(const char* name, const Bytes& bytes) const {
        std::ofstream file(path(name), std::ios::binary);
        std::copy(bytes.begin(), bytes.end(), std::ostreambuf_iterator<char>(file));
    }
    [[nodiscard]] Bytes read(const char* name) const {
        return readAll(*FileSource::open(path(name)), 65536);
    }

    std::string folder;
    Bytes data = Testing::noise(900'000);
    Bytes former = Testing::bytesOf("former");
};

TEST_F(Files, AreReadInAnyOrder) {
    for (const std::uint64_t block : {1U, 4095U, 65535U, 65536U, 900'000U}) {
        EXPECT_TRUE(readAll(*FileSource::open(path("f")), block) == data) << block;
    }
    const Ref<FileSource> source = FileSource::open(path("f"));
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

TEST_F(Files, ThatShrinkGiveShortReads) {
    for (const std::uint64_t block : {1000U, 900'000U}) {
        write("f", data);
        const Ref<FileSource> source = FileSource::open(path("f"));
        fs::resize_file(path("f"), 100'000);
        Host::Error::set(Host::NoError);
        EXPECT_EQ(readAll(*source, block).size(), 100'000U);
        EXPECT_EQ(Host::Error::get(), Host::FileNotRead);
    }
}

TEST_F(Files, RefuseWhatCannotBeUsed) {
    ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", path("loop"));
    const struct {
        const char* name;
        std::string path;
        std::uint32_t code;
    } rows[] = {
        {"folder", folder, Host::NotARegularFile},
        {"pipe", path("pipe"), Host::NotARegularFile},
        {"device", "/dev/full", Host::NotARegularFile},
        {"no folder", path("none/f"), Host::FileNotOpened},
        {"link to itself", path("loop"), Host::FileNotOpened},
        {"NUL", path("f") + std::string(1, '\0'), Host::FileNotOpened},
        {"new folder", path("new/"), Host::FileNotOpened},
    };
    for (const auto& row : rows) {
        Host::Error::set(Host::NoError);
        EXPECT_FALSE(FileSource::open(row.path)) << row.name;
        EXPECT_EQ(Host::Error::get(), row.code) << row.name;
        Host::Error::set(Host::NoError);
        EXPECT_FALSE(FileTarget::create(row.path)) << row.name;
        EXPECT_EQ(Host::Error::get(), row.code) << row.name;
    }
    EXPECT_EQ(count(), 3);
}

TEST_F(Files, AreReplacedOnlyAtTheCommit) {
    for (const std::uint64_t block : {1000U, 262'143U, 262'144U, 900'000U}) {
        write("f", former);
        const Ref<FileTarget> target = FileTarget::create(path("f"));
        for (std::uint64_t done = 0; done < data.size(); done += block) {
            const std::uint64_t size = std::min(block, data.size() - done);
            ASSERT_EQ(target->writeBytes(data.data() + done, size), size);
        }
        EXPECT_EQ(target->position(5), data.size());
        EXPECT_TRUE(readAll(*target->written(), 65536) == data) << block;
        EXPECT_EQ(read("f"), former);
        EXPECT_TRUE(target->commit());
        EXPECT_TRUE(read("f") == data) << block;
        EXPECT_FALSE(target->commit());
        EXPECT_EQ(target->writeBytes(data.data(), 1), 0U);
    }
    FileTarget::create(path("f"))->writeBytes(data.data(), 100);
    EXPECT_TRUE(read("f") == data);
    EXPECT_EQ(count(), 1);
}

TEST_F(Files, AreSavedBehindLinksWithTheirPermissions) {
    const struct {
        const char* name;
        std::string path;
        std::string file;
        mode_t mode;
    } rows[] = {
        {"link to a link", path("outer"), "f", 0604},
        {"link to nothing yet", path("open"), "new", 0640},
    };
    fs::permissions(path("f"), fs::perms{0604});
    fs::create_symlink("f", path("inner"));
    fs::create_symlink(path("inner"), path("outer"));
    fs::create_symlink("new", path("open"));
    const mode_t mask = ::umask(0027);
    for (const auto& row : rows) {
        const bool link = fs::is_symlink(row.path);
        const Ref<FileTarget> target = FileTarget::create(row.path);
        ASSERT_TRUE(target) << row.name;
        EXPECT_EQ(target->writeBytes(data.data(), 10), 10U);
        EXPECT_TRUE(target->commit()) << row.name;
        struct stat status {};
        EXPECT_EQ(::lstat(path(row.file).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777U, row.mode) << row.name;
        EXPECT_EQ(status.st_size, 10) << row.name;
        EXPECT_EQ(fs::is_symlink(row.path), link) << row.name;
    }
    ::umask(mask);
}

TEST_F(Files, StayAsTheyAreWhenAWriteFails) {
    const auto save = [this](std::uint64_t block, int parts) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{300'000, 300'000};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(2);
        bool failed = false;
        if (const Ref<FileTarget> target = FileTarget::create(path("f"))) {
            for (int part = 0; part < parts; ++part)
                target->writeBytes(data.data(), block);
            failed = !target->commit() && Host::Error::get() == Host::FileNotWritten;
        }
        ::_exit(failed ? 0 : 1);
    };
    write("f", former);
    EXPECT_EXIT(save(70'000, 30), testing::ExitedWithCode(0), "") << "while writing";
    EXPECT_EXIT(save(250'000, 2), testing::ExitedWithCode(0), "") << "at the commit";
    EXPECT_EXIT(save(310'000, 1), testing::ExitedWithCode(0), "") << "straight through";
    EXPECT_EQ(read("f"), former);
    EXPECT_EQ(count(), 1);
}

} // namespace
