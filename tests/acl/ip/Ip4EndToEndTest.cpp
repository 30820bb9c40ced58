// An IPv4 ACL with every kind of term that the back-end programs, applied through the library
// on each chip kind and in both directions, then proven by packets: each packet must get the
// verdict and hit the rule that the rule list gives it (first match, implicit deny).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/vesper/ActivityLock.h"
#include "sim/chip/Packet.h"
#include "tests/acl/ip/IpAclBench.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclIpTest {
namespace {

using Sim::ip4;
using Sim::Packet;

constexpr U32 inPort = 1;
constexpr U32 outPort = 2;

struct Case {
   std::string kind;
   Acl::AclDirection direction;
};

void PrintTo( const Case& c, std::ostream* os ) {
   *os << c.kind << "/" << c.direction;
}

// What a packet must meet: the rule that takes it (nullopt: the closing rule), and whether it
// passes.
struct Expect {
   std::string what;
   Packet packet;
   std::optional<U32> rule;
   bool passes;
};

class Ip4EndToEndTest : public ::testing::TestWithParam<Case> {
 protected:
   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { GetParam().kind } ) };

   bool ingress() const { return GetParam().direction == Acl::AclDirection::in; }
};

// Rule numbers, in order: 0 permit tcp 10.1.0.0/16 any eq 80 (and its fragment rule);
// 1 deny tcp any any 1024-2047 (one masked block); 2 permit udp any host 10.9.9.9 eq 53;
// 3 deny icmp any any echo; 4 permit tcp any any syn; 5 permit ip any any dscp ef;
// 6 permit udp any any ttl eq 5; 7 permit ip 10.2.0.0/16 any fragments; on ingress also
// 8 deny udp any any range 5000-6000, which takes a range checker (and the ACL off VFP).
void rulesApplied( IpAcl& acl, bool ingress ) {
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ip4Filter( 6, "10.1.0.0/16" ) ),
                             { dstPortEq( 80 ) } ) );
   ASSERT_EQ( 0, acl.fragRuleIs() );
   Terms block = dstPortEq( 1024 );
   block.dstPortMask = 0xFC00;
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { block } ) );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ip4Filter( 17, "0.0.0.0/0", "10.9.9.9/32" ) ),
                             { dstPortEq( 53 ) } ) );
   Acl::IpFilter echo = ip4Filter( 1 );
   echo.icmpTypeIs( 8 );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::deny_, echo ) ) );
   Terms syn;
   syn.tcpFlags = Acl::tcpFlagSyn;
   syn.l4 = true;
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ip4Filter( 6 ) ), { syn } ) );
   Acl::IpFilter ef = ip4Filter( 0 );
   ef.dscpIs( 46 );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ef ) ) );
   Acl::IpFilter ttl = ip4Filter( 17 );
   ttl.ttlIs( Acl::TtlSpec( Acl::TtlOp::eq, 5 ) );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ttl ) ) );
   Acl::IpFilter fragments = ip4Filter( 0, "10.2.0.0/16" );
   fragments.fragmentsIs( 1 );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, fragments ) ) );
   if ( ingress ) {
      ASSERT_EQ(
          0, acl.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 17 ) ), { dstPortRange( 5000, 6000 ) } ) );
   }
   ASSERT_EQ( 0, acl.closed() );
   acl.committed();
}

