#include "analysis/metrics/tiles.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <system_error>

namespace genostat::analysis {

namespace {

constexpr char kSeparator = ':';

// A sign is allowed before the digits, blanks are not.
std::optional<int> integerOf(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

}  // namespace

TileScheme::TileScheme(std::string_view firstHeader) {
  while (firstHeader.ends_with(kSeparator)) {
    firstHeader.remove_suffix(1);
  }
  const auto fields = std::count(firstHeader.begin(), firstHeader.end(), kSeparator) + 1;
  if (fields >= 7) {
    field_ = 4;
  } else if (fields >= 5) {
    field_ = 2;
  }
}

std::optional<int> TileScheme::tileOf(std::string_view header) const {
  if (field_ < 0) return std::nullopt;
  for (int i = 0; i < field_; ++i) {
    const std::size_t separator = header.find(kSeparator);
    if (separator == std::string_view::npos) return std::nullopt;
    header.remove_prefix(separator + 1);
  }
  return integerOf(header.substr(0, header.find(kSeparator)));
}

void TileCounts::turnOff() {
  off_ = true;
  tiles_ = {};
  places_ = {};
}

TileCounts::Tile* TileCounts::find(int tile) {
  if (tile == lastTile_ && lastPlace_ < tiles_.size()) return &tiles_[lastPlace_];
  const auto [entry, isNew] = places_.try_emplace(tile, tiles_.size());
  if (isNew) {
    if (tiles_.size() == kMaxTiles) {
      turnOff();
      return nullptr;
    }
    tiles_.emplace_back();
  }
  lastTile_ = tile;
  lastPlace_ = entry->second;
  return &tiles_[lastPlace_];
}

void TileCounts::add(int tile, std::string_view quality, const Kernels& kernels) {
  if (off_) return;
  Tile* const found = find(tile);
  if (found == nullptr) return;
  const std::size_t length = quality.size();
  if (found->sums.size() < length) found->sums.resize(length);
  kernels.addCodes(quality.data(), length, found->sums.data());
  ++found->byLength[length];
}

void TileCounts::merge(const TileCounts& other) {
  if (other.off_) turnOff();
  if (off_) return;
  for (const auto& [number, place] : other.places_) {
    Tile* const mine = find(number);
    if (mine == nullptr) return;
    const Tile& others = other.tiles_[place];
    if (mine->sums.size() < others.sums.size()) mine->sums.resize(others.sums.size());
    std::transform(others.sums.begin(), others.sums.end(), mine->sums.begin(), mine->sums.begin(),
                   std::plus<>());
    for (const auto& [length, reads] : others.byLength) {
      mine->byLength[length] += reads;
    }
  }
}

std::map<int, const TileCounts::Tile*> TileCounts::tiles() const {
  std::map<int, const Tile*> sorted;
  for (const auto& [number, place] : places_) {
    sorted[number] = &tiles_[place];
  }
  return sorted;
}

}  // namespace genostat::analysis
