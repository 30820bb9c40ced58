// Hardware bring-up of the back-end: AclHelper::hwInit and processInit.
//
// hwInit runs once, before the generic layer hands down any ACL, and in this order: the
// capability flags; per unit the chip-dependent flags and the free ingress classes; the port
// tables of every port; the TCAM managers (sharing must be told to the group manager before);
// the six security state machines; per unit the TCAM status record and, where ACLs are
// supported, the hidden management entries; VXLAN support; the egress filter settings.
// A failed SDK call, a missing manager or an unknown chip stops the process: bring-up never
// stops half-way and goes on.
#include <cstdlib>

#include "acl/HalyardAclPortMasks.h"
#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmBringupInternal.h"
#include "acl/ToggleState.h"
#include "platform/shim/SdkCall.h"
#include "platform/status/FennelEpochStatus.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/tcam/HalyardAttributes.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// The only place where the back-end notices a simulated chip: there, entries are built but
// never installed.
constexpr const char* simulationVmidEnv = "SIMULATION_VMID";

// The chip families whose traffic may pass while an ACL is rewritten.
constexpr U32 permitDuringUpdateFamilies[] = { 7, 8 };

void capabilitiesIs( AclHelper& helper ) {
   helper.revertIncompleteAclSupportedIs( true );
   helper.routerAclSupportedIs( true );
   helper.aclDscpSupportedIs( true );
   helper.ecnFilterSupportedIs( true );
   helper.aclEcnSupportedIs( true );
   helper.aclIpLenMatchSupportedIs( true );
   helper.allowIpLenFilterIs( true );
   helper.macEgressAclSupportedIs( true );
   helper.ipEgressAclSupportedIs( true );
   helper.ip6EgressAclSupportedIs( true );
   helper.routerEgressAclSupportedIs( true );
   helper.ip6RouterEgressAclSupportedIs( true );
   helper.subIntfAclSupportedIs( true );
   helper.aclCountersSupportedIs( true );
   helper.dpIp6AclFullMaskSupportedIs( true );
   helper.ip6AclSupportedIs( true );
   helper.aclTcSupportedIs( true );
   helper.mirroringAclSupportedIs( true );
   helper.aclLoggingSupportedIs( true );
   helper.routerAclLoggingSupportedIs( true );
   helper.configurableImplicitIcmp6RulesSupportedIs( true );
   helper.nonContiguousIpMaskSupportedIs( true );
   helper.permitDuringAclUpdateIs( true );
   helper.installImplicitIcmp6RulesIs( Fennel::Ip6DefaultIcmp6TypesSupported::defaultTypes );
   helper.ingressRaclSharingSupportedIs( helper.raclSharingCliSupport() );
}

// The flags that one unit's chip can turn on; none is turned off again by another unit.
void unitCapabilitiesIs( AclHelper& helper, const UnitTableNode& unitIter ) {
   const U32 unit = unitIter.key();
   const U32 family = unitIter.value().familyCode();
   for ( const U32 permitFamily : permitDuringUpdateFamilies ) {
      if ( family == permitFamily ) {
         helper.defaultActionDuringAclUpdatePermitIs( true );
      }
   }
   if ( isChipGroupE( unit ) || isChipGroupA( unit ) ) {
      helper.aclPayloadSupportedIs( true );
   }
   if ( isChipGroupE( unit ) || isChipGroupA( unit ) || isChipGroupB( unit ) ) {
      helper.dpIpv4Ip6SecurityAclBankSharingSupportedIs( true );
      helper.dpIpv4Ip6MirroringAclBankSharingSupportedIs( true );
      helper.dpIpv4Ip6QosAclBankSharingSupportedIs( true );
      helper.dpIpv6SecurityAclKeyWidthModeSupportedIs( true );
      helper.dpIpv6QosAclKeyWidthModeSupportedIs( true );
      helper.dpMirrorAclKeyWidthModeSupportedIs( true );
   }
}

// Class 0 is no class, so the pool holds 1 to 255; pushed rising, 255 goes out first.
void freeIngressClassesIs( AclHelper& helper, U32 unit ) {
   const HalyardIntfClassData::Ptr classes = helper.halyardIntfClassDataIs( unit );
   for ( U32 intfClass = 1; intfClass <= 255; ++intfClass ) {
      classes->freeAclIntfClassPush( static_cast<U8>( intfClass ) );
   }
}

// Makes every port take its class from the port table's group id, where the chip needs it: the
// same work as the reaction to a new port of the interface-to-port map, for the ports known now.
void portTablesIs( AclHelper& helper ) {
   for ( const auto& intfIter : helper.hcsd()->halyardIntfToPort() ) {
      helper.handleHalyardIntfToPort( intfIter.key() );
   }
}

