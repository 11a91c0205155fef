#include "fuzz_window/stage.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <linux/mount.h>
#include <net/if.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "make_database/database_writer.h"

namespace stage {
namespace {

void Check(long result, const char* what)
{
    if (result != 0)
        throw std::system_error(errno, std::generic_category(), what);
}

/// Any address may be typed, so nothing must lead to it.
void RequireNoWayOut()
{
    ifaddrs* addresses = nullptr;
    Check(::getifaddrs(&addresses), "addresses");
    bool leadsOut = false;
    for (const ifaddrs* address = addresses; address != nullptr; address = address->ifa_next)
        leadsOut |= address->ifa_addr != nullptr && address->ifa_addr->sa_family != AF_PACKET &&
                    (address->ifa_flags & IFF_LOOPBACK) == 0;
    ::freeifaddrs(addresses);
    if (leadsOut)
        throw std::system_error(EPERM, std::generic_category(), "no network of its own");
}

}  // namespace

void Build()
{
    RequireNoWayOut();
    Check(::unshare(CLONE_NEWNS), "no mounts of its own");
    Check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "private mounts");
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    Check(::syscall(SYS_mount_setattr, AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly), "read only");
    Check(::mount("tmpfs", kDisk.c_str(), "tmpfs", 0, "size=16m"), "disk");
    std::filesystem::current_path(kDisk);
}

void SetReadOnly(bool readOnly)
{
    const unsigned long flags = MS_REMOUNT | MS_BIND;
    Check(::mount(nullptr, kDisk.c_str(), nullptr, readOnly ? flags | MS_RDONLY : flags, nullptr), "remount");
}

void Furnish()
{
    SetReadOnly(false);
    for (const auto& entry : std::filesystem::directory_iterator(kDisk))
        std::filesystem::remove_all(entry);
    std::filesystem::create_directory(kFolder);
    std::ofstream(kDatabase, std::ios::binary) << DatabaseContent();
    std::ofstream(kSettings) << "[Timer]\nInterval=1\n[TCP/IP Settings]\nIpAddress=239.1.2.3\nPortNumber="
                             << kPort
                             << "\nConnect=Connect\nProtocol=MCAST\nReconnect=NO\n[Database File]\nFilePath="
                             << kDatabase << "\n";
}

std::vector<std::string> Feed()
{
    constexpr int kRecords = 400;
    constexpr std::size_t kLongest = 60'000;  // a datagram holds it
    std::vector<std::string> feed;
    for (int record = 0; record < kRecords; ++record) {
        feed.push_back("Receipt " + std::to_string(record) + "\r\n\t1 FLAT WHITE|3.20\r\n");
        if (record % 50 == 0)
            feed.back().resize(kLongest, '=');
    }
    return feed;
}

std::string DatabaseContent()
{
    constexpr double kMoment = 38423.5;
    std::vector<tools::Receipt> receipts;
    for (const std::string& text : Feed())
        receipts.push_back({.ref = static_cast<std::int32_t>(receipts.size()),
                            .rawtransaction = text,
                            .timestamp = kMoment,
                            .datetimestamp = kMoment});
    const tools::Bytes bytes = tools::DatabaseBytes(receipts);
    return {bytes.begin(), bytes.end()};
}

}  // namespace stage
