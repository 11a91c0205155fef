#pragma once

/// How play_feed ends.
namespace player::exit_status {

inline constexpr int kComplete = 0;
inline constexpr int kIncomplete = 1;     // a record was not handed over, or the report could not be written
inline constexpr int kUnplayable = 2;     // wrong usage or settings
inline constexpr int kInterrupted = 128;  // and the signal's number

}  // namespace player::exit_status
