// The match part of an IPv4 or IPv6 rule, as configured.
//
// IpFilterBase holds what both families share; IpFilter (IPv4) and
// Ip6Filter (IPv6) add addresses and the family's class-of-service field.
// Defaults match every packet of the family: protocol 0 (any), terms `any`,
// masks 0, ICMP type and code 0xFFFF (any), no VNI, TNI, TTL, DSCP or
// payload term.
//
// Invariants: vni() and tni() are at most 16777215 (24 bits); a larger
// value throws Vesper::RangeException "IpFilterBase::vni < 0 or > 16777215
// not allowed" (or "... ::tni ..."). DSCP is at most 63.
#pragma once

#include "platform/acl/FieldTerm.h"
#include "platform/acl/PayloadSpec.h"
#include "platform/acl/TtlSpec.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/vesper/Types.h"

namespace Acl {

// TCP control bits, as the TCP header and the SDK's TcpControl qualifier
// number them.
inline constexpr U8 tcpFlagFin = 0x01;
inline constexpr U8 tcpFlagSyn = 0x02;
inline constexpr U8 tcpFlagRst = 0x04;
inline constexpr U8 tcpFlagPsh = 0x08;
inline constexpr U8 tcpFlagAck = 0x10;
inline constexpr U8 tcpFlagUrg = 0x20;

// The value of icmpType() and icmpCode() that matches any.
inline constexpr U16 icmpAny = 0xFFFF;

class IpFilterBase {
 public:
   static constexpr U32 maxVni = 16777215;
   static constexpr U32 maxTni = 16777215;

   // IP protocol (IPv6 next header); 0 matches any.
   U8 proto() const { return proto_; }
   void protoIs( U8 proto ) { proto_ = proto; }

   const FieldTerm& srcPort() const { return srcPort_; }
   void srcPortIs( const FieldTerm& term ) { srcPort_ = term; }
   const FieldTerm& dstPort() const { return dstPort_; }
   void dstPortIs( const FieldTerm& term ) { dstPort_ = term; }
   // The IP length (IPv4 total length, IPv6 payload length).
   const FieldTerm& ipLength() const { return ipLength_; }
   void ipLengthIs( const FieldTerm& term ) { ipLength_ = term; }

   // TCP control bits that must be set (tcpFlag... constants); 0 is none.
   U8 tcpFlags() const { return tcpFlags_; }
   void tcpFlagsIs( U8 flags ) { tcpFlags_ = flags; }

   // ICMP (ICMPv6) type and code; icmpAny matches any.
   U16 icmpType() const { return icmpType_; }
   void icmpTypeIs( U16 type ) { icmpType_ = type; }
   U16 icmpCode() const { return icmpCode_; }
   void icmpCodeIs( U16 code ) { icmpCode_ = code; }

   const TtlSpec& ttl() const { return ttl_; }
   void ttlIs( const TtlSpec& ttl ) { ttl_ = ttl; }

   // The outer VLAN; a mask of 0 means no VLAN term.
   U16 vlan() const { return vlan_; }
   U16 vlanMask() const { return vlanMask_; }
   void vlanIs( U16 vlan, U16 mask ) {
      vlan_ = vlan;
      vlanMask_ = mask;
   }

   // The two low bits of the class-of-service byte; a mask of 0 means none.
   U8 ecn() const { return ecn_; }
   U8 ecnMask() const { return ecnMask_; }
   void ecnIs( U8 ecn, U8 mask ) {
      ecn_ = ecn;
      ecnMask_ = mask;
   }

   // VXLAN network identifier; matchVni() says that the rule matches on it.
   U32 vni() const { return vni_; }
   U32 vniMask() const { return vniMask_; }
   bool matchVni() const { return matchVni_; }
   void vniIs( S64 vni, U32 mask = maxVni );
   void vniDel();

   // Tenant network identifier of NVGRE; matchTni() says that the rule
   // matches on it.
   U32 tni() const { return tni_; }
   U32 tniMask() const { return tniMask_; }
   bool matchTni() const { return matchTni_; }
   void tniIs( S64 tni, U32 mask = maxTni );
   void tniDel();

   const PayloadSpec& payload() const { return payload_; }
   void payloadIs( const PayloadSpec& payload ) { payload_ = payload; }

   friend bool operator==( const IpFilterBase&, const IpFilterBase& ) = default;

