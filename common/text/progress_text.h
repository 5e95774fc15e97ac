// How far work is, in the words that both programs show. The units are everybody's and stay untranslated.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace genostat::common {

// "42 %", at most 100: a file that grows while it is read has no more than all of it read.
std::string percentText(std::uint64_t part, std::uint64_t whole);

// Of bytes: "4.2 MB", "230 MB", "12.3 GB".
std::string sizeText(std::uint64_t bytes);
// The number alone, in the unit that sizeText() gives `whole`, for a part of it.
std::string sizeNumber(std::uint64_t part, std::uint64_t whole);

// "4.2 MB/s", "312 MB/s".
std::string rateText(double bytesPerSecond);

// "0:12", "3:07", "2:15:00"; a part of a second counts as a whole one.
std::string clockText(double seconds);

// How many seconds the rest will take if it goes on as it did for so many; nothing where that cannot be
// foreseen.
std::optional<double> secondsLeft(std::uint64_t done, std::uint64_t total, double seconds);

}  // namespace genostat::common
