// The vocabulary of the simulated field processor: stages, handles, the status of an operation,
// and the enumerations that entries are programmed with.
//
// These are the model's own names. The simulated SDK translates the SDK's enumerators and
// return codes to and from them, so nothing here depends on how the SDK numbers things.
#pragma once

#include <array>
#include <bitset>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/vesper/Types.h"

namespace Sim {

// The three field-processor stages, in the order a packet meets them.
enum class Stage : U8 { Vfp, Ifp, Efp };
inline constexpr std::size_t kStageCount = 3;
std::string_view stageName( Stage s );

// The slices of one field-processor stage, each with its count of narrow (single-wide)
// entries. A slice serves one group at a time; a group of the wide key gets half a slice's
// narrow entries from each slice it holds.
struct StageSlices {
   std::vector<U32> narrowEntries;  // slice 0 first

   U32 slices() const { return static_cast<U32>( narrowEntries.size() ); }
   U32 totalNarrow() const;
   U32 totalWide() const;
   friend bool operator==( const StageSlices&, const StageSlices& ) = default;
};

using GroupId = U32;
using EntryId = U32;
using RangeCheckerId = U32;
using UdfId = U32;

// The outcome of a write. Reads answer with std::optional instead: nullopt is "not found".
enum class Status : U8 {
   Ok,
   NotFound,      // no such entry, group, port, checker or chunk
   Exists,        // the id is already taken
   Param,         // a value out of range or of the wrong size for the field
   Resource,      // the chip has no more of it (range checkers, UDF chunks, entry ids)
   Busy,          // still in use: a group with entries, a checker or chunk attached to entries
   Conflict,      // the entry already holds an action this one excludes
   NotInstalled,  // the operation needs an installed entry
};
std::string_view statusName( Status s );

// Ternary fragment conditions of the IpFrag qualifier.
enum class IpFrag : U8 {
   Non,         // not a fragment
   First,       // more-fragments set, offset 0
   NonOrFirst,  // offset 0
   NotFirst,    // offset not 0
   Any,         // any fragment: more-fragments set or offset not 0
};

// Packet kinds of the IpType qualifier.
enum class IpType : U8 {
   Any,
   NonIp,
   Ip,  // IPv4 or IPv6
   Ipv4Any,
   Ipv6,
   Ipv6NoExtHdr,
   Ipv6OneExtHdr,
   Arp,
};

// Spanning-tree states of a port, as the IngressStpState qualifier compares them.
enum class StpState : U8 { Disable = 0, Block = 1, Listen = 2, Learn = 3, Forward = 4 };

// The port classes that the field processor reads: VFP and IFP entries see a port's
// ingress class, EFP entries the egress class of the port the packet leaves by.
enum class PortClassKind : U8 { FieldIngress, FieldEgress };
inline constexpr std::size_t kPortClassKinds = 2;

// What a range checker compares.
enum class RangeType : U8 { SrcPort, DstPort, IpLength };

// Where the offset of a user-defined field counts from; numbered as the ACL layer numbers them.
enum class UdfBase : U8 {
   L2Header = 1,   // the first byte of the frame
   L3Header = 2,   // the first byte after the EtherType
   L4Header = 3,   // the first byte after the IP header and its extension header
   L4Payload = 4,  // the first byte after a TCP, UDP or ICMP header
};

// Every match field an entry can hold, except InPorts (a port bitmap), range checkers and
// user-defined fields, which have their own operations.
enum class QualId : U8 {
   SrcIp,
   DstIp,
   SrcIp6,
   DstIp6,
   SrcIp6High,  // 16 bytes kept; only bytes 0 to 7 (the upper 64 bits) are matched
   DstIp6High,
   SrcMac,
   DstMac,
   EtherType,
   IpProtocol,
   ExtensionHeaderType,
   L4SrcPort,  // ICMP type and code for ICMP packets, type in the high byte
   L4DstPort,
   Dscp,  // the whole TOS byte or traffic class: DSCP and ECN
   Ip6TrafficClass,
   Ttl,
   Ip6HopLimit,
   TcpControl,
   OuterVlanId,
   ForwardingVlanId,
   EgressClassL3Interface,
   VxlanNetworkId,
   HiGig,
   L3Routable,
   MyStationHit,
   IngressStpState,
   OutPort,
   IpFrag,  // value of Sim::IpFrag, set through ipFragIs
   IpType,  // value of Sim::IpType, set through ipTypeIs
   InterfaceClassPort,
   InterfaceClassL2,
   InterfaceClassL3,
   SrcClassField,
   DstClassField,
   DstClassL2,
   EtherTypeClass,
   IpProtocolClass,
   L4SrcPortClass,
   L4DstPortClass,
   DstIpClassMsbNibble,
   DstIp6ClassMsbNibble,
};
inline constexpr std::size_t kQualCount =
    static_cast<std::size_t>( QualId::DstIp6ClassMsbNibble ) + 1;

// Storage width of a qualifier's data and mask in bytes, and its name for dumps.
U8 qualWidth( QualId q );
std::string_view qualName( QualId q );

// The data and mask of one qualifier, `width` bytes in network order (most significant
// first); the bytes beyond `width` are zero.
struct QualValue {
   U8 width = 0;
   std::array<U8, 16> data{};
   std::array<U8, 16> mask{};

   // A numeric field's value as a number; REQUIRES: width <= 8.
   U64 dataU64() const;
   U64 maskU64() const;
   static QualValue fromU64( U8 width, U64 data, U64 mask );
   friend bool operator==( const QualValue&, const QualValue& ) = default;
};

enum class ActionId : U8 {
   Drop,
   CopyToCpu,           // param1 non-zero: param2 is the match id reported to the CPU
   SwitchToCpuCancel,   // cancels a CPU copy made by forwarding or an earlier stage
   CosQCpuNew,          // param1: CPU queue
   PrioIntNew,          // param1: internal priority
   EgressMask,          // port bitmap: these ports are taken from the destinations
   MirrorIngressIndex,  // param1: mirror session
   ClassSourceSet,      // param1: source class seen by later stages as SrcClassField
   // The two cancels of HiGig trunk resolution a chip may want on a drop. A one-chip model has
   // no HiGig trunks, so they are kept and read back but change no verdict.
   HgTrunkResolveCancel,
   TrunkLoadBalanceCancel,
};
inline constexpr std::size_t kActionCount =
    static_cast<std::size_t>( ActionId::TrunkLoadBalanceCancel ) + 1;
std::string_view actionName( ActionId a );
// Actions whose parameter is a port bitmap rather than two numbers.
bool isPortAction( ActionId a );

// What the key of a group holds and what its entries may do: a write of any other qualifier,
// of InPorts, of a range checker, of user-defined field data or of any other action is
// refused with Status::Param, as the SDK refuses a field outside a group's qualifier set. A
// group made without one takes everything.
struct KeySet {
   std::bitset<kQualCount> quals;
   bool inPorts = false;
   bool rangeChecks = false;
   bool udf = false;
   std::bitset<kActionCount> actions;

   static KeySet all() {
      KeySet k;
      k.quals.set();
      k.inPorts = k.rangeChecks = k.udf = true;
      k.actions.set();
      return k;
   }
   bool has( QualId q ) const { return quals.test( static_cast<std::size_t>( q ) ); }
   bool allows( ActionId a ) const { return actions.test( static_cast<std::size_t>( a ) ); }
   friend bool operator==( const KeySet&, const KeySet& ) = default;
};

struct ActionParams {
   U32 param1 = 0;
   U32 param2 = 0;
   friend bool operator==( const ActionParams&, const ActionParams& ) = default;
};

}  // namespace Sim
