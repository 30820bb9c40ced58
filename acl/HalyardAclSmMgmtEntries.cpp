// The hidden management entries that bring-up programs on every unit, which no ACL owns.
//
//  - A VFP rule cannot drop or log: it stamps the packet's source class with classVfpAclDrop_,
//    classVfpAclLog_ or both, and the IFP entries aclMgmtTcamVfpDropLog, aclMgmtTcamVfpDrop
//    and aclMgmtTcamVfpLog carry the stamp out.
//  - aclMgmtTcamStpBlock and aclMgmtTcamStpLearn keep CPU copies of packets from ports that
//    spanning tree has not opened away from the CPU, by sending them to the drop queue.
//  - aclMgmtTcamVlanBlock drops routed traffic of a VLAN that carries classDropRoutedTraffic_
//    in its L2 class, which the VLAN topology agent sets during an update.
//  - The four port-blocking entries are built to match no port and stay out of hardware until
//    port blocking gives them ports.
// Every entry leaves alone traffic whose destination L2 class carries classSkipAcls_.
//
// The entries share one group each, at one priority, so the offset orders them: among the
// management entries that match a packet, the one of the lowest offset acts.
//
// The port key is permanent (left alone by the manager's port updates) on the port-blocking
// entries and on the VFP drop and log entries, and left to the manager on the others: that
// asymmetry is part of the design.
#include "acl/HalyardAclHelper.h"
#include "acl/HalyardAclHelperFpText.h"
#include "acl/HalyardAclPortMasks.h"
#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmBringupInternal.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// Mask of every STP state.
constexpr U8 stpMask = 0xff;

// The match id that a CPU copy of an entry not keyed on all ports reports.
constexpr U32 logMatchRule = 3;

U32 entryAcquired( HalyardBoundedTcamEntryManager& mgr, U32 unit, U32 offset,
                   const char* purpose ) {
   return mgr.getEntry( unit, mgr.entryBase() + offset, purpose );
}

// The actions of an ingress IFP entry that permits or denies, as a rule's would be.
void actionsIs( const AclHelper& helper, U32 unit, U32 entry, Acl::Action action, bool log ) {
   setActions( unit, helper.tcamGroupManager(), entry, action, log, false, Acl::in(), 0, false,
               false );
}

// Traffic with the skip bit in its destination L2 class never hits the entry.
void qualifyNoSkip( const UnitTableNode& unitIter, U32 entry ) {
   SDK_CHECK_SPINDLE( bcm_field_qualify_DstClassL2( unitIter.key(), entry, 0, classSkipAcls_ ) );
   Shim::fpQual( entry, " DstClassL2 0", FpMask{ classSkipAcls_ } );
}

void keyOnAllPorts( const UnitTableNode& unitIter, HalyardBoundedTcamEntryManager& mgr,
                    U32 entry ) {
   const U32 unit = unitIter.key();
   SDK_CHECK_SPINDLE(
       bcm_field_qualify_InPorts( unitIter.key(), entry, allPortsMask[unit], allPortsMask[unit] ) );
   Shim::fpQual( entry, " InPorts ", FpPbmp{ allPortsMask[unit] }, " ",
                 FpPbmp{ allPortsMask[unit] } );
   mgr.addInPortsForEntry( unit, entry, allPortsMask[unit], allPortsMask[unit] );
}

void fpQualSrcClass( U32 entry, U32 srcClass ) {
   Shim::fpQual( entry, " SrcClassField ", srcClass, FpMask{ srcClass } );
}

void fpQualStpState( U32 entry, bcm_stg_stp_t state ) {
   Shim::fpQual( entry, " IngressStpState ", static_cast<int>( state ), FpMask{ stpMask } );
}

void installedIf( const AclHelper& helper, HalyardBoundedTcamEntryManager& mgr, U32 unit,
                  U32 entry ) {
   if ( helper.installEntries() ) {
      mgr.installEntry( unit, entry );
      Shim::fpEntryInstall( entry );
   }
}

// aclMgmtTcamPortBlock1 and 2: they drop whatever they match, and match no port until port blocking
// gives them ports.
void portBlockEntryIs( const AclHelper& helper, const UnitTableNode& unitIter,
                       AclPortBlockingTcams offset ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclPortBlockingEntryMgr();
   VTRACE( 1, "Acquiring port blocking TCAM Entry " << mgr.entryBase() + offset );
   const U32 entry = entryAcquired( mgr, unit, offset, "Port blocking entry for ACL updates" );
   actionsIs( helper, unit, entry, Acl::deny(), false );
   SDK_CHECK_SPINDLE(
       bcm_field_qualify_InPorts( unitIter.key(), entry, noPortsMask, allPortsMask[unit] ) );
   Shim::fpQual( entry, " InPorts ", FpPbmp{ noPortsMask }, " ", FpPbmp{ allPortsMask[unit] } );
   mgr.addInPortsForEntry( unit, entry, noPortsMask, allPortsMask[unit] );
   qualifyNoSkip( unitIter, entry );
   mgr.setTcamEntryBcmPbmpPermanent( unit, entry, true );
}

