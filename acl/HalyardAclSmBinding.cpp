// Binding: interfaces join and leave ACLs. The back-end keeps each ACL's active ports per unit,
// the class of those ports and the VFP claims of the ports, and answers whether the change fits
// what is programmed (only a port mask or a port class changes) or the ACL must be reapplied.
//
// It does not fit in two cases:
//  - the port's VFP lookup belongs to another ACL type while this ACL uses VFP (a VFP entry
//    serves one type per port): the ACL is rebuilt without VFP by its next pass;
//  - an egress ACL without a class holds its ports by one copy of every entry per port (EFP
//    has no port bitmap): a port that comes or goes changes the number of entries.
// VFP ownership changes hands this way: the first ACL to see a free port claims it; a second
// type finds the claim and falls back to IFP (vfpPortConflict); when the first leaves the port,
// one waiting ACL is woken ("Letting ") and takes VFP at its next pass.
//
// A sub-interface works on the port of its parent, a port-channel on the port the agent's map
// gives it. An interface without a port reads as unit 0xFFFF, port 0x3FF.
#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmPortNames.h"
#include "platform/fennel/AclVlanIdOrNone.h"
#include "platform/status/FennelEpochStatus.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// The interface of a binding: the first of the pair, unless it is the empty interface.
Pylon::IntfId intfOf( const Fennel::IntfPairKey& intfPair ) {
   return intfPair.intfId().isNull() ? intfPair.subIntfId() : intfPair.intfId();
}

// The interface that owns the port: a sub-interface's parent, any other interface itself.
Pylon::IntfId getParentIntfId( Pylon::IntfId intf ) {
   return intf.parent();
}

constexpr Acl::AclType aclTypes[] = { Acl::ip_, Acl::ipv6_, Acl::mac_ };

}  // namespace

bool AclHelper::intfSupportsAcl( Pylon::IntfId intf ) const {
   if ( intf.isVlan() || intf.isPortChannel() ) {
      return Fennel::fennelEpochStatus()->aclSupported( hcsd_->linecardName() );
   }
   // The generic layer's map says which interfaces take no ACLs; an absent one takes them.
   const Fennel::FennelCommonSmData::PtrConst& data = fcsd();
   return !( data && data->intf( intf ) );
}

Vesper::Name AclHelper::intfLinecardName( Pylon::IntfId ) const {
   const bool linecardName = !hcsd_->linecardName().empty();
   VESPER_ASSERT( linecardName );
   return hcsd_->linecardName();
}

bool AclHelper::addIntfToAcl( const Fennel::IntfPairKey& intfPair, const AclDataPtr& aclData,
                              const AclDataStatusPtr& ) {
   const Pylon::IntfId intf = intfOf( intfPair );
   if ( aclData->vlanId().isShared() ) {
      return addIntfToSharedAcl( intf, aclData );
   }
   const HalyardAclData::Ptr saclData = halyardAclDataIs( aclData->key() );
   const U32 intfUnit = hcsd_->halyardIntfToPort( getParentIntfId( intf ) ).unit();
   const bool intfDirty =
       addIntfToAclInUnit( intfUnit, intf, aclData, saclData, aclFeatureSecurity );
   // The ACL stands on every unit once bound anywhere, and a reapply forced on the unit of the
   // port spreads to every ingress copy, so that no unit keeps an older rule list.
   bool dirty = intfDirty;
   for ( const auto& member : hcsd_->halyardModId() ) {
      const U32 unit = member.key();
      if ( unit != intfUnit ) {
         dirty = addAclDataToUnit( unit, aclData, saclData, intfDirty ) || dirty;
      }
   }
   return dirty;
}

AclUnitData::Ptr AclHelper::unitDataWithCommon( const HalyardAclData::Ptr& saclData, U32 unit ) {
   const AclUnitData::Ptr unitData =
       saclData->unitDataIs( unit, saclData->type(), saclData->direction(), this );
   createCommonUnitData( unitData );
   VTRACE( 1, "Unit: " << unit << " Create common unit data with aclType " << saclData->type() );
   return unitData;
}

