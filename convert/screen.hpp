#pragma once

#include <optional>

namespace ztdecode {

// Copies the first four lines of a screen file, without the verdict that its first line may be. Result: of
// closing the output; none when a file cannot be opened.
std::optional<int> A_Convert_scr(const char* in_path, const char* out_path) noexcept;

// Writes where up to four lines of two screen files differ. Result: of the last close; 0 when the first file
// cannot be opened.
int A_Diff_scr(const char* path_a, const char* path_b, const char* out_path) noexcept;

}  // namespace ztdecode
