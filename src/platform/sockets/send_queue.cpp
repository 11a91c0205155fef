#include "platform/sockets/send_queue.h"

#include <sys/socket.h>

#include <cerrno>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10;
constexpr int kBlocksAPass = 16;

}  // namespace

bool SendQueue::IsTooMuch(std::size_t bytes) const
{
    return bytes > kMostWaiting || waitingInAll_ > kMostWaiting - bytes;
}

void SendQueue::Append(std::string_view bytes)
{
    if (blocks_.empty() || blocks_.back().size() + bytes.size() > kBlock)
        blocks_.emplace_back();
    blocks_.back().append(bytes);
    waiting_ += bytes.size();
    waitingInAll_ += bytes.size();
}

std::error_code SendQueue::SendTo(const FileDescriptor& socket)
{
    for (int i = 0; i < kBlocksAPass && !blocks_.empty(); ++i) {
        const std::string_view rest = std::string_view(blocks_.front()).substr(sentOfFront_);
        const ssize_t sent = ::send(socket.Number(), rest.data(), rest.size(), MSG_NOSIGNAL);
        const bool isFull = sent < 0 && errno == EAGAIN && i > 0;
        if (isFull)
            break;
        if (sent < 0)
            return LastError();
        DropFront(static_cast<std::size_t>(sent));
    }
    return {};
}

void SendQueue::DropFront(std::size_t bytes)
{
    waiting_ -= bytes;
    waitingInAll_ -= bytes;
    sentOfFront_ += bytes;
    if (sentOfFront_ < blocks_.front().size())
        return;
    blocks_.pop_front();
    sentOfFront_ = 0;
}

}  // namespace platform::sockets