void entryManagersIs( AclHelper& helper ) {
   const HalyardTcamGroupManager& gm = *helper.tcamGroupManager();
   helper.macAclEntryManagerIs( gm.unboundedEntryManager( tcamGroupMacAcl ) );
   helper.ipAclEntryManagerIs( gm.unboundedEntryManager( tcamGroupIpAcl ) );
   helper.macAclVfpEntryManagerIs( gm.unboundedEntryManager( tcamGroupMacAclVfp ) );
   helper.ipAclVniEntryManagerIs( gm.unboundedEntryManager( tcamGroupIpAclVni ) );
   helper.ipAclVfpEntryManagerIs( gm.unboundedEntryManager( tcamGroupIpAclVfp ) );
   helper.routerAclEntryManagerIs( gm.unboundedEntryManager( tcamGroupRouterAcl ) );
   helper.aclMgmtEntryMgrIs( gm.entryManager( tcamGroupAclMgmt ) );
   helper.aclPortBlockingEntryMgrIs( gm.entryManager( tcamGroupAclPortBlocking ) );
   helper.ip6AclEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6Acl ) );
   helper.ip6AclVniEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6AclVni ) );
   helper.ip6RouterAclEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6RouterAcl ) );
   helper.ip6AclVfpEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6AclVfp ) );
   helper.ip6StdAclEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6StdAcl ) );
   helper.ip6AclEgressEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6AclEgress ) );
   helper.ip6StdAclPortEgressEntryManagerIs(
       gm.unboundedEntryManager( tcamGroupIp6StdAclPortEgress ) );
   helper.ip6StdAclRouterEgressEntryManagerIs(
       gm.unboundedEntryManager( tcamGroupIp6StdAclRouterEgress ) );
   helper.ip6RouterAclEgressEntryManagerIs(
       gm.unboundedEntryManager( tcamGroupIp6RouterAclEgress ) );
   helper.ip6StdAclVfpEntryManagerIs( gm.unboundedEntryManager( tcamGroupIp6StdAclVfp ) );
   helper.macAclEgressEntryManagerIs( gm.unboundedEntryManager( tcamGroupMacAclEgress ) );
   helper.ipAclEgressEntryManagerIs( gm.unboundedEntryManager( tcamGroupIpAclEgress ) );
   helper.routerAclEgressEntryManagerIs( gm.unboundedEntryManager( tcamGroupRouterAclEgress ) );
   helper.mirroringAclGroup1EntryManagerIs( gm.unboundedEntryManager( tcamGroupMirroringAcl1 ) );
   helper.mirroringAclGroup2EntryManagerIs( gm.unboundedEntryManager( tcamGroupMirroringAcl2 ) );
   helper.mirroringAclGroup3EntryManagerIs( gm.unboundedEntryManager( tcamGroupMirroringAcl3 ) );
   helper.mirroringAclGroup4EntryManagerIs( gm.unboundedEntryManager( tcamGroupMirroringAcl4 ) );
   helper.urpfTHxV4ExceptionAclGroupEntryManagerIs(
       gm.unboundedEntryManager( tcamGroupUrpfTHxV4ExceptionAcl ) );
   helper.urpfTHxV4V6ExceptionAclGroupEntryManagerIs(
       gm.unboundedEntryManager( tcamGroupUrpfTHxV4V6ExceptionAcl ) );
}

void mirroringManagersIs( AclHelper& helper ) {
   helper.mirroringAclEntryManagerIs( aclFeatureMirroring1,
                                      helper.mirroringAclGroup1EntryManager() );
   helper.mirroringAclEntryManagerIs( aclFeatureMirroring2,
                                      helper.mirroringAclGroup2EntryManager() );
   helper.mirroringAclEntryManagerIs( aclFeatureMirroring3,
                                      helper.mirroringAclGroup3EntryManager() );
   helper.mirroringAclEntryManagerIs( aclFeatureMirroring4,
                                      helper.mirroringAclGroup4EntryManager() );
}

// The six security machines. On IPv6 ingress one manager serves both narrow kinds, plain and
// router, while egress has a narrow manager of each.
void securityStateMachinesIs( AclHelper& helper ) {
   using Key = HalyardAclTypeDirectionFeature;
   AclHelper* const h = &helper;
   helper.halyardAclTypeDirectionFeatureSmIs(
       Key( Acl::ip(), Acl::in(), aclFeatureSecurity ), h, helper.ipAclEntryManager(),
       helper.ipAclVfpEntryManager(), helper.ipAclVniEntryManager(), nullptr, nullptr,
       helper.routerAclEntryManager(), nullptr );
   helper.halyardAclTypeDirectionFeatureSmIs(
       Key( Acl::mac(), Acl::in(), aclFeatureSecurity ), h, helper.macAclEntryManager(),
       helper.macAclVfpEntryManager(), nullptr, nullptr, nullptr, nullptr, nullptr );
   helper.halyardAclTypeDirectionFeatureSmIs(
       Key( Acl::ip(), Acl::out(), aclFeatureSecurity ), h, helper.ipAclEgressEntryManager(),
       nullptr, nullptr, nullptr, nullptr, helper.routerAclEgressEntryManager(), nullptr );
   helper.halyardAclTypeDirectionFeatureSmIs( Key( Acl::mac(), Acl::out(), aclFeatureSecurity ), h,
                                              helper.macAclEgressEntryManager(), nullptr, nullptr,
                                              nullptr, nullptr, nullptr, nullptr );
   helper.halyardAclTypeDirectionFeatureSmIs(
       Key( Acl::ipv6(), Acl::in(), aclFeatureSecurity ), h, helper.ip6AclEntryManager(),
       helper.ip6AclVfpEntryManager(), helper.ip6AclVniEntryManager(),
       helper.ip6StdAclEntryManager(), helper.ip6StdAclVfpEntryManager(),
       helper.ip6RouterAclEntryManager(), helper.ip6StdAclEntryManager() );
   helper.halyardAclTypeDirectionFeatureSmIs(
       Key( Acl::ipv6(), Acl::out(), aclFeatureSecurity ), h, helper.ip6AclEgressEntryManager(),
       nullptr, nullptr, helper.ip6StdAclPortEgressEntryManager(), nullptr,
       helper.ip6RouterAclEgressEntryManager(), helper.ip6StdAclRouterEgressEntryManager() );
}

