// Replays through the tool's switch: the demo's packets against the reference evaluator, the
// text that names a difference, and the JSON lines key for key.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/config/ConfigText.h"
#include "cli/packets/PacketInput.h"
#include "cli/replay/Replayer.h"
#include "cli/report/ReplayReport.h"
#include "cli/switch/AclSwitch.h"

namespace {

using namespace HalyardCli;
using Fennel::RuleOrigin;

const std::string kExamples = std::string( HALYARD_SOURCE_DIR ) + "/examples/";

Fennel::AclKey key( const std::string& name, Acl::AclDirection direction ) {
   return Fennel::AclKey( name, Acl::AclType::ip, direction );
}

Fennel::AclVerdict verdict( const std::string& name, Acl::AclDirection direction,
                            std::optional<U32> seq, bool permit ) {
   Fennel::AclVerdict v;
   v.aclName = Vesper::Name( name );
   v.direction = direction;
   v.decider = seq ? Fennel::AclDecider::rule : Fennel::AclDecider::implicitDeny;
   v.seq = seq;
   v.permit = permit;
   return v;
}

RuleOrigin rule( U32 seq ) {
   return RuleOrigin{ RuleOrigin::Kind::configured, seq };
}

TEST( Replay, TheDemoPacketsAgreeAndEveryHitIsCounted ) {
   AclSwitch sw( Sim::defaultProfile() );
   sw.apply( readConfigFile( kExamples + "acls/demo.acl" ) );
   const auto packets = readPacketFile( kExamples + "packets/demo.jsonl", {} );
   Replayer replayer( sw, true );
   U64 hits = 0;
   for ( const Fennel::Packet& p : packets ) {
      const PacketOutcome o = replayer.replay( p );
      EXPECT_TRUE( o.agree ) << "packet " << o.number << ": " << o.difference;
      ASSERT_TRUE( o.reference );
      EXPECT_EQ( o.reference->permit, o.hardware.permit ) << o.number;
      hits += o.hardware.hits.size();
   }
   const ReplayTotals& t = replayer.totals();
   EXPECT_EQ( packets.size(), t.packets );
   EXPECT_EQ( t.packets, t.permit + t.deny );
   EXPECT_GT( t.permit, 0u );
   EXPECT_GT( t.deny, 0u );
   U64 counted = 0;
   for ( const auto& [acl, rules] : t.hits ) {
      counted += rules.closing + rules.neighborDiscovery;
      for ( const auto& [seq, n] : rules.bySeq ) {
         counted += n;
      }
   }
   EXPECT_EQ( hits, counted );
}

TEST( Replay, ADifferenceNamesBothAnswersAndTheRuleEachSideChose ) {
   HardwareAnswer hw;
   hw.permit = true;
   hw.ingressPermit = true;
   hw.hits = { { key( "web", Acl::AclDirection::in ), 0, rule( 10 ) } };
   Fennel::Evaluation ref;
   ref.permit = false;
   ref.acls = { verdict( "web", Acl::AclDirection::in, 20, false ) };
   EXPECT_EQ(
       "hardware permit, reference deny; web in: hardware rule 10 on unit 0, reference "
       "rule 20",
       difference( hw, ref ) );

   ref.acls = { verdict( "web", Acl::AclDirection::in, std::nullopt, false ) };
   hw.permit = false;
   hw.hits[0].origin = RuleOrigin{ RuleOrigin::Kind::closing, 0 };
   EXPECT_EQ( "", difference( hw, ref ) ) << "the closing rule is the implicit deny";
}

TEST( Replay, EgressAclsOfAPacketDroppedAtIngressAreNotLookedFor ) {
   HardwareAnswer hw;
   hw.permit = false;
   hw.ingressPermit = false;
   hw.hits = { { key( "in", Acl::AclDirection::in ), 0, rule( 5 ) } };
   Fennel::Evaluation ref;
   ref.permit = false;
   ref.acls = { verdict( "in", Acl::AclDirection::in, 5, false ),
                verdict( "out", Acl::AclDirection::out, 7, true ) };
   EXPECT_EQ( "", difference( hw, ref ) );

   hw.hits.push_back( { key( "other", Acl::AclDirection::out ), 1, rule( 3 ) } );
   EXPECT_EQ(
       "hardware deny, reference deny; other out: hardware rule 3 on unit 1, which the "
       "reference does not apply",
       difference( hw, ref ) );
}

}  // namespace
