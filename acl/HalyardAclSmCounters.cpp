// Rule hit counters. The hardware counts per entry, as running totals; the generic layer wants,
// per rule, the hits since its last poll. So the hits of all entries of a rule are added up per
// unit and kept in the rule's record (lastReadValue) as the base of the next answer; commit
// zeroes that base, so that a rebuilt rule counts from nothing.
//
// The poll is the hot path of reporting: the generic layer makes one call per rule at its
// polling rate. It allocates nothing, formats trace text only where a trace level asks for it,
// and asks the SDK about an entry's fragment key only for the IPv4 rules that have an entry
// for later fragments, whose hits are not the rule's. It reads each unit's rules through a
// plan (CounterPollPlan): the rules in rule order with their entries and managers in flat
// arrays, remade when the records change, so that a poll of every rule in turn walks memory
// in order and looks nothing up by key. The calls it makes into the chip are the same, in the
// same order, as a walk of the records would make.
#include <algorithm>

#include "acl/HalyardAclSm.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// What a fragment key reads as when the entry has none: anything but "not first".
constexpr bcm_field_IpFrag_t noIpFragKey = static_cast<bcm_field_IpFrag_t>( -1 );

// The level of the per-poll lines: off in service, since the poll runs per rule.
constexpr int pollTraceLevel = 6;

// The entry that a permit rule adds for non-first fragments: it matches them alone.
bool laterFragmentEntry( U32 unit, U32 entry ) {
   bcm_field_IpFrag_t ipFrag = noIpFragKey;
   // An entry without the key leaves ipFrag alone, and counts.
   SDK_NO_CHECK( bcm_field_qualify_IpFrag_get( unit, entry, &ipFrag ) );
   return ipFrag == bcmFieldIpFragNotFirst;
}

// The plan of `common`'s records as they stand.
void planRemake( CounterPollPlan& plan, const AclCommonUnitData& common,
                 const HalyardTcamGroupManager& groupManager ) {
   plan.rules.clear();
   plan.byId.clear();
   plan.entries.clear();
   plan.next = 0;
   for ( const auto& member : common.aclRuleData() ) {
      plan.rules.push_back( { member.key(), member.value().ptr(), 0, 0 } );
   }
   std::sort( plan.rules.begin(), plan.rules.end(),
              []( const CounterPollPlan::Rule& a, const CounterPollPlan::Rule& b ) {
                 return a.record->ruleNum() < b.record->ruleNum();
              } );
   for ( CounterPollPlan::Rule& rule : plan.rules ) {
      rule.firstEntry = U32( plan.entries.size() );
      for ( const AclEntryList& list : rule.record->entryList() ) {
         for ( const auto& entry : list.entry() ) {
            plan.entries.push_back(
                { entry.key(), groupManager.tcamManagerForEntry( entry.key() ).ptr() } );
         }
      }
      rule.endEntry = U32( plan.entries.size() );
      plan.byId.emplace_back( rule.aclId, U32( plan.byId.size() ) );
   }
   std::sort( plan.byId.begin(), plan.byId.end() );
   plan.generation = RuleRecords::generation;
}

// The rule's hits on the unit by a walk of its records, as they stand.
U64 recordsSum( U32 unit, const AclRuleData& rule, bool fragmentTest,
                const HalyardTcamGroupManager& groupManager ) {
   U64 sum = 0;
   for ( const AclEntryList& list : rule.entryList() ) {
      for ( const auto& entryIter : list.entry() ) {
         const U32 entry = entryIter.key();
         if ( fragmentTest && laterFragmentEntry( unit, entry ) ) {
            continue;
         }
         sum += groupManager.tcamManagerForEntry( entry )->hitsForEntry( unit, entry );
      }
   }
   return sum;
}

// The rule's hits on the unit through the plan. Where the records changed during a call into
// the hardware (a fragment query gives the activity lock up, and an update may run), the plan
// is no longer theirs: the rule is read again from the records as they now stand, and `rule`
// follows. The same holds where another poll remade the plan meanwhile.
U64 planSum( U32 unit, const AclCommonUnitData& common, const CounterPollPlan& plan,
             const CounterPollPlan::Rule& planRule, bool ip4,
             const HalyardTcamGroupManager& groupManager, AclRuleData*& rule,
             AclRuleData::Ptr& held ) {
   const U64 madeAt = plan.generation;
   const Acl::UniqueId aclId = planRule.aclId;
   const U32 end = planRule.endEntry;
   const bool fragmentTest = ip4 && planRule.record->hasPermitFragmentRule();
   const auto changed = [&] {
      return RuleRecords::generation != madeAt || plan.generation != madeAt;
   };
   U64 sum = 0;
   for ( U32 i = planRule.firstEntry; i < end; ++i ) {
      const CounterPollPlan::Entry e = plan.entries[i];
      const bool later = fragmentTest && laterFragmentEntry( unit, e.entry );
      if ( !later && !changed() ) {
         sum += e.manager->hitsForEntry( unit, e.entry );
      }
      if ( changed() ) {
         held = common.getAclRuleDataForAclId( aclId );
         rule = held.ptr();
         return rule ? recordsSum( unit, *rule, ip4 && rule->hasPermitFragmentRule(), groupManager )
                     : 0;
      }
   }
   return sum;
}

}  // namespace

