#include "tests/analysis/packed_text.h"

#include <zlib.h>

#include <stdexcept>

namespace genostat::test {

namespace {

Bytef* asBytes(std::string& text) {
  return reinterpret_cast<Bytef*>(text.data());
}

}  // namespace

std::string gzip(const std::string& text, const GzipOptions& options) {
  z_stream stream = {};
  deflateInit2(&stream, options.level, Z_DEFLATED, MAX_WBITS + 16, 8,
               options.fixedCodes ? Z_FIXED : Z_DEFAULT_STRATEGY);
  std::string extra = options.extra;
  std::string name = "reads.fastq";
  std::string comment = "of a run";
  gz_header header = {};
  header.os = 3;
  if (!extra.empty()) {
    header.extra = asBytes(extra);
    header.extra_len = static_cast<uInt>(extra.size());
  }
  if (options.namesAndSum) {
    header.name = asBytes(name);
    header.comment = asBytes(comment);
    header.hcrc = 1;
  }
  deflateSetHeader(&stream, &header);
  std::string in = text;
  std::string out(deflateBound(&stream, static_cast<uLong>(in.size())), '\0');
  stream.next_in = asBytes(in);
  stream.avail_in = static_cast<uInt>(in.size());
  stream.next_out = asBytes(out);
  stream.avail_out = static_cast<uInt>(out.size());
  const int result = deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  if (result != Z_STREAM_END) throw std::logic_error("gzip: the room was too small");
  return out;
}

std::string bgzfBlock(const std::string& text, const std::string& otherFields) {
  const std::string field("BC\2\0\0\0", 6);
  std::string block = gzip(text, {.extra = otherFields + field});
  const std::size_t size = block.size() - 1;
  const std::size_t place = 12 + otherFields.size() + 4;
  block[place] = static_cast<char>(size & 0xFF);
  block[place + 1] = static_cast<char>(size >> 8);
  return block;
}

std::string bgzf(const std::string& text, std::size_t blockSize) {
  std::string file;
  for (std::size_t at = 0; at < text.size(); at += blockSize) {
    file += bgzfBlock(text.substr(at, blockSize));
  }
  return file;
}

}  // namespace genostat::test
