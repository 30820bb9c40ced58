// IP subrules reach the hardware here: the generic layer splits each IP rule into subrules
// (one source port term, one destination port term, one IP length term each) and calls
// createIpAclSubrule once for every subrule. It fans out to every unit of the ACL; on a unit
// the subrule settles the stage it may use (ipSubruleInit), is checked against the key of its
// group, gets its entries (commonCreateEntry), and its match fields are written into each.
//
// Results: 0; 2 no entries (or no IP length checker); 3 no port range checker; 12 the payload
// failed; 13 the rule cannot stand in the ACL's key. A failing unit does not stop the others;
// the call answers the last failure. Every failure but 3 marks the ACL, the unit and the
// helper dirty and publishes the unit's error. A 3 leaves the ACL dirty on the unit (commit
// keeps away from it) with no unit error: the generic layer answers it itself, with masked
// blocks in place of the range on its next pass.
#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmIpRulesInternal.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

bool matchesVni( Acl::AclType aclType, const Acl::RuleConfig& rule ) {
   return aclType == Acl::AclType::ipv6 ? rule.ip6Filter().matchVni() : rule.ipFilter().matchVni();
}

const Acl::IpFilterBase& filterBaseOf( Acl::AclType aclType, const Acl::RuleConfig& rule ) {
   if ( aclType == Acl::AclType::ipv6 ) {
      return rule.ip6Filter();
   }
   return rule.ipFilter();
}

}  // namespace

Fennel::AclCreateError AclHelper::createIpAclSubrule(
    Acl::AclType aclType, const Acl::RuleConfig& rule, Acl::UniqueId aclId,
    const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, U16 srcL4Port, U16 srcL4PortMask,
    U16 dstL4Port, U16 dstL4PortMask, U16 srcPortLow, U16 srcPortHigh, U16 dstPortLow,
    U16 dstPortHigh, U16 ipLen, U16 ipLenMask, U16 ipLenLow, U16 ipLenHigh, U8 extraTcpFlags,
    bool l4Rule, U8 ecnData, U8 ecnMask ) {
   VTRACE( 1, "AclHelper::createIpAclSubrule( " << aclData->aclName() << ", " << aclType << ", "
                                                << ruleNum << ", " << subruleNum << " )" );
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   if ( !saclData ) {
      return Fennel::aclCreateSuccess;
   }
   // VNI rules are served through createIpAclSubruleForUnit by the code that owns them.
   if ( matchesVni( aclType, rule ) ) {
      return Fennel::aclCreateNotExpressible;
   }
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   for ( const auto& member : saclData->unitData() ) {
      const Fennel::AclCreateError rc = createIpAclSubruleForUnit(
          aclType, member.value(), rule, aclId, aclData, ruleNum, subruleNum, srcL4Port,
          srcL4PortMask, dstL4Port, dstL4PortMask, srcPortLow, srcPortHigh, dstPortLow, dstPortHigh,
          ipLen, ipLenMask, ipLenLow, ipLenHigh, extraTcpFlags, l4Rule, aclFeatureSecurity, ecnData,
          ecnMask );
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   }
   return result;
}

Fennel::AclCreateError AclHelper::createIpAclSubruleForUnit(
    Acl::AclType aclType, const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule,
    Acl::UniqueId aclId, const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, U16 srcL4Port,
    U16 srcL4PortMask, U16 dstL4Port, U16 dstL4PortMask, U16 srcPortLow, U16 srcPortHigh,
    U16 dstPortLow, U16 dstPortHigh, U16 ipLen, U16 ipLenMask, U16 ipLenLow, U16 ipLenHigh,
    U8 tcpFlags, bool l4Rule, HalyardAclFeature feature, U8 ecnData, U8 ecnMask ) {
   const U32 unit = unitData->unit();
   const AclCommonUnitData::Ptr common = unitData->common();
   VESPER_ASSERT( common );
   VESPER_ASSERT(
       getHalyardAclTypeDirectionFeatureSm( aclData->aclType(), aclData->direction(), feature ) );
   VTRACE( 1, "Unit: " << unit << " creating rule " << ruleNum << " subrule " << subruleNum );
   common->ipSubruleInit( rule, aclData->key(), aclId, ruleNum, subruleNum, srcL4Port,
                          srcL4PortMask, dstL4Port, dstL4PortMask, srcPortLow, srcPortHigh,
                          dstPortLow, dstPortHigh, ipLen, ipLenMask, ipLenLow, ipLenHigh );
   Fennel::AclCreateError rc = validateIpAclSubruleForUnit(
       aclType, unitData, rule, aclId, aclData, ruleNum, subruleNum, srcL4Port, srcL4PortMask,
       dstL4Port, dstL4PortMask, srcPortLow, srcPortHigh, dstPortLow, dstPortHigh, ipLen, ipLenMask,
       ipLenLow, ipLenHigh, tcpFlags, l4Rule, feature, ecnData, ecnMask );
   if ( rc != Fennel::aclCreateSuccess ) {
      markUnitFailed( *this, *unitData );
      unitErrorIs( chipNameOf( *this, unit ), rc );
      return rc;
   }
   const Acl::IpFilterBase& filter = filterBaseOf( aclType, rule );
   if ( isMirroringFeature( feature ) && ( filter.vni() != 0 || filter.vniMask() != 0 ) ) {
      // A mirroring group is one plain group: no VNI key, no VFP, no narrow key.
      common->useVniIs( false );
      common->canUseVfpIs( false );
      common->canUseStdIs( false );
   }
   const CommonRuleData::Ptr acquired = commonCreateEntry(
       aclData, unitData, rule, rule.action(), rule.log(), aclId, ruleNum, subruleNum, feature );
   if ( const auto early = acquisitionResult( *acquired ) ) {
      return *early;
   }
   rc = Fennel::aclCreateSuccess;
   for ( const auto& member : acquired->entry() ) {
      const U32 entry = member.key();
      const auto entryManager = Vesper::ptrDynamicCast<HalyardUnboundedTcamEntryManager>(
          tcamGroupManager()->tcamEntryMgr( entry ) );
      VESPER_ASSERT( entryManager );
      const Fennel::AclCreateError entryRc =
          aclType == Acl::AclType::ipv6
              ? common->ip6SubruleProgram(
                    entry, rule.ip6RuleConfig(), aclData->key(), aclId, ruleNum, subruleNum,
                    srcL4Port, srcL4PortMask, dstL4Port, dstL4PortMask, srcPortLow, srcPortHigh,
                    dstPortLow, dstPortHigh, ipLen, ipLenMask, ipLenLow, ipLenHigh, tcpFlags,
                    l4Rule, false, entryManager, ecnData, ecnMask, isMirroringFeature( feature ) )
              : common->ipSubruleProgram(
                    entry, rule.ipRuleConfig(), aclData->key(), aclId, ruleNum, subruleNum,
                    srcL4Port, srcL4PortMask, dstL4Port, dstL4PortMask, srcPortLow, srcPortHigh,
                    dstPortLow, dstPortHigh, ipLen, ipLenMask, ipLenLow, ipLenHigh, tcpFlags,
                    l4Rule, false, entryManager, ecnData, ecnMask, isMirroringFeature( feature ) );
      if ( entryRc == Fennel::aclCreateSuccess ) {
         continue;
      }
      rc = entryRc;
      // The range checker has marked the ACL dirty; the other entries of the subrule are still
      // programmed as far as they go.
      if ( entryRc != Fennel::aclCreateNoRangeChecker ) {
         markUnitFailed( *this, *unitData );
         break;
      }
   }
   if ( rc != Fennel::aclCreateSuccess && rc != Fennel::aclCreateNoRangeChecker ) {
      unitErrorIs( chipNameOf( *this, unit ), rc );
   }
   return rc;
}

