// The match fields of an IPv6 subrule on one entry.
//
// Addresses. A VFP entry keys the upper 64 bits of an address only, and so does the narrow
// key of key width mode 1 (useIpv6High): there the High qualifiers are used, and the subrule
// init keeps prefixes above 64 bits out of VFP. The qualifiers get the whole 16 bytes of
// address and mask in every case; only the field they land in differs. A source on a
// standard (narrow) VFP entry is keyed whole; a destination on any VFP entry is keyed high.
#include <algorithm>

#include "acl/HalyardAclCommon.h"
#include "acl/HalyardAclHelperFpText.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

// One address term as the SDK takes it.
struct Ip6Term {
   bcm_ip6_t addr = {};
   bcm_ip6_t mask = {};
   U8 len = 0;
};

// A mask that is no plain prefix is taken as it stands, with the invalid prefix length; a
// prefix is rebuilt from its length.
Ip6Term ip6TermOf( const Pylon::Ip6AddrWithMask& prefix, const Pylon::Ip6AddrWithFullMask& full ) {
   Ip6Term term;
   const Pylon::Ip6PrefixLen fullLen = full.prefixLen();
   if ( prefix.len() != fullLen ) {
      std::copy_n( full.address().bytes().begin(), 16, term.addr );
      std::copy_n( full.mask().bytes().begin(), 16, term.mask );
      term.len = fullLen.value();
      return term;
   }
   std::copy_n( prefix.address().bytes().begin(), 16, term.addr );
   term.len = prefix.len().value();
   const U8 wholeBytes = term.len / 8;
   std::fill_n( term.mask, wholeBytes, U8( 0xFF ) );
   if ( term.len % 8 != 0 ) {
      term.mask[wholeBytes] = static_cast<U8>( 0xFF << ( 8 - term.len % 8 ) );
   }
   return term;
}

void fpQualIp6( U64 entry, const char* name, const bcm_ip6_t& addr, const bcm_ip6_t& mask ) {
   Shim::fpQual( entry, name, Shim::FpHexBytes{ addr, 16 }, " 0x", Shim::FpHexBytes{ mask, 16 } );
}

}  // namespace

Fennel::AclCreateError AclCommonUnitData::ip6SubruleProgram(
    U64 entry, const Acl::Ip6RuleConfig& rule, const Fennel::AclKey& aclKey, Acl::UniqueId aclId,
    U32 ruleNum, U32 /*subRule*/, U16 srcPort, U16 srcPortMask, U16 dstPort, U16 dstPortMask,
    U16 srcStart, U16 srcEnd, U16 dstStart, U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart,
    U16 ipLenEnd, U8 tcpFlags, bool /*l4Conditions*/, bool matchVlan,
    const HalyardUnboundedTcamEntryManager::Ptr& entryManager, U8 ecn, U8 ecnMask,
    bool ignoreVni ) {
   const Acl::Ip6Filter filter = rule.filter();
   ip6SubruleProgramL3Info( entry, aclRule( ruleNum ), rule, ignoreVni );
   const Fennel::AclCreateError rc = programRangeTerms(
       aclKey, entry, aclId, ruleNum, srcPort, srcPortMask, dstPort, dstPortMask, srcStart, srcEnd,
       dstStart, dstEnd, ipLen, ipLenMask, ipLenStart, ipLenEnd, entryManager );
   if ( rc != Fennel::aclCreateSuccess ) {
      return rc;
   }
   ipSubruleProgramCommon( Acl::AclType::ipv6, entry, filter, tcpFlags, matchVlan );
   if ( filter.ttl().op() == Acl::TtlOp::eq ) {
      VTRACE( 3, "\tTTL: " << static_cast<unsigned>( filter.ttl().ttl() ) );
      SDK_CHECK( bcm_field_qualify_Ip6HopLimit( unit(), entry, filter.ttl().ttl(), 0xFF ) );
      Shim::fpQual( entry, " Ip6HopLimit ", filter.ttl().ttl(), " 0xFF" );
   }
   // The traffic class byte: the rule's class (DSCP) over the subrule's ECN bits.
   U8 tc = ecn;
   U8 mask = ecnMask;
   if ( ecnMask != 0 ) {
      VTRACE( 3, "\tECN: " << static_cast<unsigned>( ecn ) << " entry: " << entry );
   }
   if ( filter.trafficClassMask() != 0 ) {
      VTRACE( 3,
              "\tDSCP: " << static_cast<unsigned>( filter.trafficClass() ) << " entry: " << entry );
      mask = static_cast<U8>( ecnMask | filter.trafficClassMask() );
      tc = static_cast<U8>( tc + filter.trafficClass() );
   }
   if ( mask != 0 ) {
      SDK_CHECK( bcm_field_qualify_Ip6TrafficClass( unit(), entry, tc, mask ) );
      Shim::fpQual( entry, " TC 0x", Shim::FpHex{ tc, 2 }, " 0x", Shim::FpHex{ mask, 2 } );
   }
   return Fennel::aclCreateSuccess;
}

