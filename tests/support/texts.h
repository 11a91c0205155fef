#pragma once

#include <numeric>
#include <string>
#include <vector>

using Texts = std::vector<std::string>;

/// The texts one after the other.
[[nodiscard]] inline std::string Joined(const Texts& texts)
{
    return std::accumulate(texts.begin(), texts.end(), std::string());
}

/// A text of all 256 bytes.
[[nodiscard]] inline std::string EveryByte()
{
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}
