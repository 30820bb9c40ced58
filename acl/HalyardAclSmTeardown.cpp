// Teardown, in the two steps the generic layer calls apart:
//   destroyAcl   everything the ACL holds in hardware goes back to its pool or manager: port
//                claims, then on each unit its rules from the last to the first (per rule its
//                range checkers, then its entries with their payload fields), then its
//                interface class; and after all units one compression of every group. The
//                records stay, so that a reapply can follow on them: between the two steps the
//                ACL stands on every unit with no rule, dirty and not installed.
//   cleanupAcl   the back-end's record of the ACL goes. It never looks at rules: the entries
//                must have gone before, through destroyAcl.
#include <chrono>

#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmPortNames.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

void AclHelper::destroyAcl( const AclDataPtr& aclData ) {
   VTRACE( 1, "AclHelper::destroyAcl( " << aclData->aclName() << " )" );
   // The generic layer never gave this ACL a configuration: nothing of it was programmed.
   if ( aclData->aclVersion() == Fennel::AclData::aclVersionNone ) {
      return;
   }
   destroyAclEntries( aclData, halyardAclData( aclData->key() ), aclFeatureSecurity );
}

void AclHelper::destroyAclEntries( const AclDataPtr& aclData, const HalyardAclData::Ptr& saclData,
                                   HalyardAclFeature feature ) {
   if ( !saclData ) {
      return;
   }
   const TypeDirectionFeatureSmPtr sm =
       getHalyardAclTypeDirectionFeatureSm( saclData->type(), saclData->direction(), feature );
   if ( !sm ) {
      return;
   }
   VTRACE( 1, "AclHelper(" << aclData->aclName() << ")::destroyAcl()" );
   const Fennel::AclKey& key = saclData->key();
   const bool vlanAcl = !key.vlanId().isNone();
   const UnboundedManagerPtr& entryManager =
       vlanAcl ? sm->routerEntryManager() : sm->entryManager();
   const UnboundedManagerPtr& stdEntryManager =
       vlanAcl ? sm->stdRouterEntryManager() : sm->stdEntryManager();
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr unitData = member.value();
      if ( key.direction() == Acl::in_ && !vlanAcl ) {
         vfpPortClaimsReleased( key.aclType(), *unitData );
      }
      if ( const AclCommonUnitData::Ptr common = unitData->common() ) {
         common->destroyAcl( key, sm->vfpEntryManager(), entryManager, sm->vniEntryManager(),
                             sm->stdVfpEntryManager(), stdEntryManager );
      }
      if ( unitData->intfClassValid() ) {
         intfClassFreed( *unitData, *sm, "" );
      }
   }
   // Every teardown ends in a compression of every group, whatever the ACL's size: the room
   // it gave back is then whole slices that other groups can take. It is the dear step of a
   // teardown, hence the timing.
   VTRACE( 1, "Compress all groups " );
   const auto start = std::chrono::steady_clock::now();
   compressAllGroups();
   const std::chrono::duration<float> taken = std::chrono::steady_clock::now() - start;
   VTRACE( 1, "destroyAclEntries"
                  << " compress taking " << taken.count() );
}

void AclHelper::vfpPortClaimsReleased( Acl::AclType type, const AclUnitData& unitData ) {
   const U32 unit = unitData.unit();
   const VfpAclTypeForPort::Ptr claims = vfpAclTypeForUnit( unit );
   for ( const auto& member : unitData.activePort() ) {
      const Vesper::String port = vfpPortName( *hcsd_, unit, member.key() );
      if ( claims && claims->vfpAclTypeForPort( port ) == type ) {
         VTRACE( 1, "Unit: " << unit << " Deleting vfpAclTypeForPort port=" << port );
         claims->vfpAclTypeForPortDel( port );
      }
   }
}

void AclHelper::intfClassFreed( AclUnitData& unitData, const HalyardAclTypeDirectionFeatureSm& sm,
                                const char* prefix ) {
   const U32 unit = unitData.unit();
   const U8 intfClass = static_cast<U8>( unitData.intfClass() );
   if ( unitData.direction() == Acl::in_ ) {
      VTRACE( 1, "Unit: " << unit << " " << prefix << " Ingress acl freeing intf class "
                          << U32( intfClass ) );
      halyardIntfClassData( unit )->freeAclIntfClassPush( intfClass );
   } else {
      VTRACE( 1, "Unit: " << unit << " " << prefix << " Egress acl freeing intf class "
                          << U32( intfClass ) );
      sm.unitData( unit )->freeIntfClassPush( intfClass );
   }
   // Class 0 goes to every port that carried the class.
   unitData.intfClassIs( intfClassInvalid );
}

void AclHelper::cleanupAcl( const AclDataPtr& aclData ) {
   VTRACE( 1, "AclHelper::cleanupAcl(" << aclData->aclName() << ")" );
   const Fennel::AclKey key = aclData->key();
   const HalyardAclData::Ptr saclData = halyardAclData( key );
   if ( !saclData ) {
      return;
   }
   const TypeDirectionFeatureSmPtr sm =
       getHalyardAclTypeDirectionFeatureSm( key.aclType(), key.direction(), aclFeatureSecurity );
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr unitData = member.value();
      if ( unitData->intfClassValid() ) {
         intfClassFreed( *unitData, *sm, "cleanupAcl( " );
      }
      unitData->commonIs( nullptr );
   }
   if ( key.vlanId().isShared() ) {
      for ( const auto& intf : aclData->activeIntf() ) {
         VTRACE( 1, "removeIntfClassIdForVlan " << intf.key() );
         removeIntfClassIdForVlan( intf.key(), aclData );
      }
   }
   halyardAclDataDel( key );
}

}  // namespace Halyard
