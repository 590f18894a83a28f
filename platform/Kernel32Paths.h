#pragma once

#include <filesystem>
#include <optional>

namespace OvCc::Kernel32 {

/// The Linux path of a Windows one, spelled as it was given. On failure the last error is set.
std::optional<std::filesystem::path> mappedPath(const wchar_t *name);

/// @p path, spelled as far as it exists as the folders have it.
std::filesystem::path spelledOnDisk(const std::filesystem::path &path);

/// mappedPath(), spelled as on disk.
std::optional<std::filesystem::path> existingPath(const wchar_t *name);

} // namespace OvCc::Kernel32
