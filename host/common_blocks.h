// Host common-block library: pointers to the host's common data blocks.
#pragma once

void* pvGetCmnBpr();
void* pvGetCmaDic();
void* pvGetCmaGlb();
void* pvGetCmaMch();
void* pvGetCmaObv();
void* pvGetCmaSym();
void* pvGetCmaSys();
void* pvGetCmnDic();
void* pvGetCmnDmo();
void* pvGetCmnGlb();
void* pvGetCmnInc();
void* pvGetCmnIo();
void* pvGetCmnLoc();
void* pvGetCmnMch();
void* pvGetCmnMcs();
void* pvGetCmnObv();
void* pvGetCmnStk();
void* pvGetCmnSym();
void* pvGetCmnSys();
void* pvGetCmnWrk();
void* pvGetCmnDtm();
void* pvGetCmnBox();
