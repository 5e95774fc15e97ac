// Any payload is understood or refused, and what is understood keeps the promises of Request. The input is
// tried as it is and as the document inside a payload.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "analysis/request/base64.h"
#include "analysis/request/failure.h"
#include "analysis/request/request.h"
#include "tests/analysis/base64_text.h"
#include "tests/fuzz/require.h"

namespace {

using genostat::test::require;
namespace analysis = genostat::analysis;

bool holdsZero(const std::string& text) {
  return text.find('\0') != std::string::npos;
}

void checkRequest(const analysis::Request& request, const std::optional<std::string>& csvPath) {
  require(csvPath == request.csvPath, "both ways to the result's path agree");
  require(!request.csvPath.empty() && !holdsZero(request.csvPath), "the result has a path");
  require(!request.folder || (request.files.empty() && !holdsZero(*request.folder)),
          "there are files or a folder");
  for (const std::string& file : request.files) {
    require(!holdsZero(file), "a file has a path");
  }
  const bool custom = request.adapter.kind == analysis::AdapterKind::Custom;
  require(request.adapter.sequence.empty() != custom, "a custom adapter has a sequence, no other has");
  require(request.adapter.sequence.find_first_not_of("ACGTN") == std::string::npos,
          "an adapter has letters of bases");
}

void tryPayload(std::string_view payload) {
  const std::optional<std::string> csvPath = analysis::csvPathOfRequest(payload);
  try {
    checkRequest(analysis::parseRequest(payload), csvPath);
  } catch (const analysis::Failure& failure) {
    const analysis::ExitCode code = failure.code();
    require(code == analysis::ExitCode::InvalidJson || code == analysis::ExitCode::InvalidConfiguration ||
                code == analysis::ExitCode::InvalidAdapter,
            "a refusal says what is wrong with the payload");
    require(code != analysis::ExitCode::InvalidJson || !csvPath, "what is no JSON names no path");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::optional<std::string> bytes = analysis::decodeBase64(input);
  // Each text of base64 stands for its bytes alone.
  if (bytes) require(genostat::test::toBase64(*bytes) == input, "encoding gives the text back");
  const std::string encoded = genostat::test::toBase64(input);
  require(analysis::decodeBase64(encoded) == input, "decoding gives the bytes back");
  tryPayload(input);
  tryPayload(encoded);
  return 0;
}
