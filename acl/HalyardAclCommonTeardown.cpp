// AclCommonUnitData: what one ACL holds on one unit goes back to the TCAM managers.
//
// Removals go in descending rule order, since rule order is priority order: while the walk
// runs, a packet meets a prefix of the rule list. Within a rule its range checkers go first,
// then its entries, each with the payload fields it took (one use of each field per entry, as
// payload programming took one per entry), then the rule's records.
#include <vector>

#include "acl/HalyardAclCommon.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

using ManagerPtr = HalyardUnboundedTcamEntryManager::Ptr;

// The manager that issued the entry: only an unbounded manager hands out rule entries.
ManagerPtr unboundedManagerOf( const HalyardTcamGroupManager& groupManager, U32 entry ) {
   const ManagerPtr entryManager = Vesper::ptrDynamicCast<HalyardUnboundedTcamEntryManager>(
       groupManager.tcamEntryMgr( entry ) );
   VESPER_ASSERT( entryManager );
   return entryManager;
}

void rangeCheckersReleased( U32 unit, AclRuleData& rule, const ManagerPtr& entryManager ) {
   for ( const auto& member : rule.rangeChecker() ) {
      const RangeCheckerDesc desc = member.key();
      VTRACE( 1, "Unit: " << unit << " destroying range checker " << desc );
      entryManager->releaseRangeChecker( unit, desc );
      rule.rangeCheckerDel( desc );
   }
}

// Entries of every subrule, each to its own manager with the payload fields it used.
void entriesReleased( U32 unit, int aclType, const HalyardTcamGroupManager& groupManager,
                      AclRuleData& rule ) {
   // The subrule map is not walked while it shrinks.
   std::vector<U32> subRules;
   for ( const auto& list : rule.entryList() ) {
      subRules.push_back( list.subRuleNum() );
   }
   for ( const U32 subRule : subRules ) {
      const AclEntryList::Ptr list = rule.entryList( subRule );
      for ( const auto& member : list->entry() ) {
         const U32 entry = member.key();
         VTRACE( 1, "Unit: " << unit << " destroying entry " << subRule << "," << entry );
         const ManagerPtr manager = unboundedManagerOf( groupManager, entry );
         manager->releaseEntry( unit, entry );
         list->entryDel( entry );
         const AclRuleUdfData udfs = rule.udfDataForRule();
         for ( const auto& [qualIds, udf] : udfs ) {
            manager->releaseAclUdf( unit, aclType, udf.proto(), udf.base(),
                                    static_cast<U8>( udf.offset() ), UDF_QUAL_LENGTH );
         }
      }
      rule.entryListDel( subRule );
   }
}

}  // namespace

void AclCommonUnitData::destroyAcl( const Fennel::AclKey& key, const ManagerPtr&,
                                    const ManagerPtr& entryManager, const ManagerPtr&,
                                    const ManagerPtr&, const ManagerPtr& ) {
   const U32 ruleCount = static_cast<U32>( aclRule_.size() );
   VTRACE(
       1, "Unit: " << unit() << " destroyAcl( " << key.aclName() << " ) ruleCount: " << ruleCount );
   for ( U32 ruleNum = ruleCount; ruleNum-- > 0; ) {
      const AclRuleData::Ptr rule = aclRule( ruleNum );
      if ( !rule ) {
         // A gap in the rule numbers: the next teardown starts again from the top.
         return;
      }
      VTRACE( 1, "Unit: " << unit() << " ruleNum: " << ruleNum );
      rangeCheckersReleased( unit(), *rule, entryManager );
      entriesReleased( unit(), static_cast<int>( type() ), *tcamGroupManager_, *rule );
      aclRuleDataDel( rule->aclId() );
      aclRuleDel( ruleNum );
   }
   const auto aclRules = [this] { return aclRule_.size(); };
   VESPER_ASSERT( aclRules() == 0 );
   dirty_ = true;
   installed_ = false;
}

void AclCommonUnitData::removeAcl( const Fennel::AclKey& key, bool removeEntries ) {
   VTRACE( 1, "Unit: " << unit() << " removeAcl( " << key.aclName() << " )" );
   for ( const auto& rule : aclRule_ ) {
      for ( const auto& list : rule.entryList() ) {
         for ( const auto& member : list.entry() ) {
            const U32 entry = member.key();
            const HalyardTcamEntryManager::Ptr entryMgr =
                tcamGroupManager_->tcamManagerForEntry( entry );
            if ( !entryMgr ) {
               VTRACE( 0, "Unable to find tcam manager for entry " << entry );
            }
            VESPER_ASSERT( entryMgr );
            VTRACE( 1, " removing entry " << entry );
            if ( removeEntries ) {
               entryMgr->removeEntry( unit(), entry );
               VTRACE( 1, "fp entry remove " << entry );
            }
         }
      }
   }
   installed_ = false;
}

}  // namespace Halyard