// The narrow key of a mirroring group has no address and no layer 4 port field: a rule that
// matches on either cannot stand there (13). Other groups take any rule.
Fennel::AclCreateError AclHelper::validateIpAclSubruleForUnit(
    Acl::AclType aclType, const AclUnitData::Ptr& /*unitData*/, const Acl::RuleConfig& rule,
    Acl::UniqueId /*aclId*/, const AclDataPtr& aclData, U32 /*ruleNum*/, U32 /*subruleNum*/,
    U16 /*srcL4Port*/, U16 srcL4PortMask, U16 /*dstL4Port*/, U16 dstL4PortMask, U16 srcPortLow,
    U16 srcPortHigh, U16 dstPortLow, U16 dstPortHigh, U16 /*ipLen*/, U16 /*ipLenMask*/,
    U16 /*ipLenLow*/, U16 /*ipLenHigh*/, U8 /*tcpFlags*/, bool /*l4Rule*/,
    HalyardAclFeature feature, U8 /*ecnData*/, U8 /*ecnMask*/ ) {
   const TypeDirectionFeatureSmPtr sm =
       getHalyardAclTypeDirectionFeatureSm( aclData->aclType(), aclData->direction(), feature );
   const bool narrow =
       sm && sm->groupManager() && sm->groupManager()->ingressMirrorAclKeyWidthMode() == 1;
   if ( !( isMirroringFeature( feature ) && narrow ) ) {
      return Fennel::aclCreateSuccess;
   }
   bool fits = true;
   if ( aclType == Acl::AclType::ipv6 ) {
      const Acl::Ip6Filter& filter = rule.ip6Filter();
      fits = filter.sourceFullMask().prefixLen().value() == 0 &&
             filter.destinationFullMask().prefixLen().value() == 0 && !filter.matchTni();
   } else {
      const Acl::IpFilter& filter = rule.ipFilter();
      fits = filter.source().mask() == 0 && filter.destination().mask() == 0 && !filter.matchTni();
   }
   fits = fits && srcPortLow == 0 && srcPortHigh == 0 && dstPortLow == 0 && dstPortHigh == 0 &&
          srcL4PortMask == 0 && dstL4PortMask == 0;
   if ( !fits ) {
      VTRACE( 1, "A rule of " << aclData->aclName()
                              << " has terms that the narrow mirroring key lacks" );
      return Fennel::aclCreateNotExpressible;
   }
   return Fennel::aclCreateSuccess;
}

bool AclHelper::ipPortRangeSubruleExists( const AclDataPtrConst& aclData, Acl::UniqueId aclId,
                                          U32 ruleNum, U32 subRule, U16 srcStart, U16 srcEnd,
                                          bool hasSrc, U16 dstStart, U16 dstEnd, bool hasDst ) {
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   if ( !saclData ) {
      return false;
   }
   // The first unit of the agent that holds the subrule answers, from its first entry.
   for ( const auto& member : hcsd()->halyardModId() ) {
      const AclUnitData::Ptr unitData = saclData->unitData( member.key() );
      if ( !unitData || !unitData->common() ) {
         continue;
      }
      const AclRuleData::Ptr rule = unitData->common()->aclRule( ruleNum );
      const AclEntryList::Ptr list = rule ? rule->entryList( subRule ) : nullptr;
      if ( !list || list->entryCount() == 0 ) {
         continue;
      }
      const U32 entry = list->entry().begin()->key();
      return unitData->common()->ipPortRangeSubruleExists( entry, aclData->key(), aclId, ruleNum,
                                                           subRule, srcStart, srcEnd, hasSrc,
                                                           dstStart, dstEnd, hasDst );
   }
   return false;
}

}  // namespace Halyard
