#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace bench {

/// A peer at a port of this machine that resets every connection at once, until it is told to keep them.
class StormPeer {
public:
    enum class Manner { kResets, kKeeps };

    StormPeer(std::uint16_t port, Manner manner);
    StormPeer(const StormPeer&) = delete;
    StormPeer& operator=(const StormPeer&) = delete;
    ~StormPeer();

    void KeepFromNowOn() { manner_ = Manner::kKeeps; }

    [[nodiscard]] std::size_t Kept() const { return kept_; }

private:
    void Serve(std::uint16_t port);

    std::atomic<Manner> manner_;
    std::atomic<bool> stopping_ = false;
    std::atomic<std::size_t> kept_ = 0;
    std::thread thread_;
};

}  // namespace bench
