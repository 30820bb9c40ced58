// The entry manager of a group whose entries are fixed at bring-up and
// addressed by position: the management entries and the port-blocking
// entries of the ACL back-end.
//
// Contract: getEntry( unit, index, description ) answers the entry at
// `index` of the group on the unit, making it on first use; the id it answers
// equals the index, so a caller addresses the entries as entryBase() plus an
// offset. `description` names the entry's purpose for the manager's tables.
#pragma once

#include <utility>

#include "platform/tcam/HalyardTcamEntryManager.h"

namespace Halyard {

class HalyardBoundedTcamEntryManager : public HalyardTcamEntryManager {
   VESPER_FWK_TYPE( "Halyard::HalyardBoundedTcamEntryManager" )

 public:
   using Ptr = Vesper::Ptr<HalyardBoundedTcamEntryManager>;

   // The index of the group's first entry.
   U32 entryBase() const { return entryBase_; }

   virtual U32 getEntry( U32 unit, U32 index, const Vesper::String& description ) = 0;

 protected:
   HalyardBoundedTcamEntryManager( Vesper::BackPtr<HalyardTcamGroupManager> groupManager,
                                   U32 groupId, Vesper::String groupName, U32 groupPriority,
                                   U32 entryBase )
       : HalyardTcamEntryManager( groupManager, groupId, std::move( groupName ), groupPriority ),
         entryBase_( entryBase ) {}

 private:
   U32 entryBase_;
};

}  // namespace Halyard
