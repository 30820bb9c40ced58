// The class compression tables of one chip: values and destination prefixes mapped to classes,
// which IFP entries then match in place of the values themselves.
//
// Contract:
//   1. An exact table maps a 16-bit value (EtherType, IP protocol, layer 4 port) to a class;
//      a packet whose value is absent gets class 0.
//   2. A prefix table maps an address under a mask to a wide class value; a packet gets the
//      value of the matching prefix with the most mask bits (ties: the one bound first), or 0.
//      The chip keeps the wide value 36 bits wide and entries match its top nibble, bits 32 to
//      35 (DstIpClassMsbNibble): a class bound as `classId << 32` is seen as `classId`.
//   3. Binding a value or prefix again replaces its class.
#pragma once

#include <array>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/Packet.h"

namespace Sim {

enum class ExactClassTable : U8 { EtherType, IpProtocol, L4SrcPort, L4DstPort };

class ClassTables {
 public:
   void exactClassIs( ExactClassTable t, U16 value, U32 cls );
   bool exactClassDel( ExactClassTable t, U16 value );
   std::optional<U32> exactClass( ExactClassTable t, U16 value ) const;
   // The class a packet with `value` gets: 0 when unbound.
   U32 classOf( ExactClassTable t, U16 value ) const;

   void dstIp4ClassIs( U32 addr, U32 mask, U64 wideClass );
   bool dstIp4ClassDel( U32 addr, U32 mask );
   std::optional<U64> dstIp4Class( U32 addr, U32 mask ) const;
   U64 matchDstIp4( U32 addr ) const;

   void dstIp6ClassIs( const Ip6Addr& addr, const Ip6Addr& mask, U64 wideClass );
   bool dstIp6ClassDel( const Ip6Addr& addr, const Ip6Addr& mask );
   std::optional<U64> dstIp6Class( const Ip6Addr& addr, const Ip6Addr& mask ) const;
   U64 matchDstIp6( const Ip6Addr& addr ) const;

   // The part of a wide class that entries see.
   static U32 msbNibble( U64 wideClass ) { return static_cast<U32>( ( wideClass >> 32 ) & 0xF ); }

 private:
   template <typename Addr>
   struct Prefix {
      Addr addr;  // already under the mask
      Addr mask;
      U32 bits;
      U64 wideClass;
   };
   template <typename Addr>
   using PrefixTable = std::vector<Prefix<Addr> >;  // most mask bits first

   template <typename Addr>
   static void bind( PrefixTable<Addr>& t, const Addr& addr, const Addr& mask, U64 wide );
   template <typename Addr>
   static bool unbind( PrefixTable<Addr>& t, const Addr& addr, const Addr& mask );
   template <typename Addr>
   static const Prefix<Addr>* find( const PrefixTable<Addr>& t, const Addr& addr,
                                    const Addr& mask );

   std::array<std::unordered_map<U16, U32>, 4> exact_;
   PrefixTable<U32> ip4_;
   PrefixTable<Ip6Addr> ip6_;
};

}  // namespace Sim
