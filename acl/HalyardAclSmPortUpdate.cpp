// Port masks: the ports of an ingress ACL reach its IFP entries as their InPorts key. A port
// update rewrites every entry of every rule of a unit whose ports changed (no delta), and the
// order of the walk is what keeps traffic safe while it runs: a port must at every moment be
// attached to a prefix of the rule list, never to a suffix, since a suffix would let a packet
// meet the closing deny (or a later permit) without the rules above it.
//   - ports come (`active`): rules are written from the first up, so a new port gains rule 0
//     first and the closing rule last;
//   - ports go: from the last rule down, so a leaving port loses the closing rule first;
//   - with permitDuringUpdate every entry is switched off first, from the last rule up, and
//     the ascending rewrite reinstalls (and so enables) them: meanwhile the port meets no rule
//     of the ACL, which the configuration asked for.
// VFP entries select ports by class (HalyardAclSmBinding.cpp) and are left alone; egress
// entries have no port bitmap at all.
#include <cstdio>
#include <string>

#include "acl/HalyardAclPortMasks.h"
#include "acl/HalyardAclSm.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// The first four 64-bit words of the bitmap in hexadecimal, the highest first.
std::string maskWords( const bcm_pbmp_t& mask ) {
   std::string text;
   for ( int word = 3; word >= 0; --word ) {
      const U64 value = U64( mask.pbits[2 * word + 1] ) << 32 | mask.pbits[2 * word];
      char digits[17];
      std::snprintf( digits, sizeof( digits ), "%016llx",
                     static_cast<unsigned long long>( value ) );
      text += digits;
   }
   return text;
}

}  // namespace

void AclHelper::updateAclPorts( const AclDataPtr& aclData, bool active ) {
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   if ( !saclData ) {
      return;
   }
   updateAclPortsInUnits( saclData, active, false, false );
}

void AclHelper::updateAclPortsInUnits( const HalyardAclData::Ptr& saclData, bool active,
                                       bool modifyPortMasks, bool subIntf ) {
   if ( saclData->direction() != Acl::in_ ) {
      return;
   }
   const bool permitDuringUpdate =
       getPermitDuringAclUpdate( aclParamConfig_->permitDuringAclUpdateConfig() );
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr unitData = member.value();
      if ( !unitData->needsPortUpdate() ) {
         continue;
      }
      const U32 unit = unitData->unit();
      const AclCommonUnitData::Ptr common = unitData->common();
      VESPER_ASSERT( common );
      VTRACE( 1, "Unit: " << unit << " Updating portmask on " << saclData->name() );
      bcm_pbmp_t mask = unitData->portMask();
      VTRACE( 1, "fp qual "
                     << " Initial mask = 0x" << maskWords( mask ) );
      if ( modifyPortMasks ) {
         mask = sessionPortMasksRebuilt( *unitData, subIntf );
      }
      VTRACE( 1, "fp qual "
                     << " Final mask = 0x" << maskWords( mask ) );
      // A unit that is not committed (a pass under way, or one refused for want of room) gets
      // its keys written but nothing installed: its entries reach the TCAM through commit
      // only, all of them or none.
      const bool installed = common->installed();
      if ( permitDuringUpdate && installed ) {
         VTRACE( 1, "Unit: " << unit << "( Disabling entries in reverse "
                             << "order before updating port bitmap )" );
         for ( U32 n = static_cast<U32>( common->aclRule().size() ); n-- > 0; ) {
            const AclRuleData::Ptr rule = common->aclRule( n );
            VESPER_ASSERT( rule );
            enableAclEntriesIs( rule, unit, false );
         }
      }
      const bool updateInReverseOrder = !permitDuringUpdate && !active;
      common->updateAclPortOnAllRule( mask, allPortsMask[unit], installEntries_ && installed,
                                      updateInReverseOrder, subIntf );
      unitData->needsPortUpdateIs( false );
   }
}

// The mirroring side's form: the masks come from the session source interfaces, an interface
// without a port standing for port 1023.
bcm_pbmp_t AclHelper::sessionPortMasksRebuilt( AclUnitData& unitData, bool subIntf ) {
   const AclCommonUnitData& common = *unitData.common();
   bcm_pbmp_t mask;
   BCM_PBMP_CLEAR( mask );
   for ( const auto& member : common.sessionSrcSubIntfList() ) {
      const U32 port = hcsd_->halyardIntfToPort( member.key().parent() ).port();
      VTRACE( 1, "adding subintf port = " << port << " to the subintf portMask" );
      BCM_PBMP_PORT_ADD( mask, static_cast<bcm_port_t>( port ) );
   }
   unitData.subIntfPortMaskIs( mask );
   BCM_PBMP_CLEAR( mask );
   for ( const auto& member : common.sessionSrcIntfList() ) {
      const U32 port = hcsd_->halyardIntfToPort( member.key().parent() ).port();
      VTRACE( 1, "adding intf port = " << port << " to the intf portMask" );
      BCM_PBMP_PORT_ADD( mask, static_cast<bcm_port_t>( port ) );
   }
   unitData.portMaskIs( mask );
   return subIntf ? unitData.subIntfPortMask() : unitData.portMask();
}

}  // namespace Halyard
