#include "platform/tcam/HalyardTcamEntryManager.h"

#include <utility>

#include "platform/tcam/HalyardTcamGroupManager.h"

namespace Halyard {

HalyardTcamEntryManager::HalyardTcamEntryManager(
    Vesper::BackPtr<HalyardTcamGroupManager> groupManager, U32 groupId, Vesper::String groupName,
    U32 groupPriority )
    : groupManager_( groupManager ),
      groupId_( groupId ),
      groupName_( std::move( groupName ) ),
      groupPriority_( groupPriority ) {}

Vesper::Ptr<HalyardTcamGroupManager> HalyardTcamEntryManager::groupManager() const {
   return Vesper::Ptr<HalyardTcamGroupManager>( groupManager_.ptr() );
}

bool HalyardTcamEntryManager::exhausted( U32 unit ) const {
   const bool* value = exhausted_.find( unit );
   return value && *value;
}

void HalyardTcamEntryManager::exhaustedIs( U32 unit, bool value ) {
   if ( exhausted_.set( unit, value ) ) {
      notify( &NotifieeConst::onExhausted, unit );
   }
}

void HalyardTcamEntryManager::exhaustedDel( U32 unit ) {
   if ( exhausted_.del( unit ) ) {
      notify( &NotifieeConst::onExhausted, unit );
   }
}

}  // namespace Halyard
