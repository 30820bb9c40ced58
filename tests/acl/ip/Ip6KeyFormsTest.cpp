// IPv6 keys: which field an address lands in, on which stage, and what packets make of it.
// A VFP entry and the narrow key of key width mode 1 hold the upper 64 bits of an address; a
// standard ACL's narrow entries hold whole source addresses; the plain IFP key whole ones.
#include <gtest/gtest.h>

#include <string>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/chip/Packet.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"
#include "tests/support/TraceLines.h"

namespace AclIpTest {

using namespace HalyardTest;
namespace {

using Halyard::TcamGroupAssignment;
using Sim::ip6;
using Sim::Packet;
using Sim::QualId;

constexpr U32 inPort = 1;
constexpr U32 outPort = 2;

class Ip6KeyFormsTest : public ::testing::Test {
 protected:
   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3" } ) };

   Sim::ChipModel& chip() { return sw_.chip( 0 ); }
   bool has( U32 entry, QualId q ) { return chip().qualifier( entry, q ).has_value(); }
   TcamGroupAssignment groupOfEntry( U32 entry ) {
      return HalyardTest::groupOf( chip(), entry ).value();
   }
   Sim::SwitchVerdict sent( const Packet& p ) {
      return sw_.sim().inject( intfName( 0, inPort ), p, intfName( 0, outPort ) );
   }
   // The packet passes and meets the rule (nullopt: the closing rule).
   void expectMeets( const DrivenAcl& acl, const char* what, const Packet& p,
                     std::optional<U32> rule, bool passes ) {
      const Sim::SwitchVerdict v = sent( p );
      EXPECT_EQ( passes, v.forwarded() ) << what << ": " << v.text();
      EXPECT_EQ( rule.value_or( acl.ruleCount() ), acl.ruleHit( v ).value_or( 999 ) )
          << what << ": " << v.text();
   }
};

// Prefixes of up to 64 bits stay in VFP, keyed by their upper half; the first longer prefix
// takes that rule and every later one to IFP, whose key holds whole addresses.
TEST_F( Ip6KeyFormsTest, VfpHoldsUpperHalvesAndLongPrefixesLeaveIt ) {
   DrivenAcl acl( sw_, "v6", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, inPort ) } );
   acl.rulesCommitted( {
       { ip6Rule( Acl::permit_, ip6Filter( 6, "2001:db8:1::/64" ) ), { dstPortEq( 443 ) } },
       { ip6Rule( Acl::deny_, ip6Filter( 0, "::/0", "2001:db8:2::/64" ) ), { Terms{} } },
       { ip6Rule( Acl::permit_, ip6Filter( 0, "2001:db8:3::5/128" ) ), { Terms{} } },
       { ip6Rule( Acl::permit_, ip6Filter( 0, "2001:db8:4::/48" ) ), { Terms{} } },
   } );
   const U32 upper = acl.entries( 0, 0 ).at( 0 );
   const U32 dstUpper = acl.entries( 0, 1 ).at( 0 );
   const U32 whole = acl.entries( 0, 2 ).at( 0 );
   const U32 after = acl.entries( 0, 3 ).at( 0 );
   EXPECT_EQ( Halyard::tcamGroupIp6AclVfp, groupOfEntry( upper ) );
   EXPECT_TRUE( has( upper, QualId::SrcIp6High ) );
   EXPECT_FALSE( has( upper, QualId::SrcIp6 ) );
   EXPECT_TRUE( has( dstUpper, QualId::DstIp6High ) );
   EXPECT_EQ( Halyard::tcamGroupIp6Acl, groupOfEntry( whole ) );
   EXPECT_TRUE( has( whole, QualId::SrcIp6 ) );
   EXPECT_EQ( Halyard::tcamGroupIp6Acl, groupOfEntry( after ) );
   EXPECT_FALSE( acl.common( 0 )->canUseVfp() );

   const auto other = ip6( "2001:db8:9::1" );
   expectMeets( acl, "upper half", Packet::tcp6( ip6( "2001:db8:1::99" ), other, 1, 443 ), 0,
                true );
   expectMeets( acl, "to the denied /64", Packet::udp6( other, ip6( "2001:db8:2::7" ), 1, 1 ), 1,
                false );
   expectMeets( acl, "the host", Packet::udp6( ip6( "2001:db8:3::5" ), other, 1, 1 ), 2, true );
   expectMeets( acl, "its neighbour", Packet::udp6( ip6( "2001:db8:3::6" ), other, 1, 1 ),
                std::nullopt, false );
   expectMeets( acl, "the /48", Packet::udp6( ip6( "2001:db8:4:77::1" ), other, 1, 1 ), 3, true );
   // The closing rule lets ICMPv6 through ahead of its deny.
   expectMeets( acl, "neighbour solicitation", Packet::icmp6( other, other, 135, 0 ), std::nullopt,
                true );
}

