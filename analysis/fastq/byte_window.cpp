#include "analysis/fastq/byte_window.h"

#include <algorithm>

namespace genostat::analysis {

bool ByteWindow::extend(std::size_t step) {
  const std::size_t kept = std::min(begin_, kKept);
  const auto at = [this](std::size_t index) { return buffer_.begin() + static_cast<std::ptrdiff_t>(index); };
  std::copy(at(begin_ - kept), at(end_), buffer_.begin());
  end_ -= begin_ - kept;
  begin_ = kept;
  if (buffer_.size() < end_ + step) buffer_.resize(end_ + step);
  const std::size_t size = read(std::span(buffer_).subspan(end_, step));
  end_ += size;
  return size > 0;
}

bool ByteWindow::extendTo(std::size_t size, std::size_t step) {
  while (end_ - begin_ < size) {
    if (!extend(step)) return false;
  }
  return true;
}

std::size_t ByteWindow::moveInto(std::span<char> into) {
  std::size_t filled = std::min(into.size(), end_ - begin_);
  std::copy_n(bytes().begin(), filled, into.begin());
  begin_ += filled;
  while (filled < into.size()) {
    const std::size_t more = read(into.subspan(filled));
    if (more == 0) break;
    filled += more;
  }
  return filled;
}

void ByteWindow::giveBack(std::span<const char> tail) {
  if (buffer_.size() < tail.size()) buffer_.resize(tail.size());
  std::copy(tail.begin(), tail.end(), buffer_.begin());
  begin_ = 0;
  end_ = tail.size();
}

std::size_t ByteWindow::read(std::span<char> into) {
  if (!failure_.empty()) return 0;
  try {
    const std::size_t size = source_->read(into);
    bytesRead_.store(bytesRead() + size, std::memory_order_relaxed);
    return size;
  } catch (const SourceError& error) {
    failure_ = error.what();
    return 0;
  }
}

}  // namespace genostat::analysis
