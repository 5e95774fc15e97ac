#include "host/platform_library.h"

#include "common/text/ascii.h"

namespace {

int lower(char c) {
  return static_cast<unsigned char>(genostat::common::lowerLetter(c));
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
