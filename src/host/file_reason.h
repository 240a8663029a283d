#pragma once

namespace Host {

/// Keeps why the system refused a file, for `Error::reason`. `number` is an errno value; 0, or one
/// that says nothing about files, empties it.
void keepReason(int number) noexcept;

/// The same in words that must outlive their use (a literal's do).
void keepReason(const char* words) noexcept;

} // namespace Host
