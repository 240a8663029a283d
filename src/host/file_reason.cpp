#include "host/file_reason.h"

#include <host/error.h>

#include <cerrno>

namespace Host {

namespace {

thread_local const char* current = "";

struct Reason {
    int number;
    const char* words;
};

constexpr Reason reasons[] = {
    {ENOENT, "there is no such file or folder"},
    {EACCES, "permission denied"},
    {EPERM, "permission denied"},
    {ENOTDIR, "a part of its path is no folder"},
    {EISDIR, "it is a folder"},
    {ELOOP, "its links lead in a circle"},
    {ENAMETOOLONG, "its name is too long"},
    {EROFS, "its file system takes no changes"},
    {ENOSPC, "no space is left"},
    {EDQUOT, "no space is left to this user"},
    {EFBIG, "files may not be as large as that"},
    {EMFILE, "too many files are open"},
    {ENFILE, "too many files are open"},
    {EIO, "its device failed"},
    {ESTALE, "its device failed"},
};

} // namespace

void keepReason(const char* words) noexcept {
    current = words;
}

void keepReason(int number) noexcept {
    current = "";
    for (const Reason& known : reasons) {
        if (known.number == number) current = known.words;
    }
}

const char* Error::reason() noexcept {
    return current;
}

} // namespace Host
