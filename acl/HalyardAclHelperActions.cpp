// setActions: from an ACL action to field-processor actions.
//
// The steps run in a fixed order (the fp lines show it): the deny actions,
// then the all-ports key, then the VFP source class, then the cancel of an
// earlier CPU copy. A logged deny on ingress stops after its CPU copy unless
// the entry is keyed on all ports, and never takes the cancel.
#include "acl/HalyardAclHelper.h"

#include "acl/HalyardAclHelperFpText.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclHelper" )

namespace Halyard {

namespace {

// Throws a CPU copy away: no copy of an earlier stage, and any copy that is
// still made goes to the drop queue.
void addCpuCopyCancel( U32 unit, U32 entry ) {
   SDK_CHECK( bcm_field_action_add( unit, entry, bcmFieldActionSwitchToCpuCancel, 0, 0 ) );
   Shim::fpActionAdd( entry, " SwitchToCpuCancel" );
   SDK_CHECK( bcm_field_action_add( unit, entry, bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 ) );
   Shim::fpActionAdd( entry, " CosQCpuNew ", cpuCosqDrop_ );
}

// Keeps a denied packet off every front-panel port, also where a HiGig trunk
// would otherwise still resolve one.
void addIngressEgressMask( U32 unit, const HalyardTcamGroupManager& groupMgr, U32 entry ) {
   SDK_CHECK(
       bcm_field_action_ports_add( unit, entry, bcmFieldActionEgressMask, PBMP_PORT_ALL( unit ) ) );
   Shim::fpActionAdd( entry, " EgressMask ", FpPbmp{ PBMP_PORT_ALL( unit ) } );
   if ( chipAttributesForUnit( groupMgr, unit )->needsHgTrunkCancel() ) {
      SDK_CHECK( bcm_field_action_add( unit, entry, BCM_HG_TRUNK_CANCEL_ACTION( unit ), 0, 0 ) );
      Shim::fpActionAdd( entry, " HgTrunkCancel" );
   }
}

// A logged packet keeps its copy to the CPU, at the log traffic class.
// `matchRule` tells the CPU which kind of entry made the copy.
void addLogCopy( U32 unit, U32 entry, U32 matchRule ) {
   SDK_CHECK( bcm_field_action_add( unit, entry, bcmFieldActionPrioIntNew, TC_ACL_LOG, 0 ) );
   Shim::fpActionAdd( entry, " PrioIntNew ", TC_ACL_LOG );
   SDK_CHECK( bcm_field_action_add( unit, entry, bcmFieldActionCopyToCpu, 1, matchRule ) );
   Shim::fpActionAdd( entry, " CopyToCpu 1 ", matchRule );
}

// The deny of an entry outside VFP. Answers whether setActions goes on: a
// logged deny ends here, on egress at once, on ingress after its copy unless
// the entry is keyed on all ports.
bool addDeny( U32 unit, const HalyardTcamGroupManager& groupMgr, U32 entry, bool log, bool ingress,
              bool allPorts, U32 matchRule ) {
   if ( ingress && !log ) {
      addCpuCopyCancel( unit, entry );
   }
   if ( ingress ) {
      addIngressEgressMask( unit, groupMgr, entry );
   }
   SDK_CHECK( bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 ) );
   Shim::fpActionAdd( entry, " Drop" );
   if ( !log ) {
      return true;
   }
   if ( !ingress ) {
      return false;
   }
   addLogCopy( unit, entry, matchRule );
   return allPorts;
}

// Keys the entry on every Ethernet port for good: the manager's later port
// updates must leave this key alone.
void keyOnAllPorts( U32 unit, const HalyardTcamGroupManager& groupMgr, U32 entry ) {
   SDK_CHECK( bcm_field_qualify_InPorts( unit, entry, PBMP_E_ALL( unit ), PBMP_ALL( unit ) ) );
   const bcm_pbmp_t data = PBMP_E_ALL( unit );
   const bcm_pbmp_t mask = PBMP_ALL( unit );
   Shim::fpQual( entry, " InPorts ", FpPbmp{ data }, " ", FpPbmp{ mask } );
   HalyardTcamEntryManager::Ptr entryMgr = groupMgr.tcamEntryMgr( entry );
   entryMgr->addInPortsForEntry( unit, entry, data, mask );
   entryMgr->setTcamEntryBcmPbmpPermanent( unit, entry, true );
}

}  // namespace

void setActions( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, Acl::Action action,
                 bool log, bool vfp, Acl::AclDirection direction, U32 newVfpClass, bool allPorts,
                 bool cancelCpuCopy ) {
   const bool deny = action == Acl::Action::deny;
   const bool ingress = direction == Acl::AclDirection::in;
   // The CPU tells copies of entries keyed on all ports from the others by it.
   const U32 matchRule = allPorts ? 4 : 3;
   const bool loggedDeny = deny && log;

   if ( deny && vfp ) {
      newVfpClass |= log ? ( classVfpAclDrop_ | classVfpAclLog_ ) : classVfpAclDrop_;
   } else if ( deny ) {
      if ( !addDeny( unit, *groupMgr, entry, log, ingress, allPorts, matchRule ) ) {
         return;
      }
   }
   if ( allPorts && ingress ) {
      keyOnAllPorts( unit, *groupMgr, entry );
   }
   if ( vfp ) {
      SDK_CHECK(
          bcm_field_action_add( unit, entry, bcmFieldActionClassSourceSet, newVfpClass, 0 ) );
      Shim::fpActionAdd( entry, " ClassSourceSet ", newVfpClass );
   }
   if ( cancelCpuCopy && ingress && !loggedDeny ) {
      addCpuCopyCancel( unit, entry );
   }
}

}  // namespace Halyard
