// The match fields of an IPv4 subrule on one entry.
//
// Fragments: layer 4 fields exist only in the first fragment, so a subrule with layer 4
// terms matches unfragmented packets and first fragments only, also when the rule says
// "fragments"; a rule on fragments alone matches the later fragments.
#include "acl/HalyardAclCommon.h"
#include "acl/HalyardAclHelperFpText.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

// IPv6 extension header type 141, which some chips key as an extension header in IPv4 entries.
constexpr U8 extensionHeaderProto = 0x8D;

}  // namespace

Fennel::AclCreateError AclCommonUnitData::ipSubruleProgram(
    U64 entry, const Acl::IpRuleConfig& rule, const Fennel::AclKey& aclKey, Acl::UniqueId aclId,
    U32 ruleNum, U32 /*subRule*/, U16 srcPort, U16 srcPortMask, U16 dstPort, U16 dstPortMask,
    U16 srcStart, U16 srcEnd, U16 dstStart, U16 dstEnd, U16 ipLen, U16 ipLenMask, U16 ipLenStart,
    U16 ipLenEnd, U8 tcpFlags, bool l4Conditions, bool matchVlan,
    const HalyardUnboundedTcamEntryManager::Ptr& entryManager, U8 ecn, U8 ecnMask,
    bool ignoreVni ) {
   const Acl::IpFilter filter = rule.filter();
   // Through the manager, which records the type for later reads (getIpType).
   entryManager->qualifyIpType( unit(), static_cast<U32>( entry ), bcmFieldIpTypeIpv4Any );
   ipSubruleProgramL3Info( entry, aclKey, rule, ecn, ecnMask, ignoreVni );
   const Fennel::AclCreateError rc = programRangeTerms(
       aclKey, entry, aclId, ruleNum, srcPort, srcPortMask, dstPort, dstPortMask, srcStart, srcEnd,
       dstStart, dstEnd, ipLen, ipLenMask, ipLenStart, ipLenEnd, entryManager );
   if ( rc != Fennel::aclCreateSuccess ) {
      return rc;
   }
   const bool frag = filter.fragments() == 1;
   if ( l4Conditions ) {
      VTRACE( 3, "\tL4 Conditions Present, so Matching only Head Fragment" );
      SDK_CHECK( bcm_field_qualify_IpFrag( unit(), entry, bcmFieldIpFragNonOrFirst ) );
      Shim::fpQual( entry, " IpFrag IpFragNonOrFirst" );
   } else if ( frag ) {
      VTRACE( 3, "\tMatch only on NonHead Fragments" );
      SDK_CHECK( bcm_field_qualify_IpFrag( unit(), entry, bcmFieldIpFragNotFirst ) );
      Shim::fpQual( entry, " IpFrag IpFragNotFirst" );
   }
   ipSubruleProgramCommon( Acl::AclType::ip, entry, filter, tcpFlags, matchVlan );
   if ( filter.ttl().op() == Acl::TtlOp::eq ) {
      VTRACE( 3, "\tTTL: " << static_cast<unsigned>( filter.ttl().ttl() ) );
      SDK_CHECK( bcm_field_qualify_Ttl( unit(), entry, filter.ttl().ttl(), 0xFF ) );
      Shim::fpQual( entry, " Ttl ", filter.ttl().ttl(), " 0xFF" );
   }
   return Fennel::aclCreateSuccess;
}

