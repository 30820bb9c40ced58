// ACLs as the generic layer hands them to the back-end, made short for tests: the ACL's
// record (Fennel::AclData), MAC rules, and the binding of ports.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/AclTypes.h"
#include "platform/acl/RuleConfig.h"
#include "platform/fennel/AclData.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/Types.h"
#include "sim/chip/Packet.h"

namespace HalyardTest {

// A port ACL's record (VLAN 0), or a VLAN ACL's with `vlan`.
Fennel::AclData::Ptr aclDataOf( const std::string& name, Acl::AclType type,
                                Acl::AclDirection direction, U16 vlan = 0, bool standard = false );

// One term of a MAC rule: an address under a mask whose set bits are compared.
struct MacTerm {
   Pylon::EthAddr addr;
   Pylon::EthAddr mask;
};
inline const Pylon::EthAddr kMacMaskAll{ 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
// "host ADDR".
MacTerm macHost( const Pylon::EthAddr& addr );

struct MacRuleSpec {
   U32 seqNo = 10;
   Acl::Action action = Acl::Action::permit;
   bool log = false;
   std::optional<MacTerm> source;
   std::optional<MacTerm> destination;
   S32 etherType = Acl::MacFilter::protoAny;
};
// The rule, with a unique id of its own.
Acl::RuleConfig macRule( const MacRuleSpec& spec );

// The chip model's form of an address, and back.
Sim::MacAddr simMac( const Pylon::EthAddr& addr );
Pylon::EthAddr ethAddr( const Sim::MacAddr& addr );

// Puts `intf`'s port on the ACL's unit records, as binding the interface does ahead of the
// first pass: the ACL gets a unit record with its rule programmer on every unit of the
// switch, and the port joins the active ports of its own unit. Nothing of the hardware is
// touched: classes and claims are the pass's business (precreateAcl).
// REQUIRES: `intf` is a front-panel port or port-channel of the switch.
void bindPort( const Halyard::AclHelper::Ptr& helper, const Fennel::AclData::Ptr& aclData,
               Pylon::IntfId intf );

}  // namespace HalyardTest
