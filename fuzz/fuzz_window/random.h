#pragma once

#include <cstdint>
#include <iterator>
#include <random>

/// The choices of one event: the same for the same seed and number, whatever came before.
class Random {
public:
    Random(std::uint64_t seed, std::uint64_t event) : engine_((seed << 32) + event) {}

    /// 0 up to, but not including, the end, which is at least 1.
    [[nodiscard]] int Below(int end) { return static_cast<int>(engine_() % static_cast<std::uint64_t>(end)); }

    [[nodiscard]] bool OneIn(int times) { return Below(times) == 0; }

    template <class List>
    [[nodiscard]] const auto& Of(const List& list)
    {
        return *std::next(std::begin(list), Below(static_cast<int>(std::size(list))));
    }

private:
    std::mt19937_64 engine_;
};
