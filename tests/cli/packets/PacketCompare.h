// Field-by-field comparison of packets for the packet tests, printed in the JSON-lines form.
#pragma once

#include <gtest/gtest.h>

#include "cli/packets/PacketInput.h"

namespace HalyardCliTest {

inline bool sameHeaders( const Fennel::Packet& a, const Fennel::Packet& b ) {
   auto ports = []( const std::optional<Fennel::PacketL4Ports>& x,
                    const std::optional<Fennel::PacketL4Ports>& y ) {
      return x.has_value() == y.has_value() &&
             ( !x || ( x->sport == y->sport && x->dport == y->dport && x->flags == y->flags ) );
   };
   auto v4 = [&] {
      const auto &x = a.ipv4, &y = b.ipv4;
      return x.has_value() == y.has_value() &&
             ( !x || ( x->src == y->src && x->dst == y->dst && x->proto == y->proto &&
                       x->dscp == y->dscp && x->ecn == y->ecn && x->ttl == y->ttl &&
                       x->len == y->len && x->frag == y->frag ) );
   };
   auto v6 = [&] {
      const auto &x = a.ipv6, &y = b.ipv6;
      return x.has_value() == y.has_value() &&
             ( !x || ( x->src == y->src && x->dst == y->dst && x->next == y->next &&
                       x->dscp == y->dscp && x->ecn == y->ecn && x->hlim == y->hlim &&
                       x->len == y->len && x->frag == y->frag ) );
   };
   const bool icmp =
       a.icmp.has_value() == b.icmp.has_value() &&
       ( !a.icmp || ( a.icmp->type == b.icmp->type && a.icmp->code == b.icmp->code ) );
   return a.eth.src == b.eth.src && a.eth.dst == b.eth.dst && a.eth.type == b.eth.type && v4() &&
          v6() && ports( a.tcp, b.tcp ) && ports( a.udp, b.udp ) && icmp && a.payload == b.payload;
}

inline bool sameMetadata( const Fennel::Packet& a, const Fennel::Packet& b ) {
   return a.in == b.in && a.vlan == b.vlan && a.routed == b.routed && a.out == b.out;
}

inline testing::AssertionResult samePacket( const Fennel::Packet& a, const Fennel::Packet& b ) {
   if ( sameHeaders( a, b ) && sameMetadata( a, b ) ) {
      return testing::AssertionSuccess();
   }
   return testing::AssertionFailure() << "\n  " << HalyardCli::packetToJson( a ).dump() << "\n  "
                                      << HalyardCli::packetToJson( b ).dump();
}

}  // namespace HalyardCliTest
