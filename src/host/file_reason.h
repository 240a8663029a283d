#pragma once

namespace Host {

/// Keeps the reason why the system refused a file, for `Error::reason`. `number` is an errno value;
/// 0, and a number that says nothing about files, empties the reason.
void keepReason(int number) noexcept;

/// The same in words. They must stay valid, as a literal does.
void keepReason(const char* words) noexcept;

} // namespace Host