// aclMgmtTcamStpBlock and aclMgmtTcamStpLearn: on a port that spanning tree blocks or lets only
// learn, a CPU copy goes to the drop queue. With mirrorOnDrop only the copies of logged packets do,
// so that the CPU still sees the traffic that it asked for itself.
void stpEntryIs( const AclHelper& helper, const UnitTableNode& unitIter, bool blocking,
                 bool mirrorOnDrop ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclMgmtEntryMgr();
   const AclManagementTcams offset = blocking ? aclMgmtTcamStpBlock : aclMgmtTcamStpLearn;
   VTRACE( 1, ( blocking ? "Acquiring STP-blocking log preventer TCAM entry "
                         : "Acquiring STP-learning log preventer TCAM entry " )
                  << mgr.entryBase() + offset );
   const U32 entry = entryAcquired( mgr, unit, offset,
                                    blocking ? "Prevent ACL logging on STP-blocked ports"
                                             : "Prevent ACL logging on STP-learning ports" );
   if ( blocking ) {
      SDK_CHECK_SPINDLE(
          bcm_field_qualify_IngressStpState( unitIter.key(), entry, BCM_STG_STP_BLOCK, stpMask ) );
      fpQualStpState( entry, BCM_STG_STP_BLOCK );
   } else {
      SDK_CHECK_SPINDLE(
          bcm_field_qualify_IngressStpState( unitIter.key(), entry, BCM_STG_STP_LEARN, stpMask ) );
      fpQualStpState( entry, BCM_STG_STP_LEARN );
   }
   qualifyNoSkip( unitIter, entry );
   keyOnAllPorts( unitIter, mgr, entry );
   if ( mirrorOnDrop ) {
      SDK_CHECK_SPINDLE( bcm_field_qualify_SrcClassField( unitIter.key(), entry, classVfpAclLog_,
                                                          classVfpAclLog_ ) );
      fpQualSrcClass( entry, classVfpAclLog_ );
   }
   SDK_CHECK_SPINDLE(
       bcm_field_action_add( unitIter.key(), entry, bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 ) );
   Shim::fpActionAdd( entry, " CosQCpuNew ", cpuCosqDrop_ );
   installedIf( helper, mgr, unit, entry );
}

// aclMgmtTcamVfpDropLog. Only on a forwarding port: logging a packet that spanning tree
// discards is what the STP entries are there to prevent.
void vfpDropLogEntryIs( const AclHelper& helper, const UnitTableNode& unitIter ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclMgmtEntryMgr();
   VTRACE( 1, "Acquiring IFP entry for handling VFP drop+log matches" );
   const U32 entry =
       entryAcquired( mgr, unit, aclMgmtTcamVfpDropLog, "Log and drop marked ACL packets" );
   actionsIs( helper, unit, entry, Acl::deny(), true );
   keyOnAllPorts( unitIter, mgr, entry );
   SDK_CHECK_SPINDLE( bcm_field_qualify_SrcClassField( unitIter.key(), entry,
                                                       ( classVfpAclDrop_ | classVfpAclLog_ ),
                                                       ( classVfpAclDrop_ | classVfpAclLog_ ) ) );
   fpQualSrcClass( entry, classVfpAclDrop_ | classVfpAclLog_ );
   SDK_CHECK_SPINDLE(
       bcm_field_qualify_IngressStpState( unitIter.key(), entry, BCM_STG_STP_FORWARD, stpMask ) );
   fpQualStpState( entry, BCM_STG_STP_FORWARD );
   qualifyNoSkip( unitIter, entry );
   installedIf( helper, mgr, unit, entry );
}

// aclMgmtTcamVfpDrop.
void vfpDropEntryIs( const AclHelper& helper, const UnitTableNode& unitIter ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclMgmtEntryMgr();
   VTRACE( 1, "Acquiring IFP entry for handling VFP drops" );
   const U32 entry = entryAcquired( mgr, unit, aclMgmtTcamVfpDrop, "Drop marked ACL packets" );
   actionsIs( helper, unit, entry, Acl::deny(), false );
   keyOnAllPorts( unitIter, mgr, entry );
   SDK_CHECK_SPINDLE( bcm_field_qualify_SrcClassField( unitIter.key(), entry, classVfpAclDrop_,
                                                       classVfpAclDrop_ ) );
   fpQualSrcClass( entry, classVfpAclDrop_ );
   qualifyNoSkip( unitIter, entry );
   mgr.setTcamEntryBcmPbmpPermanent( unit, entry, true );
   installedIf( helper, mgr, unit, entry );
}

