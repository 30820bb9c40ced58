#include "platform/status/L3IntfStatus.h"

namespace HalyardL3 {

L3IntfStatus::Ptr l3IntfStatusFactory() {
   L3IntfStatus::Ptr status( new L3IntfStatus );
   status->hasNotificationActiveIs( true );
   return status;
}

IntfClassIdPerChip::Ptr L3IntfStatus::intfClassIdPerChipResponseIs( Pylon::ModId modId ) {
   auto [member, created] = intfClassIdPerChipResponse_.findOrCreate( modId );
   if ( created ) {
      notify( &NotifieeConst::onIntfClassIdPerChipResponse, modId );
   }
   return member;
}

IntfClassIdPerChip::Ptr L3IntfStatus::intfClassIdPerChipResponseDel( Pylon::ModId modId ) {
   IntfClassIdPerChip::Ptr removed = intfClassIdPerChipResponse_.del( modId );
   if ( removed ) {
      notify( &NotifieeConst::onIntfClassIdPerChipResponse, modId );
   }
   return removed;
}

void L3IntfStatus::intfClassIdPerChipResponseDelAll() {
   intfClassIdPerChipResponse_.delAll(
       [this]( Pylon::ModId modId, const IntfClassIdPerChip::Ptr& ) {
          notify( &NotifieeConst::onIntfClassIdPerChipResponse, modId );
       } );
}

}  // namespace HalyardL3