// Read once per process: the entries of every unit, and of every later bring-up, agree.
bool mirrorOnDrop() {
   return toggleStateOnce( mirrorOnDropToggle, true );
}

// The per-unit bring-up: the port masks, the TCAM status record, and the management entries
// where ACLs are supported. Answers whether the unit's chip matches VXLAN network ids.
bool unitBringupIs( const AclHelper& helper, const Fennel::FennelEpochStatus& epochStatus,
                    const UnitTableNode& unitIter ) {
   const U32 unit = unitIter.key();
   const HalyardModInfo& modInfo = unitIter.value();
   allPortsMask[unit] = PBMP_ALL( unit );
   BCM_PBMP_CLEAR( noPortsMask );
   const Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       HalyardCentral::chipAttributes( modInfo.chipInfo() );
   VESPER_ASSERT( chipAttr && "bring-up of a unit whose chip has no attributes" );
   helper.status()->tcamStatusIs( modInfo.chipName() );
   if ( epochStatus.aclSupported( helper.hcsd()->epochName() ) ) {
      managementEntriesIs( helper, unitIter, mirrorOnDrop() );
   }
   return chipAttr->supportsVxlanVniMatch();
}

// The egress filter is off on the unit, then on again per fabric port of the unit's own
// module where the platform asks for it.
void egressFilterIs( const AclHelper& helper, const UnitTableNode& unitIter ) {
   SDK_CHECK_SPINDLE( bcm_port_control_set( unitIter.key(), 0, bcmPortControlFilterEgress, 0 ) );
   if ( !HalyardCentral::halyardAttributes()->egressFilterPerPort() ) {
      return;
   }
   const U32 modId = unitIter.value().modId().value();
   for ( const auto& [fabricPort, fabricIntf] : helper.hcsd()->halyardPortToFabricIntf() ) {
      if ( fabricPort.unit() != modId ) {
         continue;
      }
      const int portId = static_cast<int>( fabricPort.port() );
      SDK_CHECK_SPINDLE(
          bcm_port_control_set( unitIter.key(), portId, bcmPortControlFilterEgress, 1 ) );
   }
}

}  // namespace

void AclHelper::hwInit() {
   VTRACE( 1, "Initializing Acl state machine" );
   if ( hcsd()->aclHwInitBypass() ) {
      return;
   }
   asyncAclConfigIs( true );
   capabilitiesIs( *this );
   installEntriesIs( std::getenv( simulationVmidEnv ) == nullptr );

   for ( const auto& unitIter : hcsd()->halyardModId() ) {
      processInit( unitIter.key() );
      unitCapabilitiesIs( *this, unitIter );
      freeIngressClassesIs( *this, unitIter.key() );
   }
   portTablesIs( *this );

   tcamGroupManager()->ingressRaclSharingSupportedIs( raclSharingConfig() );
   entryManagersIs( *this );
#define HALYARD_ACL_ENTRY_MANAGER_CHECK( name, Kind ) VESPER_ASSERT( name() );
   HALYARD_ACL_ENTRY_MANAGERS( HALYARD_ACL_ENTRY_MANAGER_CHECK )
#undef HALYARD_ACL_ENTRY_MANAGER_CHECK
   mirroringManagersIs( *this );
   securityStateMachinesIs( *this );

   const auto epochStatus = Fennel::fennelEpochStatus();
   bool allChipsOk = true;
   for ( const auto& unitIter : hcsd()->halyardModId() ) {
      allChipsOk = unitBringupIs( *this, *epochStatus, unitIter ) && allChipsOk;
   }
   aclVxlanSupportedIs( allChipsOk );

   for ( const auto& unitIter : hcsd()->halyardModId() ) {
      egressFilterIs( *this, unitIter );
   }
}

void AclHelper::processInit( U32 unit ) {
   VTRACE( 1, "processInit( unit " << unit << " )" );
}

}  // namespace Halyard
