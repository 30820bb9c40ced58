#include "tests/acl/ip/IpAclBench.h"

#include <gtest/gtest.h>

#include <utility>

#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/pylon/ValueText.h"
#include "tests/support/AclRecords.h"
#include "tests/support/SwitchLayout.h"

namespace AclIpTest {

Terms dstPortEq( U16 port ) {
   Terms t;
   t.dstPort = port;
   t.dstPortMask = 0xFFFF;
   t.l4 = true;
   return t;
}

Terms dstPortRange( U16 low, U16 high ) {
   Terms t;
   t.dstLow = low;
   t.dstHigh = high;
   t.l4 = true;
   return t;
}

Terms srcPortRange( U16 low, U16 high ) {
   Terms t;
   t.srcLow = low;
   t.srcHigh = high;
   t.l4 = true;
   return t;
}

Terms ipLengthEq( U16 length ) {
   Terms t;
   t.ipLen = length;
   t.ipLenMask = 0xFFFF;
   t.ipLenLow = length;
   t.ipLenHigh = length;
   return t;
}

Pylon::IpAddrWithFullMask v4( std::string_view text ) {
   return Pylon::strepToValue<Pylon::IpAddrWithFullMask>( text );
}

Pylon::Ip6AddrWithFullMask v6( std::string_view text ) {
   return Pylon::strepToValue<Pylon::Ip6AddrWithFullMask>( text );
}

namespace {

template <class Config, class Filter>
Acl::RuleConfig ruleOf( Acl::Action action, const Filter& filter, bool log ) {
   Config rule( filter );
   rule.actionIs( action );
   rule.logIs( log );
   // Configured rules have ids of their own, with the top bit clear.
   static U64 nextId = 1;
   rule.uniqueIdIs( Acl::UniqueId( nextId++ ) );
   return Acl::RuleConfig( rule );
}

}  // namespace

Acl::RuleConfig ip4Rule( Acl::Action action, const Acl::IpFilter& filter, bool log ) {
   return ruleOf<Acl::IpRuleConfig>( action, filter, log );
}

Acl::RuleConfig ip6Rule( Acl::Action action, const Acl::Ip6Filter& filter, bool log ) {
   return ruleOf<Acl::Ip6RuleConfig>( action, filter, log );
}

Acl::IpFilter ip4Filter( U8 proto, std::string_view src, std::string_view dst ) {
   Acl::IpFilter filter;
   filter.protoIs( proto );
   filter.sourceIs( v4( src ) );
   filter.destinationIs( v4( dst ) );
   return filter;
}

Acl::Ip6Filter ip6Filter( U8 proto, std::string_view src, std::string_view dst ) {
   Acl::Ip6Filter filter;
   filter.protoIs( proto );
   filter.sourceIs( v6( src ) );
   filter.destinationIs( v6( dst ) );
   return filter;
}

IpAcl::IpAcl( HalyardTest::AgentSwitch& sw, std::string name, Acl::AclType type,
              Acl::AclDirection direction, const std::vector<Pylon::IntfId>& intfs, bool standard )
    : sw_( sw ),
      aclData_( HalyardTest::aclDataOf( std::move( name ), type, direction, 0, standard ) ) {
   for ( const Pylon::IntfId intf : intfs ) {
      HalyardTest::bindPort( sw_.helper(), aclData_, intf );
   }
   EXPECT_EQ( Fennel::aclCreateSuccess, sw_.helper()->precreateAcl( aclData_, nullptr ) );
}

Halyard::AclUnitData::Ptr IpAcl::unitData( U32 unit ) const {
   const Halyard::HalyardAclData::Ptr saclData = sw_.helper()->halyardAclData( aclData_->key() );
   return saclData ? saclData->unitData( unit ) : nullptr;
}

const Halyard::AclCommonUnitData::Ptr& IpAcl::common( U32 unit ) const {
   static const Halyard::AclCommonUnitData::Ptr none;
   const Halyard::AclUnitData::Ptr record = unitData( unit );
   return record ? record->common() : none;
}

Fennel::AclCreateError IpAcl::ruleIs( const Acl::RuleConfig& rule,
                                      const std::vector<Terms>& subrules ) {
   const U32 ruleNum = nextRuleNum_++;
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   for ( U32 sub = 0; sub < subrules.size(); ++sub ) {
      const Terms& t = subrules[sub];
      const Fennel::AclCreateError rc = sw_.helper()->createIpAclSubrule(
          aclData_->aclType(), rule, rule.uniqueId(), aclData_, ruleNum, sub, t.srcPort,
          t.srcPortMask, t.dstPort, t.dstPortMask, t.srcLow, t.srcHigh, t.dstLow, t.dstHigh,
          t.ipLen, t.ipLenMask, t.ipLenLow, t.ipLenHigh, t.tcpFlags, t.l4, t.ecn, t.ecnMask );
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   }
   lastRule_ = rule;
   lastSubrules_ = static_cast<U32>( subrules.size() );
   return result;
}

Fennel::AclCreateError IpAcl::fragRuleIs() {
   return sw_.helper()->createIpFragRule( aclData_, *lastRule_, lastRule_->uniqueId(),
                                          nextRuleNum_ - 1, lastSubrules_ );
}

Fennel::AclCreateError IpAcl::closed() {
   return sw_.helper()->createFinalAclRule( aclData_->aclType(), aclData_, nextRuleNum_ );
}

void IpAcl::committed() {
   sw_.helper()->prepareToCommit();
   sw_.helper()->commitAcl( aclData_ );
}

void IpAcl::applied( const std::vector<std::pair<Acl::RuleConfig, std::vector<Terms> > >& rules ) {
   for ( const auto& [rule, subrules] : rules ) {
      ASSERT_EQ( Fennel::aclCreateSuccess, ruleIs( rule, subrules ) ) << nextRuleNum_ - 1;
   }
   ASSERT_EQ( Fennel::aclCreateSuccess, closed() );
   committed();
}

std::vector<U32> IpAcl::entries( U32 unit, U32 ruleNum, U32 subRule ) const {
   std::vector<U32> out;
   const Halyard::AclCommonUnitData::Ptr& rules = common( unit );
   const Halyard::AclRuleData::Ptr rule = rules ? rules->aclRule( ruleNum ) : nullptr;
   const Halyard::AclEntryList::Ptr list = rule ? rule->entryList( subRule ) : nullptr;
   if ( list ) {
      for ( const auto& member : list->entry() ) {
         out.push_back( member.key() );
      }
   }
   return out;
}

std::optional<U32> IpAcl::hitRule( const Sim::SwitchVerdict& verdict ) const {
   auto ruleOfEntry = [&]( U32 unit, U32 entry ) -> std::optional<U32> {
      const Halyard::AclCommonUnitData::Ptr& rules = common( unit );
      if ( !rules ) {
         return std::nullopt;
      }
      for ( const auto& rule : rules->aclRule() ) {
         for ( const auto& list : rule.entryList() ) {
            if ( list.entryHas( entry ) ) {
               return rule.ruleNum();
            }
         }
      }
      return std::nullopt;
   };
   for ( const Sim::StageHit& hit : verdict.ingress.hits ) {
      if ( auto ruleNum = ruleOfEntry( verdict.ingressUnit, hit.entry ) ) {
         return ruleNum;
      }
   }
   if ( verdict.egress ) {
      for ( const Sim::StageHit& hit : verdict.egress->hits ) {
         if ( auto ruleNum = ruleOfEntry( *verdict.egressUnit, hit.entry ) ) {
            return ruleNum;
         }
      }
   }
   return std::nullopt;
}

std::string intfName( U32 unit, U32 port ) {
   return Pylon::valueToStrep( HalyardTest::intfOf( unit, port ) );
}

}  // namespace AclIpTest
