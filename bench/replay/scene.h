#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "replay/receiver.h"
#include "support/temporary_folder.h"
#include "window/trellivan.h"

namespace bench {

/// Every record of the database that a scene replays is of this size on the wire.
inline constexpr std::size_t kRecordSize = 240;

/// A record of that size.
[[nodiscard]] std::string RecordText(std::size_t number);

/// The whole program in its window, in a folder of its own with settings and a database. Needs a QApplication.
class Scene {
public:
    struct Settings {
        Protocol protocol;
        std::uint16_t port;
        std::chrono::milliseconds interval;
        bool reconnect = false;
        std::size_t records = 0;  ///< in the database
    };

    /// The program is started, in the client role.
    explicit Scene(const Settings& settings);

    [[nodiscard]] platform::window::MainWindow& Window() { return program_->Window(); }
    [[nodiscard]] std::string ErrorLog() const { return folder_.Path("Trellivan Error.log"); }

    /// Presses Play.
    void Play() { Window().cmdPlay.click(); }

    /// Lets the program run.
    static void Run(std::chrono::milliseconds duration);

private:
    TemporaryFolder folder_;
    std::unique_ptr<Trellivan> program_;
};

}  // namespace bench
