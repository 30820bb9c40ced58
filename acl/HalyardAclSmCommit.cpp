// Commit and enable: entries prepared by the rule compiler reach the TCAM here, once a batch has
// had its groups compressed (prepareToCommit). enableAclEntriesIs switches a committed rule's
// entries without removing them, which port updates use to keep every port on a prefix of the
// rule list.
#include "acl/HalyardAclSm.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

void AclHelper::prepareToCommit() {
   VTRACE( 1, "AclHelper::prepareToCommit()" );
   compressAllGroups();
}

// Every ACL group of every unit, in a fixed order. The management, port-blocking and uRPF
// exception groups are left out: their entries are fixed at bring-up. The IPv6 VFP group is
// packed twice in a row, as it always was; the second pass finds nothing left to move.
// REQUIRES: hwInit has taken the managers (none of them is tested for null).
void AclHelper::compressAllGroups() {
   VTRACE( 1, "AclHelper::compressAllGroups()" );
   for ( const auto& member : hcsd_->halyardModId() ) {
      const U32 unit = member.key();
      ipAclEntryManager_->compressEntries( unit );
      ipAclVfpEntryManager_->compressEntries( unit );
      ipAclVniEntryManager_->compressEntries( unit );
      ipAclEgressEntryManager_->compressEntries( unit );
      macAclEntryManager_->compressEntries( unit );
      macAclVfpEntryManager_->compressEntries( unit );
      macAclEgressEntryManager_->compressEntries( unit );
      routerAclEntryManager_->compressEntries( unit );
      ip6AclEntryManager_->compressEntries( unit );
      ip6AclVniEntryManager_->compressEntries( unit );
      ip6RouterAclEntryManager_->compressEntries( unit );
      ip6AclVfpEntryManager_->compressEntries( unit );
      ip6AclVfpEntryManager_->compressEntries( unit );
      ip6StdAclVfpEntryManager_->compressEntries( unit );
      ip6StdAclEntryManager_->compressEntries( unit );
      ip6AclEgressEntryManager_->compressEntries( unit );
      ip6StdAclPortEgressEntryManager_->compressEntries( unit );
      ip6StdAclRouterEgressEntryManager_->compressEntries( unit );
      ip6RouterAclEgressEntryManager_->compressEntries( unit );
      routerAclEgressEntryManager_->compressEntries( unit );
      mirroringAclGroup1EntryManager_->compressEntries( unit );
      mirroringAclGroup2EntryManager_->compressEntries( unit );
      mirroringAclGroup3EntryManager_->compressEntries( unit );
      mirroringAclGroup4EntryManager_->compressEntries( unit );
   }
}

void AclHelper::commitAcl( const AclDataPtr& aclData ) {
   VTRACE( 1, "AclHelper::commitAcl(" << aclData->aclName() << ")" );
   const Fennel::AclKey key = aclData->key();
   const HalyardAclData::Ptr saclData = halyardAclData( key );
   if ( !saclData ) {
      return;
   }
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr unitData = member.value();
      VTRACE( 1, "Unit: " << unitData->unit() << "commitAcl()" );
      if ( const AclCommonUnitData::Ptr common = unitData->common() ) {
         common->commitAcl( key, installEntries_ );
      }
   }
}

void AclHelper::enableAclEntriesIs( const AclRuleData::Ptr& rule, U32 unit, bool enable ) {
   VTRACE( 1, "AclHelper::enableAclEntriesIs( ruleNum " << rule->ruleNum() << " Unit: " << unit
                                                        << ( enable ? " enable" : " disable" )
                                                        << " )" );
   for ( const auto& list : rule->entryList() ) {
      for ( const auto& member : list.entry() ) {
         const U32 entry = member.key();
         if ( rule->entryFromVfp( entry ) ) {
            continue;
         }
         VTRACE( 1, "Entry " << entry << " ( Setting entry " << entry << " enable to " << enable
                             << " ) " );
         if ( !installEntries_ ) {
            continue;
         }
         const int toleratedCode = Shim::sdkCall( [] { return enableEntryToleratedCode; } );
         tcamGroupManager_->tcamManagerForEntry( entry )->enableEntry( unit, entry, enable,
                                                                       toleratedCode );
      }
   }
}

}  // namespace Halyard
