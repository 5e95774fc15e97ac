// The common data blocks. No module of ours reads them; each accessor has a block of its own,
// so that a module which caches the pointers gets distinct ones that stay valid.
#include "host/common_blocks.h"

#include <array>
#include <cstddef>

namespace {

struct alignas(std::max_align_t) Block {
  std::array<unsigned char, 64> bytes;
};

template <int Index>
void* block() {
  static Block data{};
  return &data;
}

}  // namespace

void* pvGetCmnBpr() {
  return block<0>();
}
void* pvGetCmaDic() {
  return block<1>();
}
void* pvGetCmaGlb() {
  return block<2>();
}
void* pvGetCmaMch() {
  return block<3>();
}
void* pvGetCmaObv() {
  return block<4>();
}
void* pvGetCmaSym() {
  return block<5>();
}
void* pvGetCmaSys() {
  return block<6>();
}
void* pvGetCmnDic() {
  return block<7>();
}
void* pvGetCmnDmo() {
  return block<8>();
}
void* pvGetCmnGlb() {
  return block<9>();
}
void* pvGetCmnInc() {
  return block<10>();
}
void* pvGetCmnIo() {
  return block<11>();
}
void* pvGetCmnLoc() {
  return block<12>();
}
void* pvGetCmnMch() {
  return block<13>();
}
void* pvGetCmnMcs() {
  return block<14>();
}
void* pvGetCmnObv() {
  return block<15>();
}
void* pvGetCmnStk() {
  return block<16>();
}
void* pvGetCmnSym() {
  return block<17>();
}
void* pvGetCmnSys() {
  return block<18>();
}
void* pvGetCmnWrk() {
  return block<19>();
}
void* pvGetCmnDtm() {
  return block<20>();
}
void* pvGetCmnBox() {
  return block<21>();
}