 private:
   U8 proto_ = 0;
   FieldTerm srcPort_;
   FieldTerm dstPort_;
   FieldTerm ipLength_;
   U8 tcpFlags_ = 0;
   U16 icmpType_ = icmpAny;
   U16 icmpCode_ = icmpAny;
   TtlSpec ttl_;
   U16 vlan_ = 0;
   U16 vlanMask_ = 0;
   U8 ecn_ = 0;
   U8 ecnMask_ = 0;
   U32 vni_ = 0;
   U32 vniMask_ = 0;
   bool matchVni_ = false;
   U32 tni_ = 0;
   U32 tniMask_ = 0;
   bool matchTni_ = false;
   PayloadSpec payload_;
};

class IpFilter : public IpFilterBase {
 public:
   static constexpr U8 maxDscp = 63;

   // A mask of 0 matches any address.
   const Pylon::IpAddrWithFullMask& source() const { return source_; }
   void sourceIs( const Pylon::IpAddrWithFullMask& source ) { source_ = source; }
   const Pylon::IpAddrWithFullMask& destination() const { return destination_; }
   void destinationIs( const Pylon::IpAddrWithFullMask& destination ) {
      destination_ = destination;
   }

   // 1: the rule matches only fragments that are not the first ("fragments").
   U8 fragments() const { return fragments_; }
   void fragmentsIs( U8 fragments ) { fragments_ = fragments; }

   // The six high bits of the TOS byte; matchDscp() says that the rule
   // matches on it. Throws Vesper::RangeException
   // "IpFilter::dscp > 63 not allowed".
   U8 dscp() const { return dscp_; }
   bool matchDscp() const { return matchDscp_; }
   void dscpIs( S64 dscp );
   void dscpDel();

   friend bool operator==( const IpFilter&, const IpFilter& ) = default;

 private:
   Pylon::IpAddrWithFullMask source_;
   Pylon::IpAddrWithFullMask destination_;
   U8 fragments_ = 0;
   U8 dscp_ = 0;
   bool matchDscp_ = false;
};

// IPv6 addresses are kept in their full-mask form. The prefix form,
// source() and destination(), is derived: the address with the mask's
// prefix length when the mask is a plain prefix, else the address with
// length 0. So the two forms' prefix lengths differ exactly when the mask is
// no prefix (its prefix length is then Ip6PrefixLen::invalid), which is how
// a reader tells that it must use the full mask.
class Ip6Filter : public IpFilterBase {
 public:
   Pylon::Ip6AddrWithMask source() const { return prefixForm( sourceFullMask_ ); }
   Pylon::Ip6AddrWithMask destination() const { return prefixForm( destinationFullMask_ ); }
   const Pylon::Ip6AddrWithFullMask& sourceFullMask() const { return sourceFullMask_; }
   const Pylon::Ip6AddrWithFullMask& destinationFullMask() const { return destinationFullMask_; }
   void sourceIs( const Pylon::Ip6AddrWithMask& source ) {
      sourceFullMask_ = Pylon::Ip6AddrWithFullMask( source );
   }
   void sourceIs( const Pylon::Ip6AddrWithFullMask& source ) { sourceFullMask_ = source; }
   void destinationIs( const Pylon::Ip6AddrWithMask& destination ) {
      destinationFullMask_ = Pylon::Ip6AddrWithFullMask( destination );
   }
   void destinationIs( const Pylon::Ip6AddrWithFullMask& destination ) {
      destinationFullMask_ = destination;
   }

   // The whole traffic class byte (DSCP in the high six bits); a mask of 0
   // means no term. ECN terms are kept in ecn() and ecnMask() of the base.
   U8 trafficClass() const { return trafficClass_; }
   U8 trafficClassMask() const { return trafficClassMask_; }
   void trafficClassIs( U8 trafficClass, U8 mask ) {
      trafficClass_ = trafficClass;
      trafficClassMask_ = mask;
   }

   friend bool operator==( const Ip6Filter&, const Ip6Filter& ) = default;

 private:
   static Pylon::Ip6AddrWithMask prefixForm( const Pylon::Ip6AddrWithFullMask& full );

   Pylon::Ip6AddrWithFullMask sourceFullMask_;
   Pylon::Ip6AddrWithFullMask destinationFullMask_;
   U8 trafficClass_ = 0;
   U8 trafficClassMask_ = 0;
};

}  // namespace Acl
