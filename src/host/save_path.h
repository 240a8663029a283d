#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace Host {

/// Where a file is saved to: the target behind all links, and the new file beside it.
struct SavePath {
    std::filesystem::path folder;
    std::filesystem::path target;
    std::filesystem::path temporary;

    /// The absolute target of `path`, links followed even where they lead to nothing yet. Nothing
    /// for a path whose folder does not exist or cannot be reached.
    static std::optional<SavePath> resolve(std::string_view path);

    /// Makes a new file beside the target and gives its descriptor, or -1. The process's mask
    /// applies to `mode`.
    int createTemporary(unsigned mode);
};

} // namespace Host
