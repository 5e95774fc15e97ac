// Stands where launcher and analysis would, as cheap as a program can be: soak_launcher SCRIPT PAYLOAD.
// Its id decides what it does, so that jobs end in every way.
#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "analysis/request/base64.h"

namespace {

std::string resultPath(const char* payload) {
  const std::string document = genostat::analysis::decodeBase64(payload).value_or("");
  const std::string key = "\"CSV_Path\":\"";
  const std::size_t begin = document.find(key) + key.size();
  return document.substr(begin, document.find('"', begin) - begin);
}

}  // namespace

int main(int argc, char** argv) {
  constexpr char kResult[] = "a,b,c\n1,2,3\n";
  if (argc != 3) return 9;
  const auto way = getpid() % 8;
  if (way == 0) return 7;
  if (way == 1) return 0;
  if (way == 2 && fork() == 0) {
    usleep(30'000);
    return 0;
  }
  if (way >= 6) usleep(20'000);
  const int file = open(resultPath(argv[2]).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  return write(file, kResult, sizeof(kResult) - 1) > 0 ? 0 : 8;
}