const CounterPollPlan::Rule* CounterPollPlan::find( Acl::UniqueId aclId ) {
   if ( next < rules.size() && rules[next].aclId == aclId ) {
      return &rules[next++];
   }
   const auto at = std::lower_bound( byId.begin(), byId.end(), std::make_pair( aclId, U32( 0 ) ) );
   if ( at == byId.end() || at->first != aclId ) {
      return nullptr;
   }
   next = at->second + 1;
   return &rules[at->second];
}

bool AclHelper::aclCountersAllocated( const AclDataPtrConst& aclData ) {
   VESPER_ASSERT( aclData->installed() );
   return true;
}

HalyardAclData* AclHelper::counterPollRecord( const AclDataPtrConst& aclData ) {
   CounterPollAcl& cache = counterPollAcl_;
   if ( cache.aclData.ptr() != aclData.ptr() || cache.generation != RuleRecords::generation ) {
      cache.aclData = aclData;
      cache.record = halyardAclData( aclData->key() ).ptr();
      cache.generation = RuleRecords::generation;
   }
   return cache.record;
}

U64 AclHelper::aclRuleCountersSinceLastPoll( const AclDataPtrConst& aclData, U32 seq,
                                             Acl::UniqueId aclId ) {
   // Asked once: the poll's own lines are off in service, and each ask is a call.
   const bool pollTraced = vesperFileTrace().enabled( pollTraceLevel );
   if ( pollTraced ) {
      VTRACE( pollTraceLevel, aclData->aclName() << "::aclRuleCountersSinceLastPoll"
                                                 << ", seq: " << seq << "aclId=" << aclId << ")" );
   }
   const HalyardAclData::Ptr saclData( counterPollRecord( aclData ) );
   // Only ACLs the back-end holds are polled.
   VESPER_ASSERT( saclData );
   const bool ip4 = aclData->aclType() == Acl::ip_;
   const HalyardTcamGroupManager& groupManager = *tcamGroupManager_;
   U64 total = 0;
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr& unitIter = member.value();
      // Polling a unit whose ACL is not committed is a caller's error.
      VESPER_ASSERT( unitIter->common()->installed() );
      // Held: an update may run during a fragment query.
      const AclCommonUnitData::Ptr common = unitIter->common();
      const U32 unit = unitIter->unit();
      // The rule read; held counted where it was found in the records rather than the plan.
      AclRuleData* rule = nullptr;
      AclRuleData::Ptr held;
      U64 sum = 0;
      if ( common->hcsd() && common->hcsd()->aclRuleIndexConsistencyCheck() ) {
         // The checked lookup cross-checks the two indices of the records on every call.
         held = common->getAclRuleDataForAclId( aclId );
         rule = held.ptr();
         if ( rule ) {
            sum = recordsSum( unit, *rule, ip4 && rule->hasPermitFragmentRule(), groupManager );
         }
      } else {
         CounterPollPlan& plan = common->counterPollPlan();
         if ( plan.generation != RuleRecords::generation ) {
            planRemake( plan, *common, groupManager );
         }
         const CounterPollPlan::Rule* planRule = plan.find( aclId );
         if ( planRule ) {
            rule = planRule->record;
            sum = planSum( unit, *common, plan, *planRule, ip4, groupManager, rule, held );
         }
      }
      if ( !rule ) {
         continue;
      }
      const U64 last = rule->lastReadValue();
      if ( pollTraced ) {
         VTRACE( pollTraceLevel, "counter polling: " << aclData->aclName() << ", seq: " << seq
                                                     << " : " << aclId << " lastReadValue: " << last
                                                     << " " << sum );
      }
      if ( last > sum ) {
         // The count went backward (the entry was replaced): a restart from zero.
         VTRACE( 1, "counter inconsistency:" << aclData->aclName() << ", seq: " << seq << " : "
                                             << aclId << " lastReadValue: " << last << " " << sum );
         total += sum;
      } else {
         total += sum - last;
      }
      rule->lastReadValueIs( sum );
   }
   return total;
}

}  // namespace Halyard
