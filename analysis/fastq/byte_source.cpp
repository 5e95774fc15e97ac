#include "analysis/fastq/byte_source.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <string>
#include <system_error>

#include "platform/input_file.h"

namespace genostat::analysis {

namespace {

[[noreturn]] void failReading(const std::string& what, const std::error_code& reason) {
  throw SourceError("reading " + what + " failed" + (reason ? ": " + reason.message() : std::string()));
}

class FileSource : public ByteSource {
 public:
  explicit FileSource(const std::filesystem::path& path) : file_(path) {}

  std::size_t read(std::span<char> into) override {
    const std::size_t size = readAt(offset_, into);
    offset_ += size;
    return size;
  }
  std::uint64_t size() const override { return file_.size(); }
  std::size_t readAt(std::uint64_t offset, std::span<char> into) const override {
    try {
      return file_.readAt(offset, into);
    } catch (const std::system_error& error) {
      failReading("the file", error.code());
    }
  }

 private:
  platform::InputFile file_;
  std::uint64_t offset_ = 0;  // of the next read()
};

class PipeSource : public ByteSource {
 public:
  explicit PipeSource(const std::filesystem::path& path) {
    errno = 0;
    if (pipe_.open(path, std::ios::in | std::ios::binary) == nullptr)
      throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
  }

  std::size_t read(std::span<char> into) override {
    errno = 0;
    const std::streamsize size = pipe_.sgetn(into.data(), static_cast<std::streamsize>(into.size()));
    if (size == 0 && errno != 0) failReading("the pipe", std::error_code(errno, std::generic_category()));
    return static_cast<std::size_t>(size);
  }

 private:
  std::filebuf pipe_;
};

class StandardInput : public ByteSource {
 public:
  std::size_t read(std::span<char> into) override {
    errno = 0;
    const std::size_t size = std::fread(into.data(), 1, into.size(), stdin);
    // Bytes before the failure are delivered first; the stream remembers that it failed.
    if (size == 0 && std::ferror(stdin) != 0) {
      failReading("standard input", std::error_code(errno, std::generic_category()));
    }
    return size;
  }
};

}  // namespace

std::unique_ptr<ByteSource> openFile(const std::filesystem::path& path) {
  return std::make_unique<FileSource>(path);
}

std::unique_ptr<ByteSource> openPipe(const std::filesystem::path& path) {
  return std::make_unique<PipeSource>(path);
}

std::unique_ptr<ByteSource> openStandardInput() {
  return std::make_unique<StandardInput>();
}

}  // namespace genostat::analysis
