// GenericAclSm: hit counters, read rule by rule from the back-end and kept by sequence number.
#include <algorithm>

#include "fennel/GenericAclSm.h"

namespace Fennel {

const GenericAclSm::CounterPlan& GenericAclSm::counterPlan( AclState& acl ) {
   CounterPlan& plan = counterPlans_[acl.key];
   if ( plan.aclData.ptr() == acl.aclData.ptr() && plan.aclVersion == acl.aclData->aclVersion() ) {
      return plan;
   }
   const Memory& memory = memory_.at( acl.key );
   plan.aclData = acl.aclData;
   plan.aclVersion = acl.aclData->aclVersion();
   plan.rules.clear();
   for ( const RuleOrigin& origin : acl.rules ) {
      if ( origin.kind != RuleOrigin::Kind::configured ) {
         continue;
      }
      // The id the rule went in with: its own, or the one this layer gave it.
      Acl::UniqueId id = memory.appliedRules.at( origin.seq ).uniqueId();
      if ( id.isEmpty() ) {
         id = memory.ids.at( origin.seq );
      }
      plan.rules.push_back( { origin.seq, id, &acl.hits[origin.seq] } );
   }
   return plan;
}

void GenericAclSm::pollCounters() {
   FennelHelper::AclHelper& helper = *aclHelper();
   for ( auto& [key, acl] : state_ ) {
      const bool whole =
          acl.committed && acl.pending == PendingReason::none && acl.error == aclCreateSuccess;
      if ( !whole || !helper.aclCountersAllocated( acl.aclData ) ) {
         continue;
      }
      const CounterPlan& plan = counterPlan( acl );
      for ( const CounterPlan::Rule& rule : plan.rules ) {
         *rule.hits += helper.aclRuleCountersSinceLastPoll( plan.aclData, rule.seq, rule.id );
      }
   }
   if ( counterPlans_.size() > state_.size() ) {
      // ACLs that went away since their last poll.
      std::erase_if( counterPlans_, [&]( const auto& member ) {
         return state_.find( member.first ) == state_.end();
      } );
   }
}

}  // namespace Fennel
