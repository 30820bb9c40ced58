// Rule hit counters. The hardware counts per entry, as running totals; the generic layer wants,
// per rule, the hits since its last poll. So the hits of all entries of a rule are added up per
// unit and kept in the rule's record (lastReadValue) as the base of the next answer; commit
// zeroes that base, so that a rebuilt rule counts from nothing.
//
// The poll is the hot path of reporting: the generic layer makes one call per rule at its
// polling rate. It allocates nothing, formats trace text only where a trace level asks for it,
// and asks the SDK about an entry's fragment key only for the IPv4 rules that have an entry
// for later fragments, whose hits are not the rule's.
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

}  // namespace

bool AclHelper::aclCountersAllocated( const AclDataPtrConst& aclData ) {
   VESPER_ASSERT( aclData->installed() );
   return true;
}

U64 AclHelper::aclRuleCountersSinceLastPoll( const AclDataPtrConst& aclData, U32 seq,
                                             Acl::UniqueId aclId ) {
   VTRACE( pollTraceLevel, aclData->aclName() << "::aclRuleCountersSinceLastPoll"
                                              << ", seq: " << seq << "aclId=" << aclId << ")" );
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   // Only ACLs the back-end holds are polled.
   VESPER_ASSERT( saclData );
   const bool ip4 = aclData->aclType() == Acl::ip_;
   U64 total = 0;
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr& unitIter = member.value();
      // Polling a unit whose ACL is not committed is a caller's error.
      VESPER_ASSERT( unitIter->common()->installed() );
      const AclRuleData::Ptr rule = unitIter->common()->getAclRuleDataForAclId( aclId );
      if ( !rule ) {
         continue;
      }
      const U32 unit = unitIter->unit();
      const bool fragmentTest = ip4 && rule->hasPermitFragmentRule();
      U64 sum = 0;
      for ( const auto& list : rule->entryList() ) {
         for ( const auto& entryIter : list.entry() ) {
            const U32 entry = entryIter.key();
            if ( fragmentTest && laterFragmentEntry( unit, entry ) ) {
               continue;
            }
            sum += tcamGroupManager_->tcamManagerForEntry( entry )->hitsForEntry( unit, entry );
         }
      }
      const U64 last = rule->lastReadValue();
      VTRACE( pollTraceLevel, "counter polling: " << aclData->aclName() << ", seq: " << seq << " : "
                                                  << aclId << " lastReadValue: " << last << " "
                                                  << sum );
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
