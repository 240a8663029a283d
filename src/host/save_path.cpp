#include "host/save_path.h"

#include "host/descriptor.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace Host {

namespace {

constexpr int linkLimit = 40;
constexpr int attemptLimit = 100;
constexpr std::string_view suffixLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::size_t suffixLength = 6;

std::optional<std::string> canonical(const std::string& path) {
    struct Free {
        void operator()(char* text) const noexcept { std::free(text); }
    };
    const std::unique_ptr<char, Free> real(::realpath(path.c_str(), nullptr));
    if (!real) return std::nullopt;
    return std::string(real.get());
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::optional<std::string> linkTarget(const std::string& path) {
    std::array<char, PATH_MAX> text;
    const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
    if (length <= 0 || static_cast<std::size_t>(length) == text.size()) return std::nullopt;
    std::string target(text.data(), static_cast<std::size_t>(length));
    return target.front() == '/' ? target : folderOf(path) + target;
}

std::optional<std::string> newName(const std::string& path) {
    const std::string folder = folderOf(path);
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::optional<std::string> real = canonical(folder);
    if (!real || name.empty()) return std::nullopt;
    return (*real == "/" ? "" : *real) + "/" + name;
}

SavePath behindLinks(std::string target) {
    std::string folder = folderOf(target);
    return {std::move(folder), std::move(target), {}};
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
    std::string current(path);
    for (int links = 0; links < linkLimit; ++links) {
        std::optional<std::string> target = canonical(current);
        if (!target && errno != ENOENT) return std::nullopt;
        std::optional<std::string> next = target ? std::nullopt : linkTarget(current);
        if (!next) {
            if (!target) target = newName(current);
            if (!target) return std::nullopt;
            return behindLinks(std::move(*target));
        }
        current = std::move(*next);
    }
    return std::nullopt;
}

int SavePath::createTemporary(unsigned mode) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    const std::size_t room = NAME_MAX - suffixLength - 1;
    const std::string base = folder + target.substr(folder.size(), room);
    for (int attempt = 0; attempt < attemptLimit; ++attempt) {
        temporary = base + randomSuffix();
        const int descriptor =
            uninterrupted([&] { return ::open(temporary.c_str(), flags, mode); });
        if (descriptor >= 0 || errno != EEXIST) return descriptor;
    }
    return Descriptor::none;
}

} // namespace Host
