#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace Host {

/// The places of saving: the target behind all links, and the new file beside it.
struct SavePath {
    std::filesystem::path folder;
    std::filesystem::path target;
    std::filesystem::path temporary;

    /// The absolute target of `path`. It follows links, even to files that do not exist yet.
    /// Nothing for a path whose folder does not exist or cannot be reached.
    static std::optional<SavePath> resolve(std::string_view path);

    /// Makes a new file beside the target, of `mode` under the process's mask. Gives its descriptor
    /// or -1.
    int createTemporary(unsigned mode);
};

} // namespace Host
