#include "fuzz_window/stage.h"

#include <fcntl.h>
#include <linux/mount.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "make_database/database_writer.h"

namespace fs = std::filesystem;

namespace stage {
namespace {

const std::string kDisk = "/mnt";
constexpr std::size_t kDiskSize = std::size_t{16} << 20;

void Check(long result, const char* what)
{
    if (result != 0)
        throw std::system_error(errno, std::generic_category(), what);
}

void SetReadOnly(bool readOnly)
{
    const unsigned long flags = MS_REMOUNT | MS_BIND;
    ::mount(nullptr, kDisk.c_str(), nullptr, readOnly ? flags | MS_RDONLY : flags, nullptr);
}

std::string DatabaseContent()
{
    constexpr double kMoment = 38423.5;
    std::vector<tools::Receipt> receipts;
    for (const std::string& text : Feed())
        receipts.push_back({static_cast<std::int32_t>(receipts.size()), text, kMoment, kMoment});
    const tools::Bytes bytes = tools::DatabaseBytes(receipts);
    return {bytes.begin(), bytes.end()};
}

void Fill(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}

void PutOverDatabase(const std::string& content)
{
    Fill(kDatabase + ".new", content);
    ::rename((kDatabase + ".new").c_str(), kDatabase.c_str());
}

void PutRubbishInto(const std::string& path, Random& random)
{
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    for (int bytes = 0; bytes < 1000; ++bytes) {
        if (bytes % 50 == 0)
            file.seekp(random.Below(1'000'000));
        file.put(static_cast<char>(random.Below(256)));
    }
}

/// Nothing, a folder, a pipe without a reader, or a link to itself.
void PutInPlaceOf(const std::string& path, Random& random)
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
    const int what = random.Below(4);
    if (what == 1)
        fs::create_directory(path, ignored);
    else if (what == 2)
        ::mkfifo(path.c_str(), S_IRUSR | S_IWUSR);
    else if (what == 3)
        fs::create_symlink(path, path, ignored);
}

}  // namespace

void Build()
{
    Check(::unshare(CLONE_NEWNS | CLONE_NEWNET), "no mounts and network of its own");
    Check(std::system("ip link set lo up multicast on && ip route add 224.0.0.0/4 dev lo"), "loop-back");
    Check(::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "private mounts");
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    Check(::syscall(SYS_mount_setattr, AT_FDCWD, "/", AT_RECURSIVE, &readOnly, sizeof readOnly), "read only");
    Check(::mount("tmpfs", kDisk.c_str(), "tmpfs", 0, ("size=" + std::to_string(kDiskSize)).c_str()), "disk");
    fs::current_path(kDisk);
}

void Furnish()
{
    SetReadOnly(false);
    for (const auto& entry : fs::directory_iterator(kDisk))
        fs::remove_all(entry);
    fs::create_directory(kFolder);
    Fill(kDatabase, DatabaseContent());
    Fill(kSettings,
         "[Timer]\nInterval=1\n[TCP/IP Settings]\nIpAddress=239.1.2.3\nPortNumber=" + std::to_string(kPort) +
             "\nConnect=Connect\nProtocol=MCAST\nReconnect=NO\n[Database File]\nFilePath=" + kDatabase +
             "\n");
}

void CauseFault(Random& random)
{
    const std::string files[] = {kDatabase, kSettings, kLog};
    switch (random.Below(8)) {
        case 0:
            static_cast<void>(::truncate(kDatabase.c_str(), random.Below(500'000)));
            break;
        case 1:
            PutOverDatabase(DatabaseContent());
            break;
        case 2:
            PutOverDatabase("no database");
            break;
        case 3:
            ::rename(kFolder.c_str(), (kDisk + "/elsewhere").c_str());
            break;
        case 4:
            Fill(kDisk + "/filler", std::string(kDiskSize, 'x'));
            break;
        case 5:
            SetReadOnly(random.OneIn(2));
            break;
        case 6:
            PutRubbishInto(random.OneIn(2) ? kDatabase : kSettings, random);
            break;
        default:
            PutInPlaceOf(random.Of(files), random);
    }
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

}  // namespace stage