void AclCommonUnitData::ip6SubruleProgramL3Info( U64 entry, const AclRuleData::Ptr& ruleData,
                                                 const Acl::Ip6RuleConfig& rule, bool ignoreVni ) {
   const Acl::Ip6Filter& filter = rule.filter();
   // Set directly: nothing reads the IPv6 type back through the manager.
   SDK_CHECK( bcm_field_qualify_IpType( unit(), entry, bcmFieldIpTypeIpv6 ) );
   Shim::fpQual( entry, " IpType IpTypeIpv6" );
   if ( filter.proto() != 0 ) {
      VTRACE( 3, "\tproto: " << static_cast<unsigned>( filter.proto() ) );
      SDK_CHECK( bcm_field_qualify_IpProtocol( unit(), entry, filter.proto(), 0xFF ) );
      Shim::fpQual( entry, " IpProtocol ", filter.proto(), " 0xFF" );
   }
   programIp6Address( entry, ruleData, filter, true );
   programIp6Address( entry, ruleData, filter, false );
   programVni( entry, filter, ignoreVni );
}

void AclCommonUnitData::programIp6Address( U64 entry, const AclRuleData::Ptr& ruleData,
                                           const Acl::Ip6Filter& filter, bool source ) {
   const Pylon::Ip6AddrWithMask prefix = source ? filter.source() : filter.destination();
   const Pylon::Ip6AddrWithFullMask& full =
       source ? filter.sourceFullMask() : filter.destinationFullMask();
   VTRACE( 3, ( source ? "\tSrc Prefix Lengths: " : "\tDest Prefix Lengths: " )
                  << prefix.len() << " " << full.prefixLen() );
   const Ip6Term term = ip6TermOf( prefix, full );
   if ( term.len == 0 ) {
      return;
   }
   const bool fromVfp = ruleData->entryFromVfp( static_cast<U32>( entry ) );
   if ( source ) {
      VTRACE( 3, "\tSource IP: " << full );
      const bool high = !fromVfp || canUseStd() ? useIpv6High() : true;
      bcm_ip6_t srcAddr;
      bcm_ip6_t srcMask;
      std::copy_n( term.addr, 16, srcAddr );
      std::copy_n( term.mask, 16, srcMask );
      if ( high ) {
         SDK_CHECK( bcm_field_qualify_SrcIp6High( unit(), entry, srcAddr, srcMask ) );
         fpQualIp6( entry, " SrcIp6High 0x", srcAddr, srcMask );
      } else {
         SDK_CHECK( bcm_field_qualify_SrcIp6( unit(), entry, srcAddr, srcMask ) );
         fpQualIp6( entry, " SrcIp6 0x", srcAddr, srcMask );
      }
      return;
   }
   VTRACE( 3, "\tDest IP: " << full );
   const bool high = fromVfp || useIpv6High();
   bcm_ip6_t dstAddr;
   bcm_ip6_t dstMask;
   std::copy_n( term.addr, 16, dstAddr );
   std::copy_n( term.mask, 16, dstMask );
   if ( high ) {
      SDK_CHECK( bcm_field_qualify_DstIp6High( unit(), entry, dstAddr, dstMask ) );
      fpQualIp6( entry, " DstIp6High 0x", dstAddr, dstMask );
   } else {
      SDK_CHECK( bcm_field_qualify_DstIp6( unit(), entry, dstAddr, dstMask ) );
      fpQualIp6( entry, " DstIp6 0x", dstAddr, dstMask );
   }
}

}  // namespace Halyard