void AclCommonUnitData::ipSubruleProgramL3Info( U64 entry, const Fennel::AclKey& aclKey,
                                                const Acl::IpRuleConfig& rule, U8 ecn, U8 ecnMask,
                                                bool ignoreVni ) {
   const Acl::IpFilter& filter = rule.filter();
   // The type itself was set through the entry manager.
   Shim::fpQual( entry, " IpType IpTypeIpv4Any" );
   if ( filter.proto() != 0 ) {
      const bool extensionHeader =
          chipAttributesForUnit( *tcamGroupManager(), unit() )->protocol141IsExtensionHeader() &&
          filter.proto() == extensionHeaderProto && aclKey.direction() == Acl::AclDirection::in;
      VTRACE( 3, "\tProtocol: " << static_cast<unsigned>( filter.proto() ) );
      if ( extensionHeader ) {
         SDK_CHECK( bcm_field_qualify_ExtensionHeaderType( unit(), entry, filter.proto(), 0xFF ) );
         Shim::fpQual( entry, " ExtensionHeaderType ", filter.proto(), " 0xFF" );
      } else {
         SDK_CHECK( bcm_field_qualify_IpProtocol( unit(), entry, filter.proto(), 0xFF ) );
         Shim::fpQual( entry, " IpProtocol ", filter.proto(), " 0xFF" );
      }
   }
   if ( filter.source().mask() != 0 ) {
      VTRACE( 3, "\tSource IP: " << filter.source() );
      SDK_CHECK( bcm_field_qualify_SrcIp( unit(), entry, filter.source().address().value(),
                                          filter.source().mask() ) );
      Shim::fpQual( entry, " SrcIp ", filter.source().address().value(),
                    FpMask{ filter.source().mask() } );
   }
   programTos( entry, filter, ecn, ecnMask );
   // An entry that already carries a destination (the link-local multicast entry of a router
   // ACL matches 224.0.0.0/24 there) keeps it, and the rule's own destination is left out.
   bcm_ip_t dstIp = 0;
   bcm_ip_t dstIpMask = 0;
   const int rv = SDK_TRACE_RV( bcm_field_qualify_DstIp_get( unit(), entry, &dstIp, &dstIpMask ) );
   if ( filter.destination().mask() != 0 && rv == BCM_E_NONE && dstIp == 0 && dstIpMask == 0 ) {
      VTRACE( 3, "\tDest IP: " << filter.destination() );
      SDK_CHECK( bcm_field_qualify_DstIp( unit(), entry, filter.destination().address().value(),
                                          filter.destination().mask() ) );
      Shim::fpQual( entry, " DstIp ", filter.destination().address().value(),
                    FpMask{ filter.destination().mask() } );
   }
   programVni( entry, filter, ignoreVni );
}

// The SDK's TOS qualifier takes the whole byte: DSCP in the high six bits, ECN in the low two.
void AclCommonUnitData::programTos( U64 entry, const Acl::IpFilter& filter, U8 ecn, U8 ecnMask ) {
   if ( ecnMask != 0 ) {
      VTRACE( 3, "\tECN: " << static_cast<unsigned>( ecn ) );
   }
   U8 tos = 0;
   U8 mask = 0;
   if ( filter.matchDscp() ) {
      VTRACE( 3, "\tDSCP: " << static_cast<unsigned>( filter.dscp() ) );
      tos = static_cast<U8>( filter.dscp() * 4 + ecn );
      mask = static_cast<U8>( ecnMask | 0xFC );
   } else if ( ecnMask != 0 ) {
      tos = ecn;
      mask = ecnMask;
   } else {
      return;
   }
   SDK_CHECK( bcm_field_qualify_DSCP( unit(), entry, tos, mask ) );
   Shim::fpQual( entry, " TOS 0x", Shim::FpHex{ tos, 2 }, " 0x", Shim::FpHex{ mask, 2 } );
}

void AclCommonUnitData::programVni( U64 entry, const Acl::IpFilterBase& filter, bool ignoreVni ) {
   if ( !filter.matchVni() || ignoreVni ) {
      return;
   }
   VTRACE( 3, "\tVxLAN VNI: " << filter.vni() << " vniMask: " << filter.vniMask() );
   SDK_CHECK( bcm_field_qualify_VxlanNetworkId( unit(), entry, filter.vni(), filter.vniMask() ) );
   Shim::fpQual( entry, " VxlanNetworkId ", filter.vni(), FpMask{ filter.vniMask() } );
}

}  // namespace Halyard
