#include "record/datagram_source.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <string>
#include <utility>

#include "platform/sockets/socket.h"
#include "record/local_port.h"

namespace record {
namespace {

using platform::sockets::SetOption;
using platform::sockets::SocketAddress;

constexpr std::size_t kLongestDatagram = std::size_t{64} << 10;
constexpr std::size_t kDatagramsARead = 16;
constexpr int kBytesThatWait = 4 << 20;  // asked for; the system may give less
constexpr std::chrono::seconds kBetweenHellos{1};

/// Room for the count of datagrams that the system had to drop.
using ControlBytes = std::array<char, CMSG_SPACE(sizeof(std::uint32_t))>;

/// What one read can bring.
struct Batch {
    std::array<mmsghdr, kDatagramsARead> messages{};
    std::array<iovec, kDatagramsARead> pieces{};
    std::array<sockaddr_in6, kDatagramsARead> senders{};
    alignas(cmsghdr) std::array<ControlBytes, kDatagramsARead> controls{};

    explicit Batch(std::vector<char>& buffer)
    {
        for (std::size_t i = 0; i < kDatagramsARead; ++i) {
            pieces[i] = {.iov_base = buffer.data() + i * kLongestDatagram, .iov_len = kLongestDatagram};
            msghdr& header = messages[i].msg_hdr;
            header.msg_iov = &pieces[i];
            header.msg_iovlen = 1;
            header.msg_name = &senders[i];
            header.msg_namelen = sizeof senders[i];
            header.msg_control = controls[i].data();
            header.msg_controllen = controls[i].size();
        }
    }
};

}  // namespace

DatagramSource::DatagramSource(const Surroundings& surroundings)
    : around_(surroundings),
      buffer_(kLongestDatagram * kDatagramsARead),
      lookup_(around_.gate, around_.loop),
      second_(around_.loop.NewAlarm([this] { SecondHasPassed(); }))
{
    Open();
    SetOption(socket_, SOL_SOCKET, SO_RCVBUF, kBytesThatWait);
    SetOption(socket_, SOL_SOCKET, SO_RXQ_OVFL, 1);
    readable_.emplace(around_.loop, socket_, platform::Readiness::kReadable, [this] { Read(); });
    if (around_.options.origin == Origin::kUdpConnect)
        SecondHasPassed();
}

void DatagramSource::Open()
{
    const HostAndPort& at = around_.options.at;
    if (around_.options.origin == Origin::kGroup) {
        JoinedGroup joined = JoinGroup(at);
        socket_ = std::move(joined.socket);
        around_.console.Say("joined group " + at.host + " port " + std::to_string(at.port) + " on " +
                            joined.interfaces);
    } else if (around_.options.origin == Origin::kUdpListen) {
        socket_ = OpenLocalPort(at, SOCK_DGRAM);
        around_.console.Say("waiting for datagrams on port " +
                            std::to_string(SocketAddress::OfSocket(socket_.Number()).Port()));
    } else {
        socket_ = OpenLocalPort({}, SOCK_DGRAM);
        around_.console.Say("saying hello to " + at.host + " port " + std::to_string(at.port));
    }
}

void DatagramSource::Read()
{
    Batch batch(buffer_);
    const int count =
        ::recvmmsg(socket_.Number(), batch.messages.data(), kDatagramsARead, MSG_DONTWAIT, nullptr);
    const auto now = around_.clock.Now();
    for (std::size_t i = 0; std::cmp_less(i, count); ++i) {
        SetSender(batch.senders[i]);
        CountLost(batch.messages[i].msg_hdr);
        CutRecord record{.text = {buffer_.data() + i * kLongestDatagram, batch.messages[i].msg_len},
                         .time = {},
                         .arrived = now};
        if (around_.options.rule.transferTime)
            SplitTransferTime(record);
        around_.recorder.Keep(record);
    }
    if (count <= 0)
        readable_->Rest();
    hasCome_ = hasCome_ || count > 0;
    around_.recorder.Flush();
}

void DatagramSource::SetSender(const sockaddr_in6& address)
{
    if (std::memcmp(&address, &lastSender_, sizeof address) == 0)
        return;
    lastSender_ = address;
    around_.recorder.SetSender(
        SocketAddress(reinterpret_cast<const sockaddr*>(&lastSender_), sizeof lastSender_).Text());
}

void DatagramSource::CountLost(const msghdr& message)
{
    const auto* const header = CMSG_FIRSTHDR(&message);
    if (header == nullptr || header->cmsg_level != SOL_SOCKET || header->cmsg_type != SO_RXQ_OVFL)
        return;
    std::uint32_t lost = 0;
    std::memcpy(&lost, CMSG_DATA(header), sizeof lost);
    const std::uint32_t more = lost - std::exchange(lostBefore_, lost);
    std::uint64_t& counted = around_.recorder.Counts().lostDatagrams;
    if (more > 0 && counted == 0)
        around_.console.Say("datagrams come faster than they can be recorded; some are lost");
    counted += more;
}

void DatagramSource::SecondHasPassed()
{
    second_->Set(std::chrono::steady_clock::now() + kBetweenHellos);
    if (std::exchange(hasCome_, false))
        return;
    const std::string& host = around_.options.at.host;
    if (const auto address = platform::sockets::AddressFromText(host))
        SayHello({*address});
    else
        lookup_.Start(host, [this](const std::vector<SocketAddress>& addresses) { SayHello(addresses); });
}

/// A till that is not there yet gets the next one.
void DatagramSource::SayHello(const std::vector<SocketAddress>& till)
{
    if (till.empty())
        return;
    const auto ipv4 = std::ranges::find(till, AF_INET, &SocketAddress::Family);
    SocketAddress address = ipv4 != till.end() ? *ipv4 : till.front();
    address.SetPort(around_.options.at.port);
    if (SocketAddress::OfSocket(socket_.Number()).Family() == AF_INET6)
        address = address.AsIPv6();
    ::sendto(socket_.Number(), nullptr, 0, 0, address.Data(), address.Size());
}

}  // namespace record
