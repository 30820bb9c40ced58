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

HalyardTest::DrivenAcl MacAclFixture::macAcl( const std::string& name, Acl::AclDirection direction,
                                              const std::vector<Pylon::IntfId>& intfs ) {
   HalyardTest::DrivenAcl acl( *sw_, name, Acl::mac_, direction );
   acl.portsBound( intfs );
   return acl;
}

std::vector<Acl::RuleConfig> rulesOf( const std::vector<MacRuleSpec>& specs ) {
   std::vector<Acl::RuleConfig> rules;
   for ( const MacRuleSpec& spec : specs ) {
      rules.push_back( HalyardTest::macRule( spec ) );
   }
   return rules;
}

}  // namespace AclRulesTest
