#include "host/save_path.h"

#include "host/descriptor.h"
#include "host/file_reason.h"

#include <fcntl.h>
#include <sys/random.h>

#include <array>
#include <climits>
#include <cstdint>
#include <string>
#include <system_error>
#include <utility>

namespace Host {

namespace fs = std::filesystem;

namespace {

constexpr int linkLimit = 40;
constexpr int attemptLimit = 100;
constexpr std::string_view suffixLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t suffixLength = 6;

std::optional<SavePath> noPath(int reason) noexcept {
    keepReason(reason);
    return std::nullopt;
}

std::optional<SavePath> noFolder(int reason) noexcept {
    keepReason(reason);
    if (reason == ENOENT) keepReason("its folder is not there");
    return std::nullopt;
}

/// The path of a file that does not exist yet, in a folder that does.
std::optional<SavePath> newFile(const fs::path& path) {
    if (!path.has_filename()) return noPath(EISDIR);
    std::error_code error;
    const fs::path parent = path.has_parent_path() ? path.parent_path() : fs::path(".");
    fs::path folder = fs::canonical(parent, error);
    if (error) return noFolder(error.value());
    fs::path target = folder / path.filename();
    return SavePath{std::move(folder), std::move(target), {}};
}

/// Names the folder if it refuses new files, so that nobody looks for the fault in the file.
void keepReasonOfFolder(int number) noexcept {
    const bool refused = number == EACCES || number == EPERM;
    if (refused) return keepReason("its folder takes no new files");
    keepReason(number);
}

std::string randomSuffix() {
    std::array<std::uint8_t, suffixLength> random{};
    if (::getrandom(random.data(), random.size(), 0) < 0) random.fill(0);
    std::string suffix(".");
    for (const std::uint8_t value : random)
        suffix += suffixLetters[value % suffixLetters.size()];
    return suffix;
}

} // namespace

std::optional<SavePath> SavePath::resolve(std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return std::nullopt;
    fs::path current(path);
    for (int links = 0; links < linkLimit; ++links) {
        std::error_code error;
        fs::path target = fs::canonical(current, error);
        if (!error) return SavePath{target.parent_path(), target, {}};
        if (error != std::errc::no_such_file_or_directory) return noPath(error.value());
        const fs::path next = fs::read_symlink(current, error);
        if (error) return newFile(current);
        current = current.parent_path() / next;
    }
    return noPath(ELOOP);
}

int SavePath::createTemporary(unsigned mode) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    const std::size_t room = NAME_MAX - suffixLength - 1;
    const std::string name = target.filename().string().substr(0, room);
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        temporary = folder / (name + randomSuffix());
        const int descriptor =
            uninterrupted([&] { return ::open(temporary.c_str(), flags, mode); });
        if (descriptor >= 0) return descriptor;
        if (errno == EEXIST) continue;
        keepReasonOfFolder(errno);
        break;
    }
    return Descriptor::none;
}

} // namespace Host