// A standard ACL has narrow entries, which key the whole source address even in VFP: a /128
// keeps VFP, and its neighbour in the same /64 is not taken for it.
TEST_F( Ip6KeyFormsTest, StandardAclKeysWholeSourcesInNarrowEntries ) {
   DrivenAcl acl( sw_, "std", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, inPort ) }, true );
   ASSERT_TRUE( acl.common( 0 )->canUseStd() );
   acl.rulesCommitted( {
       { ip6Rule( Acl::permit_, ip6Filter( 0, "2001:db8::5/128" ) ), { Terms{} } },
       { ip6Rule( Acl::deny_, ip6Filter( 0, "2001:db8::/32" ) ), { Terms{} } },
   } );
   const U32 host = acl.entries( 0, 0 ).at( 0 );
   EXPECT_EQ( Halyard::tcamGroupIp6StdAclVfp, groupOfEntry( host ) );
   EXPECT_TRUE( acl.common( 0 )->aclRule( 0 )->entryFromStd( host ) );
   EXPECT_TRUE( has( host, QualId::SrcIp6 ) );
   EXPECT_TRUE( acl.common( 0 )->canUseVfp() );

   const auto dst = ip6( "2001:db9::1" );
   expectMeets( acl, "the host", Packet::udp6( ip6( "2001:db8::5" ), dst, 1, 1 ), 0, true );
   expectMeets( acl, "its neighbour", Packet::udp6( ip6( "2001:db8::6" ), dst, 1, 1 ), 1, false );
   expectMeets( acl, "elsewhere", Packet::udp6( ip6( "2001:db9::6" ), dst, 1, 1 ), std::nullopt,
                false );
}

class Ip6NarrowKeyTest : public Ip6KeyFormsTest {
 protected:
   Ip6NarrowKeyTest() {
      sw_.paramConfig()->ingressIpv6SecurityAclKeyWidthModeIs( Acl::AclKeyWidthMode::narrow );
   }
};

// In key width mode 1 an IFP entry keys the upper halves too, and carries range checkers.
TEST_F( Ip6NarrowKeyTest, IfpEntriesKeyUpperHalvesAndRanges ) {
   DrivenAcl acl( sw_, "narrow", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, inPort ) } );
   acl.rulesCommitted( {
       { ip6Rule( Acl::deny_, ip6Filter( 17 ) ), { dstPortRange( 1000, 2000 ) } },
       { ip6Rule( Acl::permit_, ip6Filter( 0, "2001:db8:1::/64" ) ), { Terms{} } },
   } );
   const U32 ranged = acl.entries( 0, 0 ).at( 0 );
   const U32 upper = acl.entries( 0, 1 ).at( 0 );
   EXPECT_EQ( Halyard::tcamGroupIp6Acl, groupOfEntry( ranged ) );
   EXPECT_EQ( 1u, chip().rangeChecks( ranged )->size() );
   EXPECT_EQ( Halyard::tcamGroupIp6Acl, groupOfEntry( upper ) );
   EXPECT_TRUE( has( upper, QualId::SrcIp6High ) );
   EXPECT_TRUE( acl.common( 0 )->useIpv6High() );

   const auto src = ip6( "2001:db8:1::1" );
   const auto dst = ip6( "2001:db9::1" );
   expectMeets( acl, "in the range", Packet::udp6( src, dst, 1, 1500 ), 0, false );
   expectMeets( acl, "past the range", Packet::udp6( src, dst, 1, 2001 ), 1, true );
   expectMeets( acl, "another /64", Packet::udp6( ip6( "2001:db8:2::1" ), dst, 1, 1 ), std::nullopt,
                false );
}

// A prefix above 64 bits cannot stand in the narrow key: no entry, a unit error of 2.
TEST_F( Ip6NarrowKeyTest, RefusesPrefixesAbove64 ) {
   DrivenAcl acl( sw_, "narrow", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, inPort ) } );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   EXPECT_EQ( Fennel::aclCreateNoEntries,
              acl.ruleIs( ip6Rule( Acl::permit_, ip6Filter( 0, "2001:db8:1::/65" ) ) ) );
   EXPECT_FALSE(
       HalyardTest::linesContaining( trace.lines(), " Invalid Input. IPv6 > 64" ).empty() );
   EXPECT_TRUE( acl.entries( 0, 0 ).empty() );
   EXPECT_TRUE( acl.common( 0 )->dirty() );
   EXPECT_TRUE( sw_.helper()->unitDirty( 0 ) );
   const Vesper::Name chip = sw_.sim().hcsd()->halyardModId( 0 ).chipName();
   EXPECT_EQ( Fennel::aclCreateNoEntries, sw_.helper()->unitError( chip ) );
}

}  // namespace
}  // namespace AclIpTest
