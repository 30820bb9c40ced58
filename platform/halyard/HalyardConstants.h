// Constants of the Halyard ACL back-end.
//
// The class values cut the 8-bit class spaces of the field processor into
// flag bits, so that several meanings can stand in one class at once.
#pragma once

#include "platform/vesper/Types.h"

namespace HalyardCentral {

// Layer-2 interface class of a VLAN whose routed traffic is dropped during
// an update; set by the VLAN topology agent, matched by management entries.
inline constexpr U32 classDropRoutedTraffic_ = 0x04;

}  // namespace HalyardCentral

namespace Halyard {

// Source class bits that a VFP entry sets: VFP cannot drop or log by
// itself, so it marks the packet and a management entry in IFP acts.
inline constexpr U32 classVfpAclDrop_ = 0x08;
inline constexpr U32 classVfpAclLog_ = 0x10;
// Destination class bit that lets a packet pass the ACL entries by (traffic
// of a blocked interface during an update).
inline constexpr U32 classSkipAcls_ = 0x40;
// Mask of ingress interface classes.
inline constexpr U32 aclIntfClassMask = 0xFF;
// No interface class. Interface classes are 8-bit values kept in 16 signed
// bits, so compare them as S16.
inline constexpr S16 intfClassInvalid = -1;
// A rule number is below 1 << ruleNumBits (8192): rule priorities pack it
// under the ACL's priority number.
inline constexpr U32 ruleNumBits = 13;
// CPU class-of-service queue for copies that are to be thrown away.
inline constexpr U32 cpuCosqDrop_ = 0;
// Internal priority given to logged packets.
inline constexpr U32 TC_ACL_LOG = 10;
// Bytes covered by one user-defined field.
inline constexpr U16 UDF_QUAL_LENGTH = 2;

}  // namespace Halyard