std::vector<Expect> expectations( bool ingress ) {
   const U32 web = ip4( "10.1.2.3" );
   const U32 other = ip4( "10.3.0.1" );
   const U32 dst = ip4( "10.5.5.5" );
   std::vector<Expect> e = {
       { "web", Packet::tcp4( web, dst, 4000, 80 ), 0, true },
       { "web from elsewhere", Packet::tcp4( other, dst, 4000, 80 ), std::nullopt, false },
       { "web, first fragment", Packet::tcp4( web, dst, 4000, 80 ).fragmentIs( true, 0 ), 0, true },
       { "web, later fragment", Packet::tcp4( web, dst, 0, 0 ).fragmentIs( false, 20 ), 0, true },
       { "later fragment from elsewhere", Packet::tcp4( other, dst, 0, 0 ).fragmentIs( true, 9 ),
         std::nullopt, false },
       { "block low", Packet::tcp4( other, dst, 4000, 1024 ), 1, false },
       { "block high", Packet::tcp4( other, dst, 4000, 2047 ).tosIs( 184 ), 1, false },
       { "past the block", Packet::tcp4( other, dst, 4000, 2048 ), std::nullopt, false },
       { "dns", Packet::udp4( other, ip4( "10.9.9.9" ), 4000, 53 ), 2, true },
       { "dns elsewhere", Packet::udp4( other, ip4( "10.9.9.8" ), 4000, 53 ), std::nullopt, false },
       { "echo", Packet::icmp4( other, dst, 8, 0 ), 3, false },
       { "echo reply", Packet::icmp4( other, dst, 0, 0 ), std::nullopt, false },
       { "syn", Packet::tcp4( other, dst, 4000, 22, Sim::kTcpSyn | Sim::kTcpAck ), 4, true },
       { "ef", Packet::udp4( other, dst, 4000, 4000 ).tosIs( 46 << 2 | 1 ), 5, true },
       { "af41", Packet::udp4( other, dst, 4000, 4000 ).tosIs( 34 << 2 ), std::nullopt, false },
       { "ttl 5", Packet::udp4( other, dst, 4000, 4000 ).ttlIs( 5 ), 6, true },
       { "fragments of 10.2", Packet::udp4( ip4( "10.2.7.7" ), dst, 0, 0 ).fragmentIs( true, 3 ), 7,
         true },
       { "10.2 unfragmented", Packet::udp4( ip4( "10.2.7.7" ), dst, 1, 1 ), std::nullopt, false },
   };
   if ( ingress ) {
      e.push_back( { "range low", Packet::udp4( other, dst, 1, 5000 ).ttlIs( 6 ), 8, false } );
      e.push_back( { "range high", Packet::udp4( other, dst, 1, 6000 ), 8, false } );
      e.push_back( { "past the range", Packet::udp4( other, dst, 1, 6001 ), std::nullopt, false } );
      // Rule 6 stands ahead of the range.
      e.push_back(
          { "ttl 5 in the range", Packet::udp4( other, dst, 1, 5500 ).ttlIs( 5 ), 6, true } );
   }
   return e;
}

TEST_P( Ip4EndToEndTest, PacketsMeetTheRuleTheListGivesThem ) {
   const Acl::AclDirection direction = GetParam().direction;
   const U32 boundPort = ingress() ? inPort : outPort;
   IpAcl acl( sw_, "web", Acl::ip_, direction, { HalyardTest::intfOf( 0, boundPort ) } );
   rulesApplied( acl, ingress() );
   ASSERT_FALSE( acl.common( 0 )->dirty() );
   ASSERT_TRUE( acl.common( 0 )->installed() );
   if ( ingress() ) {
      // The rule that needs a range checker takes itself and the rest of the ACL out of VFP;
      // the rules before it stay there.
      EXPECT_TRUE( acl.common( 0 )->aclRule( 7 )->entryFromVfp( acl.entries( 0, 7 ).at( 0 ) ) );
      EXPECT_FALSE( acl.common( 0 )->aclRule( 8 )->entryFromVfp( acl.entries( 0, 8 ).at( 0 ) ) );
      EXPECT_FALSE( acl.common( 0 )->canUseVfp() );
   }
   for ( const Expect& e : expectations( ingress() ) ) {
      const Sim::SwitchVerdict v =
          sw_.sim().inject( intfName( 0, inPort ), e.packet, intfName( 0, outPort ) );
      EXPECT_EQ( e.passes, v.forwarded() ) << e.what << ": " << v.text();
      EXPECT_EQ( e.rule.value_or( acl.ruleCount() ), acl.hitRule( v ).value_or( 999 ) )
          << e.what << ": " << v.text();
   }
}

std::vector<Case> cases() {
   std::vector<Case> out;
   for ( const std::string& kind : HalyardTest::catalogKindNames() ) {
      out.push_back( { kind, Acl::in_ } );
      out.push_back( { kind, Acl::out_ } );
   }
   return out;
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, Ip4EndToEndTest, ::testing::ValuesIn( cases() ),
                          []( const ::testing::TestParamInfo<Case>& info ) {
                             return info.param.kind +
                                    ( info.param.direction == Acl::in_ ? "In" : "Out" );
                          } );

}  // namespace
}  // namespace AclIpTest
