#include "replay/scene.h"

#include <QEventLoop>
#include <QTimer>
#include <cstddef>
#include <fstream>
#include <vector>

#include "make_database/database_writer.h"

namespace bench {
namespace {

void WriteDatabase(const std::string& path, std::size_t records)
{
    constexpr double kFirstDay = 38000;
    constexpr double kDaysApart = 1.0 / 86'400;
    std::vector<tools::Receipt> receipts;
    for (std::size_t i = 0; i < records; ++i) {
        const double moment = kFirstDay + static_cast<double>(i) * kDaysApart;
        receipts.push_back({.ref = static_cast<std::int32_t>(i),
                            .rawtransaction = RecordText(i),
                            .timestamp = moment,
                            .datetimestamp = moment});
    }
    std::ofstream(path, std::ios::binary) << tools::DatabaseBytes(receipts);
}

void WriteSettings(const std::string& path, const Scene::Settings& settings)
{
    std::ofstream(path) << "[Timer]\nInterval=" << settings.interval.count()
                        << "\n[TCP/IP Settings]\nIpAddress=" << AddressFor(settings.protocol)
                        << "\nPortNumber=" << settings.port << "\nProtocol=" << NameOf(settings.protocol)
                        << "\nConnect=Connect\nReconnect=" << (settings.reconnect ? "YES" : "NO")
                        << "\n[Database File]\nFilePath=feed.mdb\n";
}

}  // namespace

std::string RecordText(std::size_t number)
{
    std::string text = "Transaction " + std::to_string(number) + "\r\n";
    while (text.size() < kRecordSize)
        text += "1 FLAT WHITE                   3.20\r\n";
    text.resize(kRecordSize);
    return text;
}

Scene::Scene(const Settings& settings)
{
    WriteDatabase(folder_.Path("feed.mdb"), settings.records);
    WriteSettings(folder_.Path("Config.ini"), settings);
    program_ = std::make_unique<Trellivan>(folder_.Path(), QLocale::c());
    program_->Start();
}

void Scene::Run(std::chrono::milliseconds duration)
{
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace bench
