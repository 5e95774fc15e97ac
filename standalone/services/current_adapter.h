// Which adapter the host libraries hand out.
#pragma once

class ZORV_Adapter;

namespace genostat::standalone {

// What GetAdapter() answers from now on; null: no client. Borrowed. A message that is being
// delivered by another thread may still use the adapter before.
void setCurrentAdapter(ZORV_Adapter* adapter);

}  // namespace genostat::standalone
