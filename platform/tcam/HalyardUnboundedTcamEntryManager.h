// The entry manager of a group that hands out entries on demand: every ACL
// rule's entries come from one of these.
//
// Contract:
//  1. getEntry( unit, description ) answers a new entry on the unit, or 0
//     when the group has none left (entriesAvailable() tells ahead).
//     `description` names the owner (the ACL) for the manager's tables.
//  2. releaseEntry( unit, entry ) undoes getEntry: the entry leaves the chip
//     and goes back to the group. REQUIRES: this manager issued the entry.
#pragma once

#include <utility>

#include "platform/tcam/HalyardTcamEntryManager.h"

namespace Halyard {

class HalyardUnboundedTcamEntryManager : public HalyardTcamEntryManager {
   VESPER_FWK_TYPE( "Halyard::HalyardUnboundedTcamEntryManager" )

 public:
   using Ptr = Vesper::Ptr<HalyardUnboundedTcamEntryManager>;

   virtual U32 getEntry( U32 unit, const Vesper::String& description ) = 0;
   virtual void releaseEntry( U32 unit, U32 entry ) = 0;

 protected:
   using HalyardTcamEntryManager::HalyardTcamEntryManager;
};

}  // namespace Halyard
