// What the Halyard back-end holds of the ACLs that the generic layer applied, read from its
// records for the tool and the tests: per unit whether an ACL stands installed or waits dirty,
// how many entries it holds, and which ACL rule a hardware entry serves.
//
// The generic machine (GenericAclSm) speaks to any back-end through FennelHelper::AclHelper;
// this view knows the one this project builds, Halyard::AclHelper. It only reads.
#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/fennel/AclKey.h"
#include "platform/vesper/Types.h"

namespace Fennel {

struct AclUnitView {
   U32 unit = 0;
   bool installed = false;
   bool dirty = false;
   U32 entries = 0;  // in service, all rules and subrules
};

// The ACL's units in the back-end's records, in unit order; empty when it has none.
std::vector<AclUnitView> aclUnits( const Halyard::AclHelper& helper, const AclKey& key );

// The ACL rule an entry serves.
struct EntryOwner {
   AclKey key;
   U32 ruleNum = 0;
   U32 subrule = 0;
};

// The owners of every entry the back-end's ACL records hold, by (unit, entry). A snapshot:
// build it again after the records change.
class EntryOwners {
 public:
   explicit EntryOwners( const Halyard::AclHelper& helper );
   const EntryOwner* owner( U32 unit, U32 entry ) const;
   std::size_t size() const { return owners_.size(); }

 private:
   std::map<std::pair<U32, U32>, EntryOwner> owners_;
};

}  // namespace Fennel
