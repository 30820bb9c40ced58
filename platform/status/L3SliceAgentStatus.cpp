#include "platform/status/L3SliceAgentStatus.h"

namespace HalyardL3 {

L3SliceAgentStatus::Ptr l3SliceAgentStatusFactory() {
   L3SliceAgentStatus::Ptr status( new L3SliceAgentStatus );
   status->hasNotificationActiveIs( true );
   return status;
}

IntfClassIdPerChip::Ptr L3SliceAgentStatus::intfClassIdPerChipRequestIs( Pylon::ModId modId ) {
   auto [member, created] = intfClassIdPerChipRequest_.findOrCreate( modId );
   if ( created ) {
      notify( &NotifieeConst::onIntfClassIdPerChipRequest, modId );
   }
   return member;
}

IntfClassIdPerChip::Ptr L3SliceAgentStatus::intfClassIdPerChipRequestDel( Pylon::ModId modId ) {
   IntfClassIdPerChip::Ptr removed = intfClassIdPerChipRequest_.del( modId );
   if ( removed ) {
      notify( &NotifieeConst::onIntfClassIdPerChipRequest, modId );
   }
   return removed;
}

void L3SliceAgentStatus::intfClassIdPerChipRequestDelAll() {
   intfClassIdPerChipRequest_.delAll( [this]( Pylon::ModId modId, const IntfClassIdPerChip::Ptr& ) {
      notify( &NotifieeConst::onIntfClassIdPerChipRequest, modId );
   } );
}

}  // namespace HalyardL3
