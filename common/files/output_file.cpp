#include "common/files/output_file.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

#include "common/files/part_file.h"

namespace genostat::common {

namespace {

namespace fs = std::filesystem;

bool isDeviceAt(const fs::path& place) {
  std::error_code unknown;
  const fs::file_status status = fs::status(place, unknown);
  if (fs::is_directory(status)) throw std::system_error(std::make_error_code(std::errc::is_a_directory));
  return fs::exists(status) && !fs::is_regular_file(status);
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

void writeAt(const fs::path& place, std::string_view text) {
  if (isDeviceAt(place)) return writeDevice(place, text);
  platform::LockedFile part = createPart(place.parent_path());
  part.write(text);
  part.moveTo(place);
  removeAbandonedParts(place.parent_path());
}

}  // namespace

fs::path placeOf(const fs::path& path) {
  std::error_code error;
  fs::path place = fs::weakly_canonical(fs::absolute(path, error), error);
  return error ? path.lexically_normal() : place;
}

OutputFile::OutputFile(fs::path target) : target_(std::move(target)), place_(placeOf(target_)) {
  if (isDeviceAt(place_)) return;
  removeAbandonedParts(place_.parent_path());
  createPart(place_.parent_path());
}

void OutputFile::write(std::string_view text) const {
  writeAt(place_, text);
}

bool OutputFile::isDevice() const {
  return isDeviceAt(place_);
}

bool OutputFile::isSameAs(const fs::path& other) const {
  std::error_code different;
  return placeOf(other) == place_ || fs::equivalent(other, place_, different);
}

void writeFile(const fs::path& target, std::string_view text) {
  writeAt(placeOf(target), text);
}

}  // namespace genostat::common
