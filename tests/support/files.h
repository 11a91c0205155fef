#pragma once

#include <string>

void WriteFile(const std::string& path, const std::string& bytes);

/// All bytes of a file; none where it cannot be read.
[[nodiscard]] std::string ReadFile(const std::string& path);
