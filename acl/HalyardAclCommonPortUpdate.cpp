// AclCommonUnitData: port masks and VLANs onto the entries of one ACL on one unit, rule by
// rule in the order the caller chose (HalyardAclSmPortUpdate.cpp says why the order matters).
#include "acl/HalyardAclCommon.h"
#include "acl/HalyardAclHelperFpText.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

// The mask of every VLAN key written here: the whole 12-bit VLAN id.
constexpr U32 vlanIdMask = 4095;

}  // namespace

void AclCommonUnitData::updateAclPortOnAllRule( const bcm_pbmp_t& pbm, const bcm_pbmp_t& allPbm,
                                                bool installEntry, bool updateInReverseOrder,
                                                bool subIntf ) {
   if ( !updateInReverseOrder ) {
      for ( auto& rule : aclRule_ ) {
         VTRACE( 1, "Updating portmask for rule " << rule.ruleNum() );
         updateAclPortOnRule( AclRuleData::Ptr( &rule ), pbm, allPbm, installEntry, subIntf );
      }
      return;
   }
   for ( U32 ruleNum = static_cast<U32>( aclRule_.size() ); ruleNum-- > 0; ) {
      VTRACE( 1, "Updating portmask for rule " << ruleNum );
      updateAclPortOnRule( aclRule( ruleNum ), pbm, allPbm, installEntry, subIntf );
   }
}

void AclCommonUnitData::updateAclPortOnRule( const AclRuleData::Ptr& rule, const bcm_pbmp_t& pbm,
                                             const bcm_pbmp_t& allPbm, bool installEntry,
                                             bool subIntf ) {
   // Rule numbers on a unit are dense: a missing rule is a broken invariant.
   VESPER_ASSERT( rule );
   // Under the names the SDK call's failure line gives them.
   const bcm_pbmp_t& mask = pbm;
   const bcm_pbmp_t& allPortsMask = allPbm;
   for ( const auto& list : rule->entryList() ) {
      for ( const auto& entryIter : list.entry() ) {
         const U32 entry = entryIter.key();
         const bool isSubIntfEntry = sessionSrcSubIntfEntriesHas( entry );
         if ( isSubIntfEntry != subIntf ) {
            VTRACE( 3, ( subIntf ? "Programming subinterfaces, dont touch intf entry "
                                 : "Programming interfaces, dont touch subintf entry " )
                           << entry );
            continue;
         }
         if ( rule->entryFromVfp( entry ) ) {
            continue;
         }
         SDK_CHECK( bcm_field_qualify_InPorts( unit(), entryIter.key(), mask, allPortsMask ) );
         const HalyardTcamEntryManager::Ptr manager = tcamGroupManager_->tcamEntryMgr( entry );
         manager->addInPortsForEntry( unit(), entry, pbm, allPbm );
         manager->setTcamEntryBcmPbmpPermanent( unit(), entry, true );
         Shim::fpQual( entry, " InPorts ", FpPbmp{ pbm }, " ", FpPbmp{ allPbm } );
         if ( installEntry ) {
            manager->installEntry( unit(), entry );
            Shim::fpEntryInstall( entry );
         }
      }
   }
}

void AclCommonUnitData::updateVlanIdOnAllRule( U32 vlanId, bool installEntry,
                                               bool updateInReverseOrder ) {
   if ( !updateInReverseOrder ) {
      for ( auto& rule : aclRule_ ) {
         VTRACE( 1, "Updating vlanId for rule " << rule.ruleNum() );
         updateVlanIdOnRule( AclRuleData::Ptr( &rule ), vlanId, installEntry );
      }
      return;
   }
   for ( U32 ruleNum = static_cast<U32>( aclRule_.size() ); ruleNum-- > 0; ) {
      VTRACE( 1, "Updating vlanId for rule " << ruleNum );
      updateVlanIdOnRule( aclRule( ruleNum ), vlanId, installEntry );
   }
}

void AclCommonUnitData::updateVlanIdOnRule( const AclRuleData::Ptr& rule, U32 vlanId,
                                            bool installEntry ) {
   VESPER_ASSERT( rule );
   const AclRuleData* aclRule = rule.ptr();
   for ( const auto& list : rule->entryList() ) {
      for ( const auto& entryIter : list.entry() ) {
         // Only wide IFP entries have the VLAN in their key.
         VESPER_ASSERT( !aclRule->entryFromVfp( entryIter.key() ) );
         VESPER_ASSERT( !aclRule->entryFromStd( entryIter.key() ) );
         addOuterVlanIdQualifier( unit(), entryIter.key(), vlanId, vlanIdMask );
         if ( installEntry ) {
            tcamGroupManager_->tcamEntryMgr( entryIter.key() )
                ->installEntry( unit(), entryIter.key() );
            Shim::fpEntryInstall( entryIter.key() );
         }
      }
   }
}

}  // namespace Halyard
