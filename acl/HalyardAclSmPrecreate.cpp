// Pre-creation: the first act of every pass over an ACL, before its rules. For each unit of the
// ACL it settles the plan the rule compiler then follows: whether the ACL may use VFP
// (canUseVfp) and standard entries (canUseStd), which interface class it owns, and which ports'
// VFP lookup it claims. No TCAM entry is touched; only a class given back reaches the ports.
//
// Why VFP needs a class: a VFP entry selects its ports by interface class, and VFP serves one
// ACL type per port. So an ingress port ACL keeps VFP only while it holds a class and no port of
// it is claimed by another type; it then claims its ports. An egress ACL never uses VFP, but
// holds a class of its type's own bit field when it can, to avoid one entry per port.
//
// The pass is idempotent: it clears dirty and vfpPortConflict, keeps a class it still qualifies
// for (no pop, no push), and takes back its claims when it lost VFP.
#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmPortNames.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

const char* onOff( bool on ) {
   return on ? "on" : "off";
}

}  // namespace

void AclHelper::createCommonUnitData( const AclUnitData::Ptr& unitData ) {
   if ( unitData->common() ) {
      return;
   }
   unitData->commonIs(
       aclCommonUnitDataFactory( unitData->unit(), unitData->type(), hcsd_, tcamGroupManager_ ) );
}

Fennel::AclCreateError AclHelper::precreateAcl( const AclDataPtr& aclData,
                                                const AclDataStatusPtr& ) {
   const Fennel::AclKey key = aclData->key();
   const HalyardAclData::Ptr saclData = halyardAclDataIs( key );
   const bool portAcl = key.direction() == Acl::in() && key.vlanId().isNone();
   if ( !key.vlanId().isNone() ) {
      // A VLAN ACL lives on every unit; a port ACL only where a binding put it.
      for ( const auto& member : hcsd_->halyardModId() ) {
         const AclUnitData::Ptr unitData =
             saclData->unitDataIs( member.key(), key.aclType(), key.direction(), this );
         createCommonUnitData( unitData );
      }
   }
   const TypeDirectionFeatureSmPtr sm =
       getHalyardAclTypeDirectionFeatureSm( key.aclType(), key.direction(), aclFeatureSecurity );
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr unitData = member.value();
      precreateUnit( *saclData, unitData, *sm, portAcl );
   }
   return Fennel::aclCreateSuccess;
}

// Steps 6 to 13 of the pass, on one unit.
void AclHelper::precreateUnit( const HalyardAclData& saclData, const AclUnitData::Ptr& unitData,
                               const HalyardAclTypeDirectionFeatureSm& sm, bool portAcl ) {
   const U32 unit = unitData->unit();
   const Fennel::AclKey& key = saclData.key();
   AclCommonUnitData& common = *unitData->common();
   unitData->vfpPortConflictIs( false );
   common.dirtyIs( false );

   const bool oneActivePort = saclData.oneActivePort();
   bool useVfp = portAcl && oneActivePort;
   if ( !useVfp ) {
      VTRACE( 1, "Unit: " << unit << " Disabling VFP: oneActivePort=" << oneActivePort
                          << " vlan ID=" << key.vlanId().value()
                          << " Direction=" << static_cast<U32>( key.direction() ) );
   }
   if ( key.standard() && sm.stdVfpEntryManager() && sm.stdEntryManager() &&
        sm.stdRouterEntryManager() ) {
      VTRACE( 1, "Unit: " << unit << " Enabling use of standard entry for acl" );
      common.canUseStdIs( true );
   }
   if ( portAcl && vfpPortConflictFound( saclData, *unitData ) ) {
      unitData->vfpPortConflictIs( true );
      useVfp = false;
   }
   useVfp = intfClassSettled( saclData, unitData, sm, oneActivePort, useVfp );
   common.canUseVfpIs( useVfp );
   VTRACE( 1, "Unit: " << unit << " VFP use for " << key.aclName() << " is " << onOff( useVfp ) );
   VTRACE( 1, "Unit: " << unit << " Std entry use for " << key.aclName() << " is "
                       << onOff( common.canUseStd() ) );
   if ( portAcl ) {
      vfpPortClaimsSettled( key.aclType(), *unitData, useVfp );
   }
}