bool AclHelper::addIntfToAclInUnit( U32 unit, Pylon::IntfId intf, const AclDataPtr& aclData,
                                    const HalyardAclData::Ptr& saclData,
                                    HalyardAclFeature feature ) {
   const HalyardTypes::HalyardPort sp = hcsd_->halyardIntfToPort( getParentIntfId( intf ) );
   VESPER_ASSERT( sp.unit() == unit && "There is a bug." );
   const U32 port = sp.port();
   const Acl::AclType type = saclData->type();
   const Acl::AclDirection direction = saclData->direction();
   const AclUnitData::Ptr unitData = unitDataWithCommon( saclData, unit );
   AclCommonUnitData& common = *unitData->common();
   unitData->activePortIs( port );
   unitData->needsPortUpdateIs( true );

   bool conflict = false;
   if ( direction == Acl::in_ && feature == aclFeatureSecurity ) {
      const Vesper::String portName = vfpPortName( *hcsd_, unit, port );
      const VfpAclTypeForPort::Ptr claims = vfpAclTypeForUnitIs( unit );
      const std::optional<Acl::AclType> claim = claims->vfpAclTypeForPort( portName );
      if ( claim ) {
         // Without a class the ACL uses port masks and never needed VFP: no conflict then.
         if ( unitData->intfClassValid() && *claim != type ) {
            VTRACE( 1, "Unit: " << unit << " VFP port conflict, need to reapply ACL" );
            common.dirtyIs( true );
            conflict = true;
         }
      } else if ( aclData->aclVersion() != Fennel::AclData::aclVersionNone ) {
         VTRACE( 1, "Unit: " << unit << " Setting vfpAclTypeForPort port=" << portName
                             << " type=" << type );
         claims->vfpAclTypeForPortIs( portName, type );
      }
   } else if ( !unitData->intfClassValid() ) {
      VTRACE(
          1, "Unit: " << unit << " Out of interface class, reapply and dupe entries for new port" );
      common.dirtyIs( true );
   }
   VTRACE( 1, "Unit: " << unit << " unitData->intfClass: " << unitData->intfClass()
                       << " dirty: " << common.dirty() );
   if ( !conflict ) {
      if ( unitData->intfClassValid() ) {
         doSetPortClass( type, direction, unit, port, static_cast<U8>( unitData->intfClass() ),
                         feature );
         unitData->intfClassAppliedPortIs( port );
      } else if ( unitData->intfClassAppliedPortHas( port ) ) {
         doSetPortClass( type, direction, unit, port, 0, feature );
         unitData->intfClassAppliedPortDel( port );
      }
   }
   return common.dirty();
}

bool AclHelper::addAclDataToUnit( U32 unit, const AclDataPtr&, const HalyardAclData::Ptr& saclData,
                                  bool dirtyFlag ) {
   const AclUnitData::Ptr unitData = unitDataWithCommon( saclData, unit );
   AclCommonUnitData& common = *unitData->common();
   unitData->needsPortUpdateIs( true );
   if ( saclData->direction() == Acl::in_ ) {
      if ( dirtyFlag ) {
         VTRACE( 1, "Unit: " << unit << " Setting dirty to true because "
                             << "some other unit was dirty" );
         common.dirtyIs( true );
      }
   } else if ( !unitData->intfClassValid() ) {
      VTRACE(
          1, "Unit: " << unit << " Out of interface class, reapply and dupe entries for new port" );
      common.dirtyIs( true );
   }
   VTRACE( 1, "Unit: " << unit << " unitData->intfClass: " << unitData->intfClass()
                       << " dirty: " << common.dirty() );
   return common.dirty();
}

bool AclHelper::removeIntfFromAcl( const Fennel::IntfPairKey& intfPair, const AclDataPtr& aclData,
                                   bool belongsToAnother ) {
   const Pylon::IntfId intf = intfOf( intfPair );
   if ( aclData->vlanId().isShared() ) {
      return removeIntfFromSharedAcl( intf, aclData, belongsToAnother );
   }
   return removeIntfFromAclInUnits( intf, aclData, halyardAclData( aclData->key() ),
                                    belongsToAnother, aclFeatureSecurity );
}

