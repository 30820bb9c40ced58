// GenericAclSm: the application of one ACL, in the order the back-end depends on: destroyAcl
// where rules were created before, precreateAcl, the rules in rising sequence number with dense
// rule numbers, the neighbour discovery permits, createFinalAclRule.
#include <string>

#include "fennel/GenericAclSm.h"
#include "fennel/GenericAclSmPass.h"
#include "fennel/RuleChecks.h"
#include "fennel/Subrules.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Fennel::GenericAclSm" )

namespace Fennel {

namespace {

using Acl::AclType;

constexpr U8 protoIcmp6 = 58;

std::string errorName( AclCreateError error ) {
   switch ( error ) {
      case aclCreateSuccess:
         return "success";
      case aclCreateNoEntries:
         return "no TCAM entries";
      case aclCreateNoRangeChecker:
         return "no range checker";
      case aclCreateUdfError:
         return "payload (UDF) programming failed";
      case aclCreateNotExpressible:
         return "not expressible in the ACL's key";
   }
   return "error " + std::to_string( static_cast<U32>( error ) );
}

// The rule the fragment entry is made from: later fragments carry no payload at the offsets
// of a first fragment, so the entry is made without the rule's payload words.
Acl::RuleConfig fragmentRuleOf( const Acl::RuleConfig& rule ) {
   Acl::IpFilter filter = rule.ipFilter();
   filter.payloadIs( Acl::PayloadSpec() );
   return Acl::RuleConfig( Acl::IpRuleConfig( rule, filter ) );
}

const Acl::IpFilterBase& ipFilterOf( const Acl::RuleConfig& rule ) {
   if ( rule.aclType() == AclType::ipv6 ) {
      return rule.ip6Filter();
   }
   return rule.ipFilter();
}

}  // namespace

std::optional<std::string> GenericAclSm::refusal( const AclKey& key,
                                                  const Acl::AclConfig& config ) const {
   if ( auto why = aclKindRefusal( *aclHelper(), key ) ) {
      return why;
   }
   const BackEndFeatures features = BackEndFeatures::of( *aclHelper(), key );
   for ( const auto& [seq, rule] : config.rule() ) {
      if ( auto why = ruleRefusal( rule, key.direction(), features ) ) {
         return "sequence " + std::to_string( seq ) + ": " + *why;
      }
   }
   return std::nullopt;
}

void GenericAclSm::apply( const AclKey& key, const Desired& want, PassWork& work ) {
   FennelHelper::AclHelper& helper = *aclHelper();
   AclState& acl = state_.at( key );
   Memory& memory = memory_.at( key );
   const Acl::AclConfig& config = *want.config;
   if ( auto why = refusal( key, config ) ) {
      VTRACE( 0, "GenericAclSm: refusing " << key << ": " << *why );
      acl.error = aclCreateNotExpressible;
      acl.errorText = *why;
      acl.pending = PendingReason::none;
      memory.refusedRules = config.rule();
      work.summary.refused.push_back( key );
      helper.dirtyAclDel( key );
      return;
   }
   memory.refusedRules.reset();
   if ( acl.committed && aclParamConfig()->permitDuringAclUpdateConfig() ==
                             Acl::PermitDuringAclUpdateConfig::deny ) {
      block( acl, true );
      blocked_.insert( key );
   }
   const bool created = acl.aclData->aclVersion() != AclData::aclVersionNone;
   if ( created && ( acl.committed || memory.appliedRules != config.rule() ) ) {
      // Commit skips a unit that stands installed, and rules of the old list that the new one
      // lacks would stay in the records: remove all. An ACL that never went in with unchanged
      // rules is simply created again, each subrule replacing its earlier version.
      helper.destroyAcl( acl.aclData );
   }
   acl.committed = false;
   acl.aclData->installedIs( false );
   acl.aclData->aclConfigIs( want.config );
   acl.aclData->aclVersionIs( ++version_ );
   helper.precreateAcl( acl.aclData, acl.status );
   createRules( acl, memory, config );
   ++acl.applications;
   memory.appliedRules = config.rule();
   acl.status->createErrorIs( acl.error );
   helper.dirtyAclDel( key );
   if ( acl.pending == PendingReason::expand || acl.error == aclCreateNotExpressible ) {
      // Committing would install the ACL with a rule missing on some unit.
      work.holdCommit.insert( key );
   }
   work.summary.applied.push_back( key );
}

void GenericAclSm::noteResult( AclState& acl, AclCreateError result, const std::string& where ) {
   if ( result == aclCreateSuccess ) {
      return;
   }
   // The first rule that failed names the error: on a full TCAM every rule after it fails
   // too, and the closing rule would hide where the list stopped fitting.
   if ( acl.error == aclCreateSuccess ) {
      acl.error = result;
      acl.errorText = where + ": " + errorName( result );
   }
   if ( acl.pending == PendingReason::none && result != aclCreateNotExpressible ) {
      acl.pending = PendingReason::resources;
   }
}

void GenericAclSm::createRules( AclState& acl, Memory& memory, const Acl::AclConfig& config ) {
   FennelHelper::AclHelper& helper = *aclHelper();
   acl.rules.clear();
   acl.expanded.clear();
   acl.hits.clear();  // a new generation counts from nothing
   acl.error = aclCreateSuccess;
   acl.errorText.clear();
   acl.pending = PendingReason::none;
   U32 ruleNum = 0;
   for ( const auto& [seq, configured] : config.rule() ) {
      if ( configured.isRemark() ) {
         continue;
      }
      Acl::RuleConfig rule = configured;
      if ( rule.uniqueId().isEmpty() ) {
         auto [id, fresh] = memory.ids.try_emplace( seq, Acl::UniqueId() );
         if ( fresh ) {
            id->second = Acl::UniqueId::next();
         }
         rule.uniqueIdIs( id->second );
      }
      bool created = true;
      AclCreateError result;
      if ( rule.aclType() == AclType::mac ) {
         result = helper.createMacAclRule( rule, rule.uniqueId(), acl.aclData, ruleNum );
      } else {
         result = createIpRule( acl, memory, seq, rule, ruleNum, created );
      }
      if ( created ) {
         acl.rules.push_back( RuleOrigin{ RuleOrigin::Kind::configured, seq } );
         ++ruleNum;
      }
      noteResult( acl, result, "sequence " + std::to_string( seq ) );
   }
   createNeighborDiscoveryRules( acl, memory, ruleNum );
   const AclCreateError result =
       helper.createFinalAclRule( acl.key.aclType(), acl.aclData, ruleNum );
   acl.rules.push_back( RuleOrigin{ RuleOrigin::Kind::closing, 0 } );
   noteResult( acl, result, "closing rule" );
}

AclCreateError GenericAclSm::createIpRule( AclState& acl, Memory& memory, U32 seq,
                                           const Acl::RuleConfig& rule, U32 ruleNum,
                                           bool& created ) {
   FennelHelper::AclHelper& helper = *aclHelper();
   const Acl::IpFilterBase& filter = ipFilterOf( rule );
   const AclType type = rule.aclType();
   // Egress lookups have no range checkers: their ranges are blocks from the start.
   const bool blocks =
       acl.key.direction() == Acl::AclDirection::out || memory.blockSeqs.contains( seq );
   const RuleSplit split = splitIpRule( filter, blocks ? RangeForm::blocks : RangeForm::checker );
   if ( split.subrules.empty() ) {
      created = false;  // no packet can meet its terms: it takes no rule number
      return aclCreateSuccess;
   }
   AclCreateError result = aclCreateSuccess;
   bool rangeShort = false;
   for ( U32 i = 0; i < split.subrules.size(); ++i ) {
      const Subrule& s = split.subrules[i];
      const AclCreateError r = helper.createIpAclSubrule(
          type, rule, rule.uniqueId(), acl.aclData, ruleNum, i, s.src.value, s.src.mask,
          s.dst.value, s.dst.mask, s.src.start, s.src.end, s.dst.start, s.dst.end, s.len.value,
          s.len.mask, s.len.start, s.len.end, filter.tcpFlags(), split.l4Rule, filter.ecn(),
          filter.ecnMask() );
      if ( r == aclCreateNoRangeChecker &&
           ( s.src.needsRangeChecker() || s.dst.needsRangeChecker() ) ) {
         rangeShort = true;
      }
      if ( r != aclCreateSuccess ) {
         result = r;
      }
   }
   // Layer 4 fields exist only in the first fragment: a permit on them lets the later
   // fragments of its flow pass by an entry of its own (IPv4; the back-end has no IPv6 form).
   if ( type == AclType::ip && rule.action() == Acl::Action::permit && split.l4Rule ) {
      const AclCreateError r =
          helper.createIpFragRule( acl.aclData, fragmentRuleOf( rule ), rule.uniqueId(), ruleNum,
                                   static_cast<U32>( split.subrules.size() ) );
      if ( r != aclCreateSuccess ) {
         result = r;
      }
   }
   if ( blocks ) {
      const RuleSplit ranged = splitIpRule( filter, RangeForm::checker );
      if ( ranged.portRangeTerms ) {
         acl.expanded[seq] = ExpandedRule{ seq, static_cast<U32>( split.subrules.size() ),
                                           static_cast<U32>( ranged.subrules.size() ) };
      }
   }
   if ( rangeShort ) {
      VTRACE( 1, "GenericAclSm: " << acl.key.aclName() << " sequence " << seq
                                  << " found no range checker; blocks on the next pass" );
      memory.blockSeqs.insert( seq );
      acl.pending = PendingReason::expand;
      if ( acl.error == aclCreateSuccess ) {
         acl.error = result;
         acl.errorText =
             "sequence " + std::to_string( seq ) +
             ": no range checker; its port ranges go in as masked blocks on the next pass";
      }
      return aclCreateSuccess;  // said above, in its own words
   }
   return result;
}

void GenericAclSm::createNeighborDiscoveryRules( AclState& acl, Memory& memory, U32& ruleNum ) {
   FennelHelper::AclHelper& helper = *aclHelper();
   if ( acl.key.aclType() != AclType::ipv6 || !helper.needToInstallIcmp6NeighborDiscoveryRules() ) {
      return;
   }
   while ( memory.ndIds.size() < std::size( neighborDiscoveryTypes ) ) {
      memory.ndIds.push_back( Acl::UniqueId::next() );
   }
   for ( std::size_t i = 0; i < std::size( neighborDiscoveryTypes ); ++i ) {
      Acl::Ip6Filter filter;
      filter.protoIs( protoIcmp6 );
      filter.icmpTypeIs( neighborDiscoveryTypes[i] );
      Acl::Ip6RuleConfig permit( filter );
      permit.actionIs( Acl::Action::permit );
      permit.uniqueIdIs( memory.ndIds[i] );
      const AclCreateError r = helper.createIpAclSubrule(
          AclType::ipv6, Acl::RuleConfig( permit ), memory.ndIds[i], acl.aclData, ruleNum, 0, 0, 0,
          0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, true, 0, 0 );
      acl.rules.push_back( RuleOrigin{ RuleOrigin::Kind::neighborDiscovery, 0 } );
      ++ruleNum;
      noteResult( acl, r, "neighbour discovery permit" );
   }
}

}  // namespace Fennel
