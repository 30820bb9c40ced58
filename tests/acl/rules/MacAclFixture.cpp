#include "tests/acl/rules/MacAclFixture.h"

#include <gtest/gtest.h>

namespace AclRulesTest {

HalyardTest::SwitchLayout layoutOf( std::vector<std::string> kinds ) {
   return HalyardTest::SwitchLayout( std::move( kinds ) );
}

HalyardTest::AgentOptions groupsSized( std::string_view kind,
                                       const std::vector<Halyard::TcamGroupAssignment>& assignments,
                                       U32 capacity ) {
   HalyardTest::AgentOptions options;
   options.sim.groupTable =
       HalyardTest::groupTableWith( HalyardTest::catalogKind( kind ), assignments, capacity );
   return options;
}

namespace {

bool termMatches( const std::optional<HalyardTest::MacTerm>& term, const Sim::MacAddr& addr ) {
   if ( !term ) {
      return true;
   }
   for ( size_t i = 0; i < addr.size(); ++i ) {
      if ( ( addr[i] & term->mask.byte( i ) ) != ( term->addr.byte( i ) & term->mask.byte( i ) ) ) {
         return false;
      }
   }
   return true;
}

}  // namespace

Sim::Packet macPacket( const Pylon::EthAddr& src, const Pylon::EthAddr& dst, U16 etherType ) {
   Sim::Packet p = Sim::Packet::ethernet( etherType );
   p.srcMacIs( HalyardTest::simMac( src ) ).dstMacIs( HalyardTest::simMac( dst ) );
   return p;
}

std::optional<size_t> firstMatch( const std::vector<MacRuleSpec>& rules, const Sim::Packet& p ) {
   for ( size_t i = 0; i < rules.size(); ++i ) {
      const MacRuleSpec& r = rules[i];
      if ( termMatches( r.source, p.srcMac ) && termMatches( r.destination, p.dstMac ) &&
           ( r.etherType == Acl::MacFilter::protoAny || S32( p.etherType ) == r.etherType ) ) {
         return i;
      }
   }
   return std::nullopt;
}

void MacAclFixture::build( const HalyardTest::SwitchLayout& layout,
                           const HalyardTest::AgentOptions& options ) {
   sw_ = std::make_unique<HalyardTest::AgentSwitch>( layout, options );
}

Fennel::AclData::Ptr MacAclFixture::macAcl( const std::string& name, Acl::AclDirection direction,
                                            const std::vector<Pylon::IntfId>& intfs ) {
   const Fennel::AclData::Ptr acl = HalyardTest::aclDataOf( name, Acl::mac_, direction );
   for ( const Pylon::IntfId intf : intfs ) {
      HalyardTest::bindPort( sw_->helper(), acl, intf );
   }
   return acl;
}

Halyard::AclUnitData::Ptr MacAclFixture::unitData( const Fennel::AclData::Ptr& acl, U32 unit ) {
   const Halyard::HalyardAclData::Ptr saclData = helper().halyardAclData( acl->key() );
   return saclData ? saclData->unitData( unit ) : nullptr;
}

Halyard::AclCommonUnitData::Ptr MacAclFixture::common( const Fennel::AclData::Ptr& acl, U32 unit ) {
   const Halyard::AclUnitData::Ptr u = unitData( acl, unit );
   return u ? u->common() : nullptr;
}

std::vector<Acl::RuleConfig> rulesOf( const std::vector<MacRuleSpec>& specs ) {
   std::vector<Acl::RuleConfig> rules;
   for ( const MacRuleSpec& spec : specs ) {
      rules.push_back( HalyardTest::macRule( spec ) );
   }
   return rules;
}

Fennel::AclCreateError MacAclFixture::rulesCreated( const Fennel::AclData::Ptr& acl,
                                                    const std::vector<Acl::RuleConfig>& rules ) {
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   U32 ruleNum = 0;
   for ( const Acl::RuleConfig& rule : rules ) {
      const auto rc = helper().createMacAclRule( rule, rule.uniqueId(), acl, ruleNum++ );
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   }
   const auto rc = helper().createFinalAclRule( Acl::mac_, acl, ruleNum );
   return rc != Fennel::aclCreateSuccess ? rc : result;
}

Fennel::AclCreateError MacAclFixture::applied( const Fennel::AclData::Ptr& acl,
                                               const std::vector<Acl::RuleConfig>& rules ) {
   precreate( acl );
   const Fennel::AclCreateError rc = rulesCreated( acl, rules );
   helper().prepareToCommit();
   helper().commitAcl( acl );
   return rc;
}

std::vector<U32> MacAclFixture::ruleEntries( const Fennel::AclData::Ptr& acl, U32 unit,
                                             U32 ruleNum ) {
   std::vector<U32> entries;
   const Halyard::AclCommonUnitData::Ptr c = common( acl, unit );
   const Halyard::AclRuleData::Ptr rule = c ? c->aclRule( ruleNum ) : nullptr;
   if ( !rule ) {
      return entries;
   }
   for ( const auto& list : rule->entryList() ) {
      for ( const auto& member : list.entry() ) {
         entries.push_back( member.key() );
      }
   }
   return entries;
}

std::optional<U32> MacAclFixture::ruleHit( const Fennel::AclData::Ptr& acl, U32 unit,
                                           const Sim::Verdict& v, std::optional<U32> egressPort ) {
   const Halyard::AclCommonUnitData::Ptr c = common( acl, unit );
   for ( const auto& rule : c->aclRule() ) {
      for ( const U32 entry : ruleEntries( acl, unit, rule.ruleNum() ) ) {
         const Sim::GroupId group = sw().chip( unit ).entryGroup( entry ).value_or( 0 );
         const auto hit = egressPort ? v.hitIn( group, *egressPort ) : v.hitIn( group );
         if ( hit == entry ) {
            return rule.ruleNum();
         }
      }
   }
   return std::nullopt;
}

}  // namespace AclRulesTest
