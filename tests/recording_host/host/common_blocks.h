#pragma once

#include "tests/recording_host/record.h"

namespace recording {
// A byte of its own for each name, in the order in which they are asked for.
void* commonBlock(const std::string& name);
}  // namespace recording

inline constexpr auto pvGetCmnBpr = [] { return recording::commonBlock("pvGetCmnBpr"); };
inline constexpr auto pvGetCmaDic = [] { return recording::commonBlock("pvGetCmaDic"); };
inline constexpr auto pvGetCmaGlb = [] { return recording::commonBlock("pvGetCmaGlb"); };
inline constexpr auto pvGetCmaMch = [] { return recording::commonBlock("pvGetCmaMch"); };
inline constexpr auto pvGetCmaObv = [] { return recording::commonBlock("pvGetCmaObv"); };
inline constexpr auto pvGetCmaSym = [] { return recording::commonBlock("pvGetCmaSym"); };
inline constexpr auto pvGetCmaSys = [] { return recording::commonBlock("pvGetCmaSys"); };
inline constexpr auto pvGetCmnDic = [] { return recording::commonBlock("pvGetCmnDic"); };
inline constexpr auto pvGetCmnDmo = [] { return recording::commonBlock("pvGetCmnDmo"); };
inline constexpr auto pvGetCmnGlb = [] { return recording::commonBlock("pvGetCmnGlb"); };
inline constexpr auto pvGetCmnInc = [] { return recording::commonBlock("pvGetCmnInc"); };
inline constexpr auto pvGetCmnIo = [] { return recording::commonBlock("pvGetCmnIo"); };
inline constexpr auto pvGetCmnLoc = [] { return recording::commonBlock("pvGetCmnLoc"); };
inline constexpr auto pvGetCmnMch = [] { return recording::commonBlock("pvGetCmnMch"); };
inline constexpr auto pvGetCmnMcs = [] { return recording::commonBlock("pvGetCmnMcs"); };
inline constexpr auto pvGetCmnObv = [] { return recording::commonBlock("pvGetCmnObv"); };
inline constexpr auto pvGetCmnStk = [] { return recording::commonBlock("pvGetCmnStk"); };
inline constexpr auto pvGetCmnSym = [] { return recording::commonBlock("pvGetCmnSym"); };
inline constexpr auto pvGetCmnSys = [] { return recording::commonBlock("pvGetCmnSys"); };
inline constexpr auto pvGetCmnWrk = [] { return recording::commonBlock("pvGetCmnWrk"); };
inline constexpr auto pvGetCmnDtm = [] { return recording::commonBlock("pvGetCmnDtm"); };
inline constexpr auto pvGetCmnBox = [] { return recording::commonBlock("pvGetCmnBox"); };
