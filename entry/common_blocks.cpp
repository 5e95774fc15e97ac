#include "entry/common_blocks.h"

#include "host/common_blocks.h"

namespace genostat {

namespace {

using Accessor = void* (*)();

constexpr std::array<Accessor, kCommonBlockCount> kAccessors = {
    pvGetCmnBpr, pvGetCmaDic, pvGetCmaGlb, pvGetCmaMch, pvGetCmaObv, pvGetCmaSym, pvGetCmaSys, pvGetCmnDic,
    pvGetCmnDmo, pvGetCmnGlb, pvGetCmnInc, pvGetCmnIo,  pvGetCmnLoc, pvGetCmnMch, pvGetCmnMcs, pvGetCmnObv,
    pvGetCmnStk, pvGetCmnSym, pvGetCmnSys, pvGetCmnWrk, pvGetCmnDtm, pvGetCmnBox};

constinit std::array<void*, kCommonBlockCount> cachedBlocks = {};

}  // namespace

void cacheCommonBlocks() {
  for (std::size_t i = 0; i < kAccessors.size(); ++i) {
    cachedBlocks[i] = kAccessors[i]();
  }
}

const std::array<void*, kCommonBlockCount>& commonBlocks() {
  return cachedBlocks;
}

}  // namespace genostat
