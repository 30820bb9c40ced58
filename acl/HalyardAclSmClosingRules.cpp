// The rules that the generic layer adds around the configured ones:
//
//  - the fragment rule of a permit with layer 4 terms. Its subrules match unfragmented
//    packets and first fragments only (layer 4 fields exist only there); the fragment rule
//    lets the later fragments that match the rule's layer 3 terms take the same action.
//  - the closing rule of an ACL, in the rule number after the last: a deny of everything of
//    the ACL's type, and for an IPv6 ACL with the default ICMPv6 permits, a permit of ICMPv6
//    ahead of it, so that neighbour discovery passes whatever the rules say.
//
// Both closing entries of an IPv6 ACL stand in the one rule record of the closing rule
// number, under the drop rule's id (dropEntryAclId): the deny in subrule 0, which
// verification reads as the drop-all rule, the permit in subrule 1. The permit is acquired
// first, so that it stands ahead of the deny in its group. Results as for subrules: 2, 12.
#include <netinet/in.h>

#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclSmIpRulesInternal.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

constexpr U32 dropSubrule = 0;
constexpr U32 icmp6PermitSubrule = 1;

// A rule of the ACL's type that matches every packet of the type, with the action.
Acl::RuleConfig closingRuleOf( Acl::AclType aclType, Acl::Action action, Acl::UniqueId id ) {
   Acl::RuleConfig rule;
   if ( aclType == Acl::AclType::ipv6 ) {
      rule = Acl::RuleConfig( Acl::Ip6RuleConfig() );
   } else if ( aclType == Acl::AclType::mac ) {
      rule = Acl::RuleConfig( Acl::MacRuleConfig() );
   }
   rule.actionIs( action );
   rule.uniqueIdIs( id );
   return rule;
}

Fennel::AclCreateError mergedResult( Fennel::AclCreateError running, Fennel::AclCreateError rc ) {
   return rc != Fennel::aclCreateSuccess ? rc : running;
}

// The entries of one of the closing rules on the unit, with the IP type of the ACL and, on the
// permit, ICMPv6.
Fennel::AclCreateError closingEntriesIs( AclHelper& helper, const AclHelper::AclDataPtr& aclData,
                                         const AclUnitData::Ptr& unitData, Acl::AclType aclType,
                                         Acl::Action action, U32 ruleNum, U32 subRuleNum,
                                         HalyardAclFeature feature ) {
   const U32 unit = unitData->unit();
   const Acl::UniqueId dropId = unitData->dropEntryAclId();
   const CommonRuleData::Ptr acquired =
       helper.commonCreateEntry( aclData, unitData, closingRuleOf( aclType, action, dropId ),
                                 action, false, dropId, ruleNum, subRuleNum, feature );
   if ( const auto early = acquisitionResult( *acquired ) ) {
      return *early;
   }
   for ( const auto& member : acquired->entry() ) {
      const U32 entry = member.key();
      if ( aclType == Acl::AclType::ipv6 ) {
         SDK_CHECK_SPINDLE( bcm_field_qualify_IpType( unit, entry, bcmFieldIpTypeIpv6 ) );
         Shim::fpQual( entry, " IpType IpTypeIpv6" );
         if ( action == Acl::Action::permit ) {
            SDK_CHECK_SPINDLE( bcm_field_qualify_IpProtocol( unit, entry, IPPROTO_ICMPV6, 0xFF ) );
            Shim::fpQual( entry, " IpProtocol ", U8( IPPROTO_ICMPV6 ), " 0xFF" );
         }
      } else if ( aclType == Acl::AclType::ip ) {
         const HalyardTcamEntryManager::Ptr entryManager =
             helper.tcamGroupManager()->tcamEntryMgr( entry );
         VESPER_ASSERT( entryManager );
         entryManager->qualifyIpType( unit, entry, bcmFieldIpTypeIpv4Any );
         Shim::fpQual( entry, " IpType IpTypeIpv4Any" );
      }
   }
   return Fennel::aclCreateSuccess;
}

}  // namespace

Fennel::AclCreateError AclHelper::createIpFragRule( const AclDataPtr& aclData,
                                                    const Acl::RuleConfig& rule,
                                                    Acl::UniqueId aclId, U32 ruleNum,
                                                    U32 subRuleNum ) {
   VTRACE( 1, "AclHelper::createIpFragRule( " << aclData->aclName() << ", " << ruleNum << ", "
                                              << subRuleNum << " )" );
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   if ( !saclData ) {
      return Fennel::aclCreateSuccess;
   }
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   for ( const auto& member : saclData->unitData() ) {
      result = mergedResult( result,
                             createIpFragRuleForUnit( aclData, member.value(), rule, aclId, ruleNum,
                                                      subRuleNum, aclFeatureSecurity ) );
   }
   return result;
}

