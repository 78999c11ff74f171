// An instant given by its local calendar fields, in local time and in GMT.
#pragma once

#include <ctime>
#include <optional>

namespace korlit {

/// The zone is the system's: the environment variable TZ, else the machine's.
class CTime {
  public:
    /// The instant that these fields denote, `month` from 1. Years from 1900 to 9999 are covered;
    /// what is no calendar date there denotes no instant. A minute or second of 60 is the start of
    /// the next hour or minute. With a `daylightSaving` of -1 the system decides.
    CTime(int year, int month, int day, int hour, int minute, int second, int daylightSaving);

    /// Broken-down forms of the instant; nothing if there is none.
    std::optional<std::tm> GetLocalTm() const;
    std::optional<std::tm> GetGmtTm() const;

  private:
    std::optional<std::time_t> instant;
};

} // namespace korlit
