// What the tests make of the update probe's findings (Sim::UpdateProbe::end).
//
// KNOWN BUG (acl/HalyardAclCommonCommit.cpp, AclCommonUnitData::commitAcl, and the teardown
// of a unit's entries): a unit's entries are installed, and taken out, rule by rule in the order
// of the hash maps that hold them (aclRule_ and each rule's entryList_), not in lookup order.
// So while an ACL goes in or out, a port can meet a later subrule, or the closing rule, without
// an earlier one: the churn soak's seed 1, step 1 (an egress IPv6 rule whose port range went in
// as blocks installs 13 29 21 37 ... 40 39 on unit 0), and every ingress list that stands in IFP
// (UpdateProbeTest, "ifp" cases: a port meets [15] of [13 15 17 19 21]).
#pragma once

#include <string>

namespace Soak {

// The finding is a list seen that holds only entries of the old list, or only of the new one,
// in lookup order, with some left out: the known fault above. A list that mixes old and new
// entries, or shows them out of lookup order, is not.
bool entriesOutOfOrder( const std::string& finding );

}  // namespace Soak
