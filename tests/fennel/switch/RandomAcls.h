// Random ACLs and the packets that probe them, from a seed: rules drawn from small pools of
// addresses and values so that they overlap and shadow each other, and packets aimed at a
// chosen rule (its masked bits, anything elsewhere) or drawn from the same pools. The draws are
// made one statement at a time, so that every compiler makes the same ones from a seed.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "fennel/Packet.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/IpFilter.h"
#include "platform/pylon/EthAddr.h"

namespace FennelTest {

class RandomAcls {
 public:
   explicit RandomAcls( U32 seed );

   // A MAC list of `rules` rules, sequence numbers 10, 20, ...: hosts, masked and wild
   // addresses, EtherTypes or any, permit and deny, some logged.
   Acl::AclConfig::Ptr macListIs( const Acl::Config::Ptr& config, const std::string& name,
                                  U32 rules );

   // A packet for `acl`: most aimed at one of its rules, the rest drawn at random.
   Fennel::Packet macPacketFor( const Acl::AclConfig& acl );

   // A packet for an IPv4 or IPv6 list: most aimed at one of its rules, with values inside its
   // terms and at their edges on either side, the rest drawn at random; unfragmented, a first
   // fragment or a later one. It arrives on Ethernet1 unless the caller moves it.
   Fennel::Packet ipPacketFor( const Acl::AclConfig& acl );

   U32 below( U32 n ) { return std::uniform_int_distribution<U32>( 0, n - 1 )( rng_ ); }
   template <typename T>
   const T& pick( const std::vector<T>& from ) {
      return from[below( static_cast<U32>( from.size() ) )];
   }

 private:
   Pylon::EthAddr randomAddr();
   Pylon::EthAddr randomMask();
   Pylon::EthAddr aimed( const Pylon::EthAddr& addr, const Pylon::EthAddr& mask );
   Fennel::Packet packetOfType( const Pylon::EthAddr& src, const Pylon::EthAddr& dst, U16 type );
   U16 near( const Acl::FieldTerm& term );
   U32 nearIp4( const Pylon::IpAddrWithFullMask& term );
   Pylon::Ip6Addr nearIp6( const Pylon::Ip6AddrWithFullMask& term );
   U8 nearU8( bool term, U8 value, U8 bits );
   void layer4For( const Acl::IpFilterBase* f, U8 proto, Fennel::Packet& p );

   std::mt19937 rng_;
   std::vector<Pylon::EthAddr> addrs_;
   std::vector<U16> etherTypes_;
};

}  // namespace FennelTest
