// What the IP subrules of both families share: the stage decision made before a subrule's
// entries exist, the three range terms, and the fields keyed alike in IPv4 and IPv6 entries
// (protocol with ICMP type and code, TCP flags, VLAN).
#include "acl/HalyardAclCommon.h"
#include "acl/HalyardAclHelper.h"
#include "acl/HalyardAclHelperFpText.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

constexpr U8 icmpProto = 1;
constexpr U8 icmp6Proto = 58;
constexpr U8 tcpProto = 6;
// A VFP key holds the upper 64 bits of an IPv6 address.
const Pylon::Ip6PrefixLen vfpPrefixLenMax( 64 );

bool longPrefix( const Acl::Ip6Filter& filter ) {
   return vfpPrefixLenMax < filter.source().len() || vfpPrefixLenMax < filter.destination().len() ||
          vfpPrefixLenMax < filter.sourceFullMask().prefixLen() ||
          vfpPrefixLenMax < filter.destinationFullMask().prefixLen();
}

}  // namespace

void AclCommonUnitData::ipSubruleInit( const Acl::RuleConfig& rule, const Fennel::AclKey& aclKey,
                                       Acl::UniqueId aclId, U32 ruleNum, U32 /*subRule*/,
                                       U16 /*srcPort*/, U16 srcPortMask, U16 /*dstPort*/,
                                       U16 dstPortMask, U16 srcStart, U16 srcEnd, U16 dstStart,
                                       U16 dstEnd, U16 /*ipLen*/, U16 ipLenMask, U16 ipLenStart,
                                       U16 ipLenEnd ) {
   if ( !aclRule( ruleNum ) ) {
      aclRuleCreate( aclId, ruleNum, false );
   }
   // VFP entries have no range checkers, and the ACL's rules must not leave VFP and come back:
   // a rule after one in IFP must not stand ahead of it in an earlier stage.
   const bool needsChecker = useRangeChecker( srcPortMask, srcStart, srcEnd ) ||
                             useRangeChecker( dstPortMask, dstStart, dstEnd ) ||
                             verifyIpLenRangeChecker( ipLenMask, ipLenStart, ipLenEnd );
   if ( needsChecker && canUseVfp() ) {
      VTRACE( 1, "Unit: " << unit() << " "
                          << "No more VFP for " << aclKey.aclName() << ": need range checker" );
      canUseVfpIs( false );
   }
   if ( !needsChecker && canUseVfp() && aclKey.aclType() == Acl::AclType::ipv6 ) {
      if ( canUseStd() ) {
         return;
      }
      if ( longPrefix( rule.ip6Filter() ) ) {
         VTRACE( 1, "Unit: " << unit() << " "
                             << "No more VFP for " << aclKey.aclName() << ": long prefix address" );
         canUseVfpIs( false );
      }
   }
   if ( aclKey.aclType() == Acl::AclType::ip ) {
      const Acl::IpFilter& filter = rule.ipFilter();
      if ( !( filter.payload() == Acl::PayloadSpec() ) ) {
         VTRACE( 2, "Found UDF payload in IP ACL" );
         canUseVfpIs( false );
      }
      if ( filter.matchVni() ) {
         canUseVfpIs( false );
         canUseStdIs( false );
         useVniIs( true );
      }
   }
}