bool AclHelper::removeIntfFromAclInUnits( Pylon::IntfId intf, const AclDataPtr& aclData,
                                          const HalyardAclData::Ptr& saclData,
                                          bool belongsToAnother, HalyardAclFeature feature ) {
   VTRACE( 1, " Deleting intf " << intf << " from " << aclData->aclName() );
   if ( !saclData ) {
      // Nothing of the ACL reached the back-end: there is nothing to undo.
      return false;
   }
   const HalyardTypes::HalyardPort sp = hcsd_->halyardIntfToPort( getParentIntfId( intf ) );
   const U32 unit = sp.unit();
   const U32 port = sp.port();
   const Acl::AclType type = saclData->type();
   const Acl::AclDirection direction = saclData->direction();
   const AclUnitData::Ptr unitData = saclData->unitData( unit );
   if ( unitData ) {
      unitData->activePortDel( port );
      unitData->intfClassAppliedPortDel( port );
      unitData->needsPortUpdateIs( true );
   }
   bool result = false;
   // A port that passes straight to another ACL of this kind gets its class and claim from
   // that ACL: nothing is cleared here.
   if ( !belongsToAnother ) {
      VESPER_ASSERT( unitData );
      if ( unitData->intfClassValid() ) {
         doSetPortClass( type, direction, unit, port, 0, feature );
      }
      if ( direction == Acl::in_ ) {
         const Vesper::String portName = vfpPortName( *hcsd_, unit, port );
         const VfpAclTypeForPort::Ptr claims = vfpAclTypeForUnit( unit );
         if ( claims && claims->vfpAclTypeForPort( portName ) == type ) {
            VTRACE( 1, "Unit: " << unit << " Deleting vfpAclTypeForPort port=" << portName );
            claims->vfpAclTypeForPortDel( portName );
            result = vfpHandedOver( intf, *saclData, unit );
         }
      }
   }
   // An egress ACL without a class has one copy of its entries per port: the copy of the
   // departed port must go, which takes a reapply.
   if ( direction == Acl::out_ && unitData && !unitData->intfClassValid() ) {
      VTRACE( 1, "Unit: " << unit << " Not using intfclass, reapply to remove dupe entries" );
      const Fennel::AclKey key = portAclKey( Vesper::Name( saclData->name() ), type, direction );
      unitData->common()->dirtyIs( true );
      dirtyAclIs( key );
      unitDirtyIs( unit, true );
      result = true;
   }
   return result;
}

// Each ACL type other than the departing one, in type order; the first ACL bound to the
// interface that waits for VFP on the unit is woken, and only that one: the others stay in
// conflict until their own next pass.
bool AclHelper::vfpHandedOver( Pylon::IntfId intf, const HalyardAclData& saclData, U32 unit ) {
   const Acl::IntfConfig::PtrConst& bindings = intfConfig();
   if ( !bindings ) {
      return false;
   }
   const Acl::AclDirection direction = saclData.direction();
   for ( const Acl::AclType type : aclTypes ) {
      if ( type == saclData.type() ) {
         continue;
      }
      const Vesper::Name name = bindings->intfAcl( type, direction, intf );
      if ( name.empty() ) {
         continue;
      }
      VTRACE( 1, " intfAcl: " << name << " type:" << type << " dir: " << direction
                              << " acl: " << saclData.name() );
      const Fennel::AclKey key = portAclKey( name, type, direction );
      const HalyardAclData::Ptr waiting = halyardAclData( key );
      const AclUnitData::Ptr unitData = waiting ? waiting->unitData( unit ) : nullptr;
      if ( unitData && unitData->vfpPortConflict() ) {
         VTRACE( 1, "Unit: " << unit << " Letting " << name << " try to use VFP" );
         unitData->common()->dirtyIs( true );
         dirtyAclIs( key );
         unitDirtyIs( unit, true );
         return true;
      }
   }
   return false;
}

Fennel::AclKey AclHelper::portAclKey( const Vesper::Name& name, Acl::AclType type,
                                      Acl::AclDirection direction ) const {
   const Acl::AclConfig::Ptr list = mainConfig_ ? mainConfig_->aclConfig( type, name ) : nullptr;
   return Fennel::AclKey( name.str(), type, direction, list && list->standard(),
                          Fennel::AclVlanIdOrNone(),
                          std::string( Fennel::AclKey::aclGroupDefault ) );
}

}  // namespace Halyard
