#include "host/platform_library.h"

namespace {

int lower(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte;
}

}  // namespace

int ZORVMBstricmp_A(const char* a, const char* b) {
  while (*a != '\0' && lower(*a) == lower(*b)) {
    ++a;
    ++b;
  }
  const int difference = lower(*a) - lower(*b);
  return (difference > 0) - (difference < 0);
}
