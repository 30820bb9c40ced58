// Random MAC ACLs bound in and out on ports of both units, applied by the generic machine: every
// packet of a random set gets the verdict and the hit rule, by sequence number, that the
// reference evaluator gives, and the rules' hit counters add up to the same. On the default
// switch and on a switch of each chip kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "fennel/HalyardView.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/switch/GenericSwitch.h"
#include "tests/fennel/switch/RandomAcls.h"
#include "tests/support/SwitchLayout.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Pylon::IntfId;
using namespace FennelTest;

struct Wiring {
   std::vector<IntfId> unit0;  // front-panel ports of unit 0, at least four
   std::vector<IntfId> unit1;  // the same of unit 1
};

// Three lists on both units: two ingress lists on two ports each, one egress list on a port of
// each unit; packets come in on those ports and a port without ACL, and leave by the egress
// ports, a port without ACL, or nowhere.
void agreeOnRandomMacAcls( GenericSwitch& sw, const Wiring& w, U32 seed, U32 packets ) {
   RandomAcls random( seed );
   const auto inA = random.macListIs( sw.config(), "in-a", 120 );
   const auto inB = random.macListIs( sw.config(), "in-b", 100 );
   const auto outA = random.macListIs( sw.config(), "out-a", 110 );
   sw.bind( AclType::mac, "in-a", w.unit0[0], AclDirection::in );
   sw.bind( AclType::mac, "in-a", w.unit1[0], AclDirection::in );
   sw.bind( AclType::mac, "in-b", w.unit0[1], AclDirection::in );
   sw.bind( AclType::mac, "in-b", w.unit1[1], AclDirection::in );
   sw.bind( AclType::mac, "out-a", w.unit0[2], AclDirection::out );
   sw.bind( AclType::mac, "out-a", w.unit1[2], AclDirection::out );

   const Fennel::PassSummary summary = sw.runPass();
   ASSERT_EQ( 3u, summary.committed.size() );
   for ( const auto& [key, acl] : sw.machine().acls() ) {
      EXPECT_EQ( Fennel::aclCreateSuccess, acl.error ) << key << ": " << acl.errorText;
      for ( const Fennel::AclUnitView& unit : Fennel::aclUnits( *sw.agent().helper(), key ) ) {
         EXPECT_TRUE( unit.installed ) << key << " unit " << unit.unit;
         EXPECT_FALSE( unit.dirty ) << key << " unit " << unit.unit;
      }
   }
   EXPECT_FALSE( sw.machine().passWanted() );

   const std::vector<IntfId> ins = { w.unit0[0], w.unit0[1], w.unit1[0], w.unit1[1], w.unit0[3] };
   const std::vector<std::optional<IntfId>> outs = { std::nullopt, w.unit0[2], w.unit1[2],
                                                     w.unit1[3] };
   U32 disagreements = 0;
   U32 permitted = 0;
   std::set<std::pair<std::string, U32>> rulesHit;
   std::map<Fennel::AclKey, std::map<U32, U64>> expectedHits;
   for ( U32 i = 0; i < packets; ++i ) {
      const IntfId in = random.pick( ins );
      const std::optional<IntfId> out = random.pick( outs );
      const Acl::AclConfig& aimAt = random.below( 3 ) == 0                 ? *outA
                                    : in == w.unit0[1] || in == w.unit1[1] ? *inB
                                                                           : *inA;
      Fennel::Packet p = random.macPacketFor( aimAt );
      p.in = in;
      p.out = out;
      const std::string why = sw.disagreement( p );
      if ( !why.empty() && ++disagreements <= 5 ) {
         ADD_FAILURE() << "packet " << i << " in " << in << " out "
                       << ( out ? Pylon::valueToStrep( *out ) : "none" ) << ": " << why;
      }
      const Fennel::Evaluation reference = sw.reference( p );
      permitted += reference.permit ? 1 : 0;
      bool ingressPermits = true;
      for ( const Fennel::AclVerdict& v : reference.acls ) {
         rulesHit.insert( { v.aclName.str(), v.seq.value_or( 0 ) } );
         if ( v.direction == AclDirection::in ) {
            ingressPermits = ingressPermits && v.permit;
         }
         // A packet dropped on ingress meets no egress lookup.
         if ( v.seq && ( v.direction == AclDirection::in || ingressPermits ) ) {
            ++expectedHits[Fennel::AclKey( v.aclName.str(), v.type, v.direction )][*v.seq];
         }
      }
   }
   EXPECT_EQ( 0u, disagreements ) << "of " << packets << " packets";
   // The hardware counted every hit on the rule the evaluator names.
   sw.machine().pollCounters();
   for ( const auto& [key, acl] : sw.machine().acls() ) {
      std::map<U32, U64> hits;
      for ( const auto& [seq, n] : acl.hits ) {
         if ( n != 0 ) {
            hits[seq] = n;
         }
      }
      EXPECT_EQ( expectedHits[key], hits ) << key;
   }
   // The packets reach deep into the lists, not only their first rules.
   EXPECT_GT( rulesHit.size(), 90u );
   EXPECT_GT( permitted, packets / 10 );
   EXPECT_LT( permitted, packets - packets / 10 );
}

TEST( MacAclsOnTheDefaultSwitch, HardwareAgreesWithTheReference ) {
   Vesper::ActivityLockGuard activity;
   GenericSwitch sw;
   const Wiring w{ { IntfId::ethernet( 1 ), IntfId::ethernet( 2 ), IntfId::ethernet( 3 ),
                     IntfId::ethernet( 4 ) },
                   { IntfId::ethernet( 25 ), IntfId::ethernet( 26 ), IntfId::ethernet( 27 ),
                     IntfId::ethernet( 28 ) } };
   agreeOnRandomMacAcls( sw, w, 1, 1500 );
}

class MacAclsOnEachChipKind : public ::testing::TestWithParam<std::string> {};

TEST_P( MacAclsOnEachChipKind, HardwareAgreesWithTheReference ) {
   Vesper::ActivityLockGuard activity;
   HalyardTest::SwitchLayout layout( { GetParam(), GetParam() } );
   GenericSwitch sw( HalyardTest::profileOf( layout ) );
   Wiring w;
   for ( U32 port = 1; port <= 4; ++port ) {
      w.unit0.push_back( HalyardTest::intfOf( 0, port ) );
      w.unit1.push_back( HalyardTest::intfOf( 1, port ) );
   }
   agreeOnRandomMacAcls( sw, w, 2, 1200 );
}

INSTANTIATE_TEST_SUITE_P( Catalog, MacAclsOnEachChipKind,
                          ::testing::ValuesIn( HalyardTest::catalogKindNames() ),
                          []( const auto& info ) { return info.param; } );

}  // namespace
