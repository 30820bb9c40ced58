// The last step before the SDK: free functions that write the actions of a
// field-processor entry, or one of its match fields, in the form that the
// chip of the unit wants.
//
//  - setActions turns an ACL action (permit, deny, log) into field-processor
//    actions. Every rule and every management entry goes through it.
//  - The field setters write one match field each, either as the plain
//    qualifier or, where the chip compresses the field, as a class: the value
//    is bound to the class in the chip's compression table through the group
//    manager, and the entry matches the class. They are exported for the
//    agent's other field-processor back-ends; the ACL rules of this library
//    use the direct qualifiers.
//  - useRangeChecker and verifyIpLenRangeChecker tell whether a port or length term of a
//    subrule needs a hardware range checker.
//  - The verify... checks read an entry back, repeat their setter's choice of
//    form and stop the process on a mismatch.
//
// Contract:
//  1. Every SDK call is checked: a negative return code stops the process with
//     the call's text (SdkCall.h). A false from a group manager's
//     allocate...ClassId, a failed check and an unknown class in
//     getTranslatedIpClassId are assertion failures that stay on in release
//     builds. Nothing is rolled back: the class is allocated before the
//     qualifier is written, so a failed allocation leaves the entry as it was.
//  2. Each qualifier or action written also goes out as one "fp qual ..." or
//     "fp action add ..." line on Halyard::bcmFpCmd, in the order given.
//  3. The chip's abilities come from the ChipAttributes row of the unit's chip
//     (ChipLookup.h); the unit must be known to the group manager.
//  4. A class id is 16 bits wide where the entry matches it, and 8 bits wide in
//     the compression tables: the allocations take its low 8 bits.
//
// REQUIRES: the activity thread, holding the activity lock; Shim::sdk_ installed.
#pragma once

#include <cstdint>

#include "platform/acl/AclTypes.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// Writes the actions of `action` on `entry`.
//  - A deny in the VFP stage adds no drop: VFP cannot drop or log, so the
//    decision travels to IFP in the source class (classVfpAclDrop_, with
//    classVfpAclLog_ when logged), where management entries carry it out.
//  - A deny elsewhere drops; on ingress it also masks every front-panel port
//    out of the destinations and, unless logged, sends any CPU copy to the
//    drop queue. An ingress logged deny copies to the CPU at TC_ACL_LOG; an
//    egress deny never logs.
//  - A VFP entry always sets the source class, a permit the class as passed.
//  - `allPorts` on ingress keys the entry on every Ethernet port, permanently;
//    `cancelCpuCopy` on ingress cancels a CPU copy of an earlier stage, except
//    on a logged deny, whose copy is the point.
// `direction` in is ingress; `vfp` says the entry lies in the VFP stage.
void setActions( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, Acl::Action action,
                 bool log, bool vfp, Acl::AclDirection direction, U32 newVfpClass, bool allPorts,
                 bool cancelCpuCopy );

// Ethernet type: the class form when the caller asks for it (`useClass`), in
// which case the chip must have the protocol compression tables; the chip is
// not consulted otherwise.
void setEtherType( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, bool useClass,
                   U16 etherType, U16 etherTypeMask, U16 etherTypeClass, U16 etherTypeClassMask );

// IP protocol: the class form where the chip compresses IP protocols. The
// plain qualifier takes the low 8 bits of the protocol and of its mask.
void setIpProtocol( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U16 ipProto,
                    U16 ipProtoMask, U16 protoClass, U16 protoClassMask );

// Layer 4 ports: the class form where the chip compresses layer 4 ports.
void setL4DstPort( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U16 port,
                   U16 portMask, U16 portClass, U16 portClassMask );
void setL4SrcPort( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U16 port,
                   U16 portMask, U16 portClass, U16 portClassMask );

// Destination addresses, by the first form the chip has:
//  1. DstIpClassMsbNibble: the prefix is bound to the class shifted into the
//     high half of the chip's 64-bit class value, and the entry matches the
//     most significant nibble of that value (the class, unshifted);
//  2. DstClassField: the entry matches the class, nothing is allocated;
//  3. neither: the plain address (setDstIPv4), or the destination MAC that
//     the caller gives in place of any class (the ...OrDstMac forms).
// `ip` and `mask` are in host order.
void setDstIPv4( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U32 ip, U32 mask,
                 U16 ipClass, U16 ipClassMask );
void setDstIPv4ClassOrDstMac( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry,
                              Pylon::IpAddrWithFullMask ipddrMask, U16 ipClass, U16 ipClassMask,
                              uint8_t ( &mac )[6], uint8_t ( &macMask )[6] );
void setDstIPv6ClassOrDstMac( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry,
                              Pylon::Ip6AddrWithFullMask ip6ddrMask, U16 ip6Class, U16 ip6ClassMask,
                              uint8_t ( &mac )[6], uint8_t ( &macMask )[6] );

// Whether a port term needs a hardware range checker: a range (start differs from end) that no
// port and mask stands for (mask 0). A port with a mask needs none.
bool useRangeChecker( U16 mask, U16 start, U16 end );
// Whether an IP length term needs a range checker: a range (start differs from end), or an exact
// length (mask 0xFFFF, the length in `start`), since the chip has no length qualifier. Any
// other term asks nothing of the length.
bool verifyIpLenRangeChecker( U16 mask, U16 start, U16 end );

// The IP class id to use on the chip of the first module. A chip with both
// destination class forms takes the id as it is; any other takes the next id
// of the ring 1 -> 2 -> 3 -> 4 -> 5 -> 1, and only those five ids exist
// there (another id, 0 included, stops the process). `*outMask` is always
// `classMask`.
void getTranslatedIpClassId( HalyardCommonSmData::PtrConst hcsd, U16 classId, U16 classMask,
                             U16* outClass, U16* outMask );

// Read-backs of the setters above. Each reads the form its setter chose and
// asserts that the entry holds the value; the nibble forms also assert the
// class mask, the class-field forms only the class.
void verifyIpProtocol( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U16 ipProto,
                       U16 protoClass );
void verifyL4DstPort( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U16 port,
                      U16 portClass );
void verifyL4SrcPort( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U16 port,
                      U16 portClass );
void verifyDstIPv4( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U32 ip,
                    U16 ipClass );
void verifyDstIPv4ClassOrDstMac( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry,
                                 U16 ipClass, U16 ipClassMask, Pylon::EthAddr mac,
                                 Pylon::EthAddr macMask );
void verifyDstIPv6ClassOrDstMac( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry,
                                 U16 ip6Class, U16 ip6ClassMask, Pylon::EthAddr mac,
                                 Pylon::EthAddr macMask );

}  // namespace Halyard
