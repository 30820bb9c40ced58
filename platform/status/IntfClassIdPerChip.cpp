#include "platform/status/IntfClassIdPerChip.h"

#include "platform/status/AttributeSupport.h"

namespace HalyardL3 {

IntfClassId IntfClassIdPerChip::intfClassId( U32 vlan ) const {
   const IntfClassId* classId = intfClassId_.find( vlan );
   return classId ? *classId : 0;
}

void IntfClassIdPerChip::intfClassIdIs( U32 vlan, IntfClassId classId ) {
   if ( intfClassId_.set( vlan, classId ) ) {
      notify( &NotifieeConst::onIntfClassId, vlan );
   }
}

void IntfClassIdPerChip::intfClassIdDel( U32 vlan ) {
   if ( intfClassId_.del( vlan ) ) {
      notify( &NotifieeConst::onIntfClassId, vlan );
   }
}

void IntfClassIdPerChip::intfClassIdDelAll() {
   HalyardStatus::delAllThrough( intfClassId_, [this]( U32 vlan ) { intfClassIdDel( vlan ); } );
}

}  // namespace HalyardL3