// aclMgmtTcamVfpLog. setActions gives a permit no action, logged or not (a rule's permit never
// logs); this entry exists to log, so it takes the copy to the CPU that a logged rule's deny takes.
void vfpLogEntryIs( const AclHelper& helper, const UnitTableNode& unitIter ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclMgmtEntryMgr();
   VTRACE( 1, "Acquiring IFP entry for handling VFP logs" );
   const U32 entry = entryAcquired( mgr, unit, aclMgmtTcamVfpLog, "Log marked ACL packets" );
   actionsIs( helper, unit, entry, Acl::permit(), true );
   const U32 matchRule = logMatchRule;
   SDK_CHECK_SPINDLE(
       bcm_field_action_add( unitIter.key(), entry, bcmFieldActionPrioIntNew, TC_ACL_LOG, 0 ) );
   Shim::fpActionAdd( entry, " PrioIntNew ", TC_ACL_LOG );
   SDK_CHECK_SPINDLE(
       bcm_field_action_add( unitIter.key(), entry, bcmFieldActionCopyToCpu, 1, matchRule ) );
   Shim::fpActionAdd( entry, " CopyToCpu 1 ", matchRule );
   keyOnAllPorts( unitIter, mgr, entry );
   SDK_CHECK_SPINDLE(
       bcm_field_qualify_SrcClassField( unitIter.key(), entry, classVfpAclLog_, classVfpAclLog_ ) );
   fpQualSrcClass( entry, classVfpAclLog_ );
   qualifyNoSkip( unitIter, entry );
   mgr.setTcamEntryBcmPbmpPermanent( unit, entry, true );
   installedIf( helper, mgr, unit, entry );
}

// aclMgmtTcamVlanBlock: it matches nothing until a VLAN carries the class bit. Chips of group F
// tell routed traffic by a hit on the router's own MAC address.
void vlanBlockEntryIs( const AclHelper& helper, const UnitTableNode& unitIter ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclMgmtEntryMgr();
   VTRACE( 1, "Acquiring VLAN blocking TCAM entry " << mgr.entryBase() + aclMgmtTcamVlanBlock );
   const U32 entry =
       entryAcquired( mgr, unit, aclMgmtTcamVlanBlock, "VLAN blocking entry for ACL updates" );
   actionsIs( helper, unit, entry, Acl::deny(), false );
   SDK_CHECK_SPINDLE( bcm_field_qualify_InterfaceClassL2(
       unitIter.key(), entry, HalyardCentral::classDropRoutedTraffic_,
       HalyardCentral::classDropRoutedTraffic_ ) );
   Shim::fpQual( entry, " InterfaceClassL2 ", HalyardCentral::classDropRoutedTraffic_,
                 FpMask{ HalyardCentral::classDropRoutedTraffic_ } );
   if ( isChipGroupF( unit ) ) {
      SDK_CHECK_SPINDLE( bcm_field_qualify_MyStationHit( unitIter.key(), entry, 1, 1 ) );
      Shim::fpQual( entry, " MyStationHit 1", FpMask{ 1 } );
   } else {
      SDK_CHECK_SPINDLE( bcm_field_qualify_L3Routable( unitIter.key(), entry, 1, 1 ) );
      Shim::fpQual( entry, " L3Routable 1", FpMask{ 1 } );
   }
   qualifyNoSkip( unitIter, entry );
   keyOnAllPorts( unitIter, mgr, entry );
   installedIf( helper, mgr, unit, entry );
}

// aclMgmtTcamEgressBlock1 and 2: masking no port yet, they do nothing until port blocking fills the
// mask.
void egressBlockEntryIs( const AclHelper& helper, const UnitTableNode& unitIter,
                         AclPortBlockingTcams offset ) {
   const U32 unit = unitIter.key();
   HalyardBoundedTcamEntryManager& mgr = *helper.aclPortBlockingEntryMgr();
   VTRACE( 1, "Acquiring egress port blocking TCAM Entry " << mgr.entryBase() + offset );
   const U32 entry =
       entryAcquired( mgr, unit, offset, "Egress Port blocking entry for ACL updates" );
   keyOnAllPorts( unitIter, mgr, entry );
   bcm_pbmp_t emptyBmp;
   BCM_PBMP_CLEAR( emptyBmp );
   SDK_CHECK_SPINDLE(
       bcm_field_action_ports_add( unitIter.key(), entry, bcmFieldActionEgressMask, emptyBmp ) );
   Shim::fpActionAdd( entry, " EgressMask ", FpPbmp{ emptyBmp } );
   qualifyNoSkip( unitIter, entry );
   mgr.setTcamEntryBcmPbmpPermanent( unit, entry, true );
}

}  // namespace

void managementEntriesIs( const AclHelper& helper, const UnitTableNode& unitIter,
                          bool mirrorOnDrop ) {
   portBlockEntryIs( helper, unitIter, aclMgmtTcamPortBlock1 );
   portBlockEntryIs( helper, unitIter, aclMgmtTcamPortBlock2 );
   stpEntryIs( helper, unitIter, true, mirrorOnDrop );
   stpEntryIs( helper, unitIter, false, mirrorOnDrop );
   vfpDropLogEntryIs( helper, unitIter );
   vfpDropEntryIs( helper, unitIter );
   vfpLogEntryIs( helper, unitIter );
   vlanBlockEntryIs( helper, unitIter );
   egressBlockEntryIs( helper, unitIter, aclMgmtTcamEgressBlock1 );
   egressBlockEntryIs( helper, unitIter, aclMgmtTcamEgressBlock2 );
}

}  // namespace Halyard
