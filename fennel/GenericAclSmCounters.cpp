// GenericAclSm: hit counters, read rule by rule from the back-end and kept by sequence number.
#include "fennel/GenericAclSm.h"

namespace Fennel {

void GenericAclSm::pollCounters() {
   FennelHelper::AclHelper& helper = *aclHelper();
   for ( auto& [key, acl] : state_ ) {
      const bool whole =
          acl.committed && acl.pending == PendingReason::none && acl.error == aclCreateSuccess;
      if ( !whole || !helper.aclCountersAllocated( acl.aclData ) ) {
         continue;
      }
      const Memory& memory = memory_.at( key );
      for ( const RuleOrigin& origin : acl.rules ) {
         if ( origin.kind != RuleOrigin::Kind::configured ) {
            continue;
         }
         // The id the rule went in with: its own, or the one this layer gave it.
         Acl::UniqueId id = memory.appliedRules.at( origin.seq ).uniqueId();
         if ( id.isEmpty() ) {
            id = memory.ids.at( origin.seq );
         }
         acl.hits[origin.seq] += helper.aclRuleCountersSinceLastPoll( acl.aclData, origin.seq, id );
      }
   }
}

}  // namespace Fennel
