#include "platform/status/VlanTopoSliceStatus.h"

#include "platform/status/AttributeSupport.h"

namespace HalyardVlanTopo {

U16 AclVlanClassIdPerChip::vlanClassId( U32 vlan ) const {
   const U16* classId = vlanClassId_.find( vlan );
   return classId ? *classId : 0;
}

void AclVlanClassIdPerChip::vlanClassIdIs( U32 vlan, U16 classId ) {
   if ( vlanClassId_.set( vlan, classId ) ) {
      notify( &NotifieeConst::onVlanClassId, vlan );
   }
}

void AclVlanClassIdPerChip::vlanClassIdDel( U32 vlan ) {
   if ( vlanClassId_.del( vlan ) ) {
      notify( &NotifieeConst::onVlanClassId, vlan );
   }
}

void AclVlanClassIdPerChip::vlanClassIdDelAll() {
   HalyardStatus::delAllThrough( vlanClassId_, [this]( U32 vlan ) { vlanClassIdDel( vlan ); } );
}

VlanTopoSliceStatus::Ptr vlanTopoSliceStatusFactory() {
   VlanTopoSliceStatus::Ptr status( new VlanTopoSliceStatus );
   status->hasNotificationActiveIs( true );
   return status;
}

bool VlanTopoSliceStatus::block( const AclModSvi& key ) const {
   const bool* value = block_.find( key );
   return value && *value;
}

void VlanTopoSliceStatus::blockIs( const AclModSvi& key, bool value ) {
   if ( block_.set( key, value ) ) {
      notify( &NotifieeConst::onBlock, key );
   }
}

void VlanTopoSliceStatus::blockDel( const AclModSvi& key ) {
   if ( block_.del( key ) ) {
      notify( &NotifieeConst::onBlock, key );
   }
}

void VlanTopoSliceStatus::blockDelAll() {
   HalyardStatus::delAllThrough( block_, [this]( const AclModSvi& key ) { blockDel( key ); } );
}

Vesper::Ptr<AclVlanClassIdPerChip> VlanTopoSliceStatus::aclVlanClassIdPerChipIs( U16 chip ) {
   auto [member, created] = aclVlanClassIdPerChip_.findOrCreate( chip );
   if ( created ) {
      notify( &NotifieeConst::onAclVlanClassIdPerChip, chip );
   }
   return member;
}

Vesper::Ptr<AclVlanClassIdPerChip> VlanTopoSliceStatus::aclVlanClassIdPerChipDel( U16 chip ) {
   Vesper::Ptr<AclVlanClassIdPerChip> removed = aclVlanClassIdPerChip_.del( chip );
   if ( removed ) {
      notify( &NotifieeConst::onAclVlanClassIdPerChip, chip );
   }
   return removed;
}

void VlanTopoSliceStatus::aclVlanClassIdPerChipDelAll() {
   aclVlanClassIdPerChip_.delAll( [this]( U16 chip, const Vesper::Ptr<AclVlanClassIdPerChip>& ) {
      notify( &NotifieeConst::onAclVlanClassIdPerChip, chip );
   } );
}

}  // namespace HalyardVlanTopo
