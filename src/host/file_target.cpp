#include "host/descriptor.h"
#include "host/file_reason.h"
#include "host/guard.h"
#include "host/save_path.h"

#include <host/byte_buffer.h>
#include <host/files.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>

namespace Host {

namespace {

constexpr std::size_t bufferSize = std::size_t{256} << 10;

bool failWriting() noexcept {
    Error::set(FileNotWritten);
    return false;
}

/// Gives whether a call of the system succeeded, and keeps the reason if it did not.
bool went(bool well) noexcept {
    if (!well) keepReason(errno);
    return well;
}

bool synchronise(int descriptor) noexcept {
    if (uninterrupted([descriptor] { return ::fsync(descriptor); }) == 0) return true;
    // Some file systems have nothing to synchronise and say so.
    return errno == EINVAL || errno == ENOSYS;
}

class NewFile final : public FileTarget {
public:
    NewFile(ByteBuffer buffer, SavePath path) noexcept
        : buffer_(std::move(buffer)), path_(std::move(path)) {}
    ~NewFile() override {
        if (pending_) ::unlink(path_.temporary.c_str());
    }

    /// Makes the file. It replaces the `former` file unless that is null.
    bool open(const struct stat* former);

    [[nodiscard]] std::uint64_t size() const noexcept override { return size_; }
    [[nodiscard]] std::uint64_t position() const noexcept override { return size_; }
    std::uint64_t position(std::uint64_t) noexcept override { return size_; }
    std::uint64_t readBytes(std::uint8_t*, std::uint64_t) noexcept override {
        Error::set(NotSupported);
        return 0;
    }
    std::uint64_t writeBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept override;
    [[nodiscard]] Ref<FileSource> written() noexcept override;
    [[nodiscard]] bool commit() noexcept override;

private:
    bool flush() noexcept;
    bool writeFile(const std::uint8_t* bytes, std::uint64_t count) noexcept;
    bool finish() noexcept;

    Descriptor file_;
    ByteBuffer buffer_;
    SavePath path_;
    std::uint64_t size_ = 0;
    bool failed_ = false;
    bool pending_ = false;
};

std::uint64_t NewFile::writeBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept {
    if (failed_) {
        failWriting();
        return 0;
    }
    if (count > bufferSize - buffer_.size() && !flush()) return 0;
    const bool taken = count < bufferSize ? buffer_.append(bytes, count) : writeFile(bytes, count);
    if (!taken) return 0;
    size_ += count;
    return count;
}

bool NewFile::flush() noexcept {
    if (!writeFile(buffer_.data(), buffer_.size())) return false;
    buffer_.clear();
    return true;
}

bool NewFile::writeFile(const std::uint8_t* bytes, std::uint64_t count) noexcept {
    if (failed_ || !file_.valid()) return failWriting();
    while (count != 0) {
        const ssize_t put = uninterrupted([&] { return ::write(file_.get(), bytes, count); });
        if (put <= 0) {
            if (put < 0) keepReason(errno);
            failed_ = true;
            return failWriting();
        }
        bytes += put;
        count -= static_cast<std::uint64_t>(put);
    }
    return true;
}

Ref<FileSource> NewFile::written() noexcept {
    return flush() ? FileSource::open(path_.temporary.native()) : nullptr;
}

bool NewFile::finish() noexcept {
    const bool flushed = flush() && went(synchronise(file_.get()));
    const bool closed = flushed ? went(file_.close()) : file_.close();
    return flushed && closed &&
           went(std::rename(path_.temporary.c_str(), path_.target.c_str()) == 0);
}

bool NewFile::commit() noexcept {
    if (!pending_) return failWriting();
    const bool saved = finish();
    if (!saved) ::unlink(path_.temporary.c_str());
    pending_ = false;
    failed_ = true; // nothing more can be written
    if (!saved) return failWriting();

    // The data is in place. Making the new name survive a power cut as well is a bonus.
    const Descriptor folder(::open(path_.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.valid()) synchronise(folder.get());
    return true;
}

/// Keeps the owner if the system allows that.
bool takeOverAccess(int descriptor, const struct stat& former) noexcept {
    if (::fchown(descriptor, former.st_uid, former.st_gid) != 0) {
        static_cast<void>(::fchown(descriptor, static_cast<uid_t>(-1), former.st_gid) == 0);
    }
    return ::fchmod(descriptor, former.st_mode & 0777U) == 0;
}

bool NewFile::open(const struct stat* former) {
    file_ = Descriptor(path_.createTemporary(former != nullptr ? 0600 : 0666));
    pending_ = file_.valid();
    return pending_ && (former == nullptr || went(takeOverAccess(file_.get(), *former)));
}

Ref<FileTarget> noFile(std::uint32_t code) noexcept {
    Error::set(code);
    return nullptr;
}

bool isWritable(const std::filesystem::path& path) noexcept {
    return went(::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0);
}

bool isFile(const struct stat& status) noexcept {
    if (S_ISDIR(status.st_mode)) keepReason(EISDIR);
    return S_ISREG(status.st_mode);
}

Ref<FileTarget> createTarget(std::string_view name) {
    keepReason(0);
    std::optional<SavePath> path = SavePath::resolve(name);
    if (!path) return noFile(FileNotOpened);

    struct stat former {};
    const bool exists = ::stat(path->target.c_str(), &former) == 0;
    if (!went(exists || errno == ENOENT)) return noFile(FileNotOpened);
    if (exists && !isFile(former)) return noFile(NotARegularFile);
    // A rename would bypass the write protection of the file.
    if (exists && !isWritable(path->target)) return noFile(FileNotOpened);

    ByteBuffer buffer;
    if (!buffer.reserve(bufferSize)) return nullptr;
    const Ref<NewFile> target = make<NewFile>(std::move(buffer), std::move(*path));
    if (target && !target->open(exists ? &former : nullptr)) return noFile(FileNotOpened);
    return target;
}

} // namespace

Ref<FileTarget> FileTarget::create(std::string_view path) noexcept {
    return guarded([path] { return createTarget(path); });
}

} // namespace Host
