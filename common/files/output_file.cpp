#include "common/files/output_file.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "common/files/part_file.h"

namespace genostat::common {

namespace {

namespace fs = std::filesystem;

fs::path placeFor(const fs::path& target, PlaceLink link) {
  return link == PlaceLink::Follow ? placeOf(target) : target;
}

bool isDeviceAt(const fs::path& place, PlaceLink link) {
  std::error_code unknown;
  const bool follows = link == PlaceLink::Follow;
  const fs::file_status status = follows ? fs::status(place, unknown) : fs::symlink_status(place, unknown);
  if (fs::is_directory(status)) throw std::system_error(std::make_error_code(std::errc::is_a_directory));
  const bool isDevice = fs::exists(status) && !fs::is_regular_file(status) && !fs::is_symlink(status);
  if (isDevice && !follows) throw std::runtime_error("it is no regular file");
  return isDevice;
}

void writeDevice(const fs::path& place, std::string_view text) {
  std::filebuf device;
  const auto size = static_cast<std::streamsize>(text.size());
  errno = 0;
  if (device.open(place, std::ios::out | std::ios::binary) == nullptr ||
      device.sputn(text.data(), size) != size || device.close() == nullptr) {
    throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
  }
}

// What is kept in memory of a file that goes on.
constexpr std::size_t kMostPending = std::size_t{64} << 10;

}  // namespace

fs::path placeOf(const fs::path& path) {
  std::error_code error;
  fs::path place = fs::weakly_canonical(fs::absolute(path, error), error);
  return error ? path.lexically_normal() : place;
}

OutputFile::OutputFile(fs::path target, PlaceLink link)
    : target_(std::move(target)), place_(placeFor(target_, link)), link_(link) {
  if (isDeviceAt(place_, link_)) return;
  removeAbandonedPartsOnce(place_.parent_path());
  createPart(place_.parent_path());
}

void OutputFile::write(std::string_view text) const {
  writeFile(place_, text, link_);
}

bool OutputFile::isDevice() const {
  return isDeviceAt(place_, link_);
}

bool OutputFile::isSameAs(const fs::path& other) const {
  std::error_code different;
  return placeOf(other) == place_ || fs::equivalent(other, place_, different);
}

StreamedFile::StreamedFile(const fs::path& target, PlaceLink link, LockedFile::FolderLink folderLink)
    : place_(placeFor(target, link)), folderLink_(folderLink), isDevice_(isDeviceAt(place_, link)) {}

LockedFile& StreamedFile::part() {
  if (!part_) {
    removeAbandonedPartsOnce(place_.parent_path());
    part_.emplace(createPart(place_.parent_path(), folderLink_));
  }
  return *part_;
}

void StreamedFile::write(std::string_view text) {
  if (isDevice_ || pending_.size() + text.size() < kMostPending) {
    pending_ += text;
    return;
  }
  part().write(std::exchange(pending_, {}));
  part().write(text);
}

void StreamedFile::finish() {
  if (isDevice_) return writeDevice(place_, pending_);
  part().write(pending_);
  part().moveTo(place_);
}

void writeFile(const fs::path& target, std::string_view text, PlaceLink link,
               LockedFile::FolderLink folderLink) {
  StreamedFile file(target, link, folderLink);
  file.write(text);
  file.finish();
}

}  // namespace genostat::common