// The layer 3 terms of the rule, on later fragments only. An IPv6 rule is keyed as its
// subrules are, with the IPv6 type.
Fennel::AclCreateError AclHelper::createIpFragRuleForUnit(
    const AclDataPtr& aclData, const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule,
    Acl::UniqueId aclId, U32 ruleNum, U32 subRuleNum, HalyardAclFeature feature ) {
   const U32 unit = unitData->unit();
   const AclCommonUnitData::Ptr common = unitData->common();
   VESPER_ASSERT( common );
   if ( !common->aclRule( ruleNum ) ) {
      common->aclRuleCreate( aclId, ruleNum, false );
   }
   const CommonRuleData::Ptr acquired = commonCreateEntry(
       aclData, unitData, rule, rule.action(), rule.log(), aclId, ruleNum, subRuleNum, feature );
   if ( const auto early = acquisitionResult( *acquired ) ) {
      return *early;
   }
   const bool ignoreVni = isMirroringFeature( feature );
   for ( const auto& member : acquired->entry() ) {
      const U32 entry = member.key();
      const auto entryManager = Vesper::ptrDynamicCast<HalyardUnboundedTcamEntryManager>(
          tcamGroupManager()->tcamEntryMgr( entry ) );
      VESPER_ASSERT( entryManager );
      if ( aclData->aclType() == Acl::AclType::ipv6 ) {
         common->ip6SubruleProgramL3Info( entry, common->aclRule( ruleNum ), rule.ip6RuleConfig(),
                                          ignoreVni );
      } else {
         entryManager->qualifyIpType( unit, entry, bcmFieldIpTypeIpv4Any );
         common->ipSubruleProgramL3Info( entry, aclData->key(), rule.ipRuleConfig(), 0, 0,
                                         ignoreVni );
      }
      SDK_CHECK_SPINDLE( bcm_field_qualify_IpFrag( unit, entry, bcmFieldIpFragNotFirst ) );
      Shim::fpQual( entry, " IpFrag IpFragNotFirst" );
   }
   common->aclRule( ruleNum )->hasPermitFragmentRuleIs( true );
   return Fennel::aclCreateSuccess;
}

Fennel::AclCreateError AclHelper::createFinalAclRule( Acl::AclType aclType,
                                                      const AclDataPtr& aclData, U32 ruleNum ) {
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   VESPER_ASSERT( saclData != nullptr );
   return createFinalAclRuleForUnit( aclType, aclData, saclData, ruleNum, aclFeatureSecurity );
}

Fennel::AclCreateError AclHelper::createFinalAclRuleForUnit( Acl::AclType aclType,
                                                             const AclDataPtr& aclData,
                                                             const HalyardAclData::Ptr& saclData,
                                                             U32 ruleNum,
                                                             HalyardAclFeature feature ) {
   VTRACE( 1, "AclHelper::createFinalAclRule( " << aclData->aclName() << ", " << ruleNum << " )" );
   const bool icmp6Permit =
       aclType == Acl::AclType::ipv6 &&
       aclParamConfig()->permitIcmp6TypesConfig() == Acl::PermitIcmp6TypesConfig::defaultTypes;
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr& unitData = member.value();
      const AclCommonUnitData::Ptr common = unitData->common();
      VESPER_ASSERT( common );
      // A pass that did not get as far as commit leaves the closing rule in place; the next
      // pass takes it over under its id.
      const AclRuleData::Ptr standing = common->aclRule( ruleNum );
      const Acl::UniqueId dropId = standing && standing->aclId() == unitData->dropEntryAclId()
                                       ? unitData->dropEntryAclId()
                                       : Acl::UniqueId::next();
      unitData->dropEntryAclIdIs( dropId );
      common->aclRuleCreate( dropId, ruleNum, true );
      if ( icmp6Permit ) {
         VTRACE( 1, "Setting IPv6 ICMP ACL (implicit permit) entries " );
         result = mergedResult(
             result, closingEntriesIs( *this, aclData, unitData, aclType, Acl::Action::permit,
                                       ruleNum, icmp6PermitSubrule, feature ) );
      }
      VTRACE( 1, "Unit: " << unitData->unit() << " creating final drop rule" );
      result = mergedResult(
          result, closingEntriesIs( *this, aclData, unitData, aclType, Acl::Action::deny, ruleNum,
                                    dropSubrule, feature ) );
   }
   return result;
}

bool AclHelper::needToInstallIcmp6NeighborDiscoveryRules() {
   VTRACE( 1, "AclHelper::needToInstallIcmp6NeighborDiscoveryRules" );
   return aclParamConfig()->permitIcmp6TypesConfig() ==
          Acl::PermitIcmp6TypesConfig::neighborDiscovery;
}

}  // namespace Halyard