Fennel::AclCreateError AclCommonUnitData::programRangeTerms(
    const Fennel::AclKey& aclKey, U64 entry, Acl::UniqueId aclId, U32 ruleNum, U16 srcPort,
    U16 srcPortMask, U16 dstPort, U16 dstPortMask, U16 srcStart, U16 srcEnd, U16 dstStart,
    U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart, U16 ipLenEnd,
    const HalyardUnboundedTcamEntryManager::Ptr& entryManager ) {
   Fennel::AclCreateError rc = createPortRangeChecker(
       aclKey, entry, true, aclId, ruleNum, srcPort, srcPortMask, srcStart, srcEnd, entryManager );
   if ( rc != Fennel::aclCreateSuccess ) {
      VTRACE( 1, "Unit: " << unit() << " "
                          << "\tFailed to create src port range checker for src [" << srcStart
                          << ", " << srcEnd << "]" );
      return rc;
   }
   rc = createPortRangeChecker( aclKey, entry, false, aclId, ruleNum, dstPort, dstPortMask,
                                dstStart, dstEnd, entryManager );
   if ( rc != Fennel::aclCreateSuccess ) {
      VTRACE( 1, "Unit: " << unit() << " "
                          << "\tFailed to create dst port range checker for ports [" << dstStart
                          << ", " << dstEnd << "]" );
      return rc;
   }
   rc = createIpLenRangeChecker( aclKey, entry, aclId, ruleNum, ipLen, ipLenMask, ipLenStart,
                                 ipLenEnd, entryManager );
   if ( rc != Fennel::aclCreateSuccess ) {
      VTRACE( 1, "Unit: " << unit() << " "
                          << "\tFailed to create iplen range checker for IP Lengths [" << ipLenStart
                          << ", " << ipLenEnd << "]" );
   }
   return rc;
}

void AclCommonUnitData::ipSubruleProgramCommon( Acl::AclType /*type*/, U64 entry,
                                                const Acl::IpFilterBase& filter, U8 tcpFlags,
                                                bool matchVlan ) {
   const U8 ipProtocol = filter.proto();
   if ( ipProtocol == icmpProto || ipProtocol == icmp6Proto ) {
      SDK_CHECK( bcm_field_qualify_IpProtocol( unit(), entry, ipProtocol, 0xFF ) );
      Shim::fpQual( entry, " IpProtocol ", ipProtocol, " 0xFF" );
      if ( filter.icmpType() != Acl::icmpAny ) {
         // The chip keys ICMP type and code in the source port field, type in the high byte.
         VTRACE( 3, "\tICMP Type: " << filter.icmpType() );
         U16 icmpData = static_cast<U16>( filter.icmpType() << 8 );
         U16 icmpMask = 0xFF00;
         if ( filter.icmpCode() != Acl::icmpAny ) {
            VTRACE( 3, "\tICMP Code: " << filter.icmpCode() );
            icmpData = static_cast<U16>( icmpData | filter.icmpCode() );
            icmpMask = 0xFFFF;
         }
         SDK_CHECK( bcm_field_qualify_L4SrcPort( unit(), entry, icmpData, icmpMask ) );
         Shim::fpQual( entry, " L4SrcPort ", icmpData, FpMask{ icmpMask } );
      }
   }
   if ( ipProtocol == tcpProto ) {
      // No flags gives data 0 under mask 0, which matches every packet.
      VTRACE( 3, "\tTCP Flags: " << std::hex << static_cast<unsigned>( tcpFlags ) );
      SDK_CHECK( bcm_field_qualify_TcpControl( unit(), entry, tcpFlags, tcpFlags ) );
      Shim::fpQual( entry, " TcpControl 0x", Shim::FpHex{ tcpFlags } );
   }
   if ( filter.vlanMask() != 0 && matchVlan ) {
      SDK_CHECK( bcm_field_qualify_OuterVlanId( unit(), entry, filter.vlan(), filter.vlanMask() ) );
      Shim::fpQual( entry, " Vlan ", filter.vlan(), FpMask{ filter.vlanMask() } );
   }
}

void AclCommonUnitData::addOuterVlanIdQualifier( U32 unit, U64 entry, U32 vlanId, U32 vlanMask ) {
   VTRACE( 3, __func__ << " unit: " << unit << " entry: " << entry << std::hex
                       << " vlanId: " << vlanId << " vlanMask: " << vlanMask );
   SDK_CHECK( bcm_field_qualify_OuterVlanId( unit, entry, vlanId, vlanMask ) );
   Shim::fpQual( entry, " Vlan ", vlanId, FpMask{ vlanMask } );
}

}  // namespace Halyard