// A port of the ACL whose VFP lookup another ACL type holds.
bool AclHelper::vfpPortConflictFound( const HalyardAclData& saclData,
                                      const AclUnitData& unitData ) const {
   const U32 unit = unitData.unit();
   const VfpAclTypeForPort::Ptr claims = vfpAclTypeForUnit( unit );
   for ( const auto& member : unitData.activePort() ) {
      const Vesper::String port = vfpPortName( *hcsd_, unit, member.key() );
      const std::optional<Acl::AclType> claim =
          claims ? claims->vfpAclTypeForPort( port ) : std::nullopt;
      if ( claim && *claim != saclData.type() ) {
         VTRACE( 1, "Unit: " << unit << " " << saclData.name() << " has VFP port conflict" );
         return true;
      }
   }
   return false;
}

// Takes a class when the ACL is entitled to one and holds none, gives back one it is no longer
// entitled to; answers whether VFP stays usable. An ingress ACL that finds no class loses VFP
// silently; an egress one stays without a class (one entry per port).
bool AclHelper::intfClassSettled( const HalyardAclData& saclData, const AclUnitData::Ptr& unitData,
                                  const HalyardAclTypeDirectionFeatureSm& sm, bool oneActivePort,
                                  bool useVfp ) {
   const U32 unit = unitData->unit();
   const bool egress = saclData.direction() == Acl::out();
   const bool wanted = oneActivePort && saclData.key().vlanId().isNone() && ( egress || useVfp );
   if ( wanted && !unitData->intfClassValid() ) {
      U8 intfClass = 0;
      if ( useVfp ) {
         intfClass = halyardIntfClassData( unit )->freeAclIntfClassPop();
      } else if ( egress ) {
         intfClass = sm.unitData( unit )->freeIntfClassPop();
      }
      if ( intfClass != 0 ) {
         unitData->intfClassIs( intfClass );
         VTRACE( 1, "Unit: " << unit << " AclHelper::precreateAcl( " << saclData.name() << " ) "
                             << ( egress ? "Egress" : "Ingress" ) << " acl using intf class "
                             << static_cast<U32>( intfClass ) );
      }
   }
   if ( wanted && useVfp ) {
      return unitData->intfClassValid();
   }
   if ( !wanted && unitData->intfClassValid() ) {
      const U8 intfClass = static_cast<U8>( unitData->intfClass() );
      VTRACE( 1, "Unit: " << unit << " " << ( egress ? "Egress" : "Ingress" )
                          << " acl freeing intf class " << static_cast<U32>( intfClass ) );
      if ( egress ) {
         sm.unitData( unit )->freeIntfClassPush( intfClass );
      } else {
         halyardIntfClassData( unit )->freeAclIntfClassPush( intfClass );
      }
      unitData->intfClassIs( intfClassInvalid );
   }
   return useVfp;
}

// With VFP the ACL claims every port it is on; without, it takes back its own claims and
// leaves those of other types alone.
void AclHelper::vfpPortClaimsSettled( Acl::AclType type, const AclUnitData& unitData,
                                      bool useVfp ) {
   const U32 unit = unitData.unit();
   const VfpAclTypeForPort::Ptr claims = vfpAclTypeForUnitIs( unit );
   for ( const auto& member : unitData.activePort() ) {
      const Vesper::String port = vfpPortName( *hcsd_, unit, member.key() );
      if ( useVfp ) {
         VTRACE( 1, "Unit: " << unit << " Setting vfpAclTypeForPort port=" << port
                             << " type=" << static_cast<U32>( type ) );
         claims->vfpAclTypeForPortIs( port, type );
      } else if ( claims->vfpAclTypeForPort( port ).value_or( Acl::AclType( 0 ) ) == type ) {
         VTRACE( 1, "Unit: " << unit << " Deleting vfpAclTypeForPort port=" << port );
         claims->vfpAclTypeForPortDel( port );
      }
   }
}

}  // namespace Halyard
