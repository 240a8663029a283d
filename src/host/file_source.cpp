#include "host/descriptor.h"
#include "host/file_reason.h"
#include "host/guard.h"
#include "host/message.h"

#include <host/byte_buffer.h>
#include <host/files.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

namespace Host {

namespace {

constexpr std::uint64_t blockSize = std::uint64_t{4} << 10;
constexpr std::uint64_t firstFill = std::uint64_t{16} << 10;
constexpr std::uint64_t largestFill = std::uint64_t{256} << 10;
constexpr std::uint64_t directRead = std::uint64_t{64} << 10;

static_assert(sizeof(off_t) == sizeof(std::int64_t), "files beyond 2 GiB need a 64-bit off_t");

/// The marks by which a later write to the file shows. The descriptor stays with the file that was
/// opened, so that another file in its place does not matter.
struct Stamp {
    explicit Stamp(const struct stat& status) noexcept
        : size(status.st_size),
          seconds(status.st_mtim.tv_sec),
          nanoseconds(status.st_mtim.tv_nsec) {}
    bool operator==(const Stamp&) const noexcept = default;

    off_t size;
    time_t seconds;
    long nanoseconds;
};

class DescriptorSource final : public FileSource {
public:
    DescriptorSource(Descriptor file, const struct stat& status, ByteBuffer buffer) noexcept
        : file_(std::move(file)),
          stamp_(status),
          size_(static_cast<std::uint64_t>(status.st_size)),
          buffer_(std::move(buffer)) {}

    [[nodiscard]] std::uint64_t size() const noexcept override { return size_; }
    [[nodiscard]] std::uint64_t position() const noexcept override { return position_; }
    std::uint64_t position(std::uint64_t position) noexcept override {
        position_ = std::min(position, size_);
        return position_;
    }
    std::uint64_t readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept override;
    std::uint64_t writeBytes(const std::uint8_t* bytes, std::uint64_t count) noexcept override;
    [[nodiscard]] std::span<const std::uint8_t>
    window(std::uint64_t position) const noexcept override;

private:
    std::uint64_t readFile(std::uint8_t* buffer, std::uint64_t count,
                           std::uint64_t position) noexcept;
    [[nodiscard]] bool unchanged() noexcept;
    void fill() noexcept;

    Descriptor file_;
    Stamp stamp_;
    std::uint64_t size_;
    std::uint64_t position_ = 0;
    ByteBuffer buffer_;
    std::uint64_t bufferStart_ = 0;
    std::uint64_t fillSize_ = firstFill;
};

std::uint64_t DescriptorSource::readBytes(std::uint8_t* buffer, std::uint64_t count) noexcept {
    const std::uint64_t wanted = std::min(count, size_ - position_);
    std::uint64_t done = 0;
    while (done < wanted) {
        std::uint64_t got = 0;
        if (window(position_).empty() && wanted - done >= directRead) {
            got = readFile(buffer + done, wanted - done, position_);
        } else {
            if (window(position_).empty()) fill();
            const std::span<const std::uint8_t> held = window(position_);
            got = std::min<std::uint64_t>(held.size(), wanted - done);
            if (got != 0) std::memcpy(buffer + done, held.data(), got);
        }
        if (got == 0) break;
        done += got;
        position_ += got;
    }
    return done;
}

std::uint64_t DescriptorSource::writeBytes(const std::uint8_t*, std::uint64_t) noexcept {
    Error::set(NotSupported);
    return 0;
}

std::span<const std::uint8_t> DescriptorSource::window(std::uint64_t position) const noexcept {
    if (position < bufferStart_ || position - bufferStart_ >= buffer_.size()) return {};
    return buffer_.span().subspan(position - bufferStart_);
}

std::uint64_t DescriptorSource::readFile(std::uint8_t* buffer, std::uint64_t count,
                                         std::uint64_t position) noexcept {
    std::uint64_t done = 0;
    while (done < count) {
        const ssize_t got = uninterrupted([&] {
            return ::pread(file_.get(), buffer + done, count - done,
                           static_cast<off_t>(position + done));
        });
        if (got <= 0) {
            // The file has shrunk.
            if (got < 0) keepReason(errno);
            Error::set(FileNotRead);
            break;
        }
        done += static_cast<std::uint64_t>(got);
    }
    // After the reading, so that it sees changes during the reading too.
    return unchanged() ? done : 0;
}

bool DescriptorSource::unchanged() noexcept {
    struct stat status {};
    if (::fstat(file_.get(), &status) == 0 && Stamp(status) == stamp_) return true;
    keepReason("it has been changed since it was opened");
    log(SysLogFilter::global, LogLevel::Error, "The file has been changed since it was opened");
    Error::set(FileNotRead);
    return false;
}

void DescriptorSource::fill() noexcept {
    // Sequential reads get larger blocks each time. A jump starts small again.
    const bool sequential = !buffer_.empty() && position_ == bufferStart_ + buffer_.size();
    fillSize_ = sequential ? std::min(fillSize_ * 2, largestFill) : firstFill;

    // It reads from the start of the block, so that steps backwards find the bytes before.
    const std::uint64_t start = position_ - position_ % blockSize;
    const std::uint64_t wanted = std::min(fillSize_, size_ - start);
    buffer_.clear();
    buffer_.extend(readFile(buffer_.data(), wanted, start));
    bufferStart_ = start;
}

Ref<FileSource> noFile(std::uint32_t code, int reason = 0) noexcept {
    keepReason(reason);
    Error::set(code);
    return nullptr;
}

Ref<FileSource> openSource(std::string_view path) {
    keepReason(0);
    if (path.find('\0') != std::string_view::npos) return noFile(FileNotOpened);
    const std::string name(path);
    // Opening a pipe that nobody writes to would block before the check of its kind.
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    Descriptor file(uninterrupted([&] { return ::open(name.c_str(), flags); }));
    if (!file.valid()) return noFile(FileNotOpened, errno);

    struct stat status {};
    if (::fstat(file.get(), &status) != 0) return noFile(FileNotOpened, errno);
    if (S_ISDIR(status.st_mode)) return noFile(NotARegularFile, EISDIR);
    if (!S_ISREG(status.st_mode)) return noFile(NotARegularFile);

    ByteBuffer buffer;
    if (!buffer.reserve(largestFill)) return nullptr;
    return make<DescriptorSource>(std::move(file), status, std::move(buffer));
}

} // namespace

Ref<FileSource> FileSource::open(std::string_view path) noexcept {
    return guarded([path] { return openSource(path); });
}

} // namespace Host
