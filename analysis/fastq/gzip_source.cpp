#include "analysis/fastq/gzip_source.h"

#include <algorithm>
#include <limits>
#include <new>

namespace genostat::analysis {

namespace {

constexpr int kGzipOnly = 16;  // added to the window bits: expect a gzip header and trailer

Bytef* asBytes(char* text) {
  return reinterpret_cast<Bytef*>(text);
}

}  // namespace

GzipSource::GzipSource(std::unique_ptr<ByteSource> compressed, std::size_t inputSize)
    : compressed_(std::move(compressed)), input_(inputSize) {
  if (inflateInit2(&stream_, MAX_WBITS + kGzipOnly) != Z_OK) throw std::bad_alloc();
}

GzipSource::~GzipSource() {
  inflateEnd(&stream_);
}

std::size_t GzipSource::read(std::span<char> into) {
  if (!defect_.empty()) throw SourceError(defect_);
  const std::size_t size = std::min<std::size_t>(into.size(), std::numeric_limits<uInt>::max());
  stream_.next_out = asBytes(into.data());
  stream_.avail_out = static_cast<uInt>(size);
  const auto produced = [&] { return size - stream_.avail_out; };
  while (stream_.avail_out > 0) {
    // What can fail for want of good input starts only when no output waits to be delivered.
    if ((betweenMembers_ || stream_.avail_in == 0) && produced() > 0) break;
    if (betweenMembers_ && !beginMember()) break;
    if (stream_.avail_in == 0 && !refill()) throw SourceError(located("the compressed data end too early"));
    const int result = inflate(&stream_, Z_NO_FLUSH);
    if (result == Z_STREAM_END) {
      betweenMembers_ = true;
    } else if (result == Z_MEM_ERROR) {
      throw std::bad_alloc();
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
      const std::string reason = stream_.msg != nullptr ? stream_.msg : "unknown format";
      defect_ = located("the compressed data are corrupt (" + reason + ")");
      if (produced() > 0) break;
      throw SourceError(defect_);
    }
  }
  return produced();
}

bool GzipSource::refill() {
  // Between members a first magic byte may be left over; it moves to the front.
  const std::size_t left = stream_.avail_in;
  std::copy_n(stream_.next_in, left, asBytes(input_.data()));
  const std::size_t size = compressed_->read(std::span(input_).subspan(left));
  compressedRead_ += size;
  stream_.next_in = asBytes(input_.data());
  stream_.avail_in = static_cast<uInt>(left + size);
  return size > 0;
}

bool GzipSource::beginMember() {
  while (stream_.avail_in < kMagic.size() && refill()) {
  }
  if (stream_.avail_in == 0) return false;
  const std::string_view rest(reinterpret_cast<const char*>(stream_.next_in), stream_.avail_in);
  if (!rest.starts_with(kMagic)) {
    throw SourceError(located("after the compressed data follow bytes that are not compressed"));
  }
  inflateReset(&stream_);
  betweenMembers_ = false;
  return true;
}

std::string GzipSource::located(const std::string& defect) const {
  return defect + ", at byte " + std::to_string(compressedRead_ - stream_.avail_in) + " of the file";
}

}  // namespace genostat::analysis
