// The exact SDK calls and field-processor commands that write a subrule's match, one subrule of
// each kind, read from the trace and from the chip model. The calls that make the entry and
// its scope and actions come before them (commonCreateEntry) and are not looked at here.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"
#include "tests/support/TraceLines.h"

namespace AclIpTest {

using namespace HalyardTest;
namespace {

using Sim::QualId;
using Strings = std::vector<std::string>;

class SubruleCallsTest : public ::testing::Test {
 protected:
   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3" } ) };
   Vesper::TraceCapture sdkTrace_{ "Halyard::AclCommon" };
   HalyardTest::FpCmdCapture fp_;

   // The last `n` command lines of the entry.
   Strings lastFpLines( U32 entry, size_t n ) {
      const Strings all = fp_.linesOf( entry );
      return all.size() < n ? all : Strings( all.end() - static_cast<long>( n ), all.end() );
   }
   std::optional<HalyardTest::NumericQual> qual( U32 entry, QualId q ) {
      return HalyardTest::numericQual( sw_.chip( 0 ), entry, q );
   }
   std::string e( U32 entry ) { return "fp qual " + std::to_string( entry ) + " "; }
};

TEST_F( SubruleCallsTest, Ipv4Subrule ) {
   DrivenAcl acl( sw_, "a", Acl::ip_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   Acl::IpFilter filter = ip4Filter( 6, "10.1.0.0/16", "10.2.3.0/24" );
   filter.dscpIs( 10 );
   filter.ttlIs( Acl::TtlSpec( Acl::TtlOp::eq, 9 ) );
   Terms terms = dstPortEq( 80 );
   terms.tcpFlags = Acl::tcpFlagSyn;
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::deny_, filter ), { terms } ) );
   const U32 entry = acl.entries( 0, 0 ).at( 0 );
   EXPECT_EQ(
       ( Strings{ "bcm_field_qualify_IpProtocol( unit(), entry, filter.proto(), 0xFF )",
                  "bcm_field_qualify_SrcIp( unit(), entry, filter.source().address().value(), "
                  "filter.source().mask() )",
                  "bcm_field_qualify_DSCP( unit(), entry, tos, mask )",
                  "bcm_field_qualify_DstIp( unit(), entry, "
                  "filter.destination().address().value(), filter.destination().mask() )",
                  "bcm_field_qualify_L4DstPort( unit(), entry, port, portMask )",
                  "bcm_field_qualify_IpFrag( unit(), entry, bcmFieldIpFragNonOrFirst )",
                  "bcm_field_qualify_TcpControl( unit(), entry, tcpFlags, tcpFlags )",
                  "bcm_field_qualify_Ttl( unit(), entry, filter.ttl().ttl(), 0xFF )" } ),
       HalyardTest::checkedCalls( sdkTrace_.lines() ) );
   const std::string q = e( entry );
   EXPECT_EQ( ( Strings{ q + "IpType IpTypeIpv4Any", q + "IpProtocol 6 0xFF",
                         q + "SrcIp 167837696 0xFFFF0000", q + "TOS 0x28 0xfc",
                         q + "DstIp 167904000 0xFFFFFF00", q + "L4DstPort 80 0xFFFF",
                         q + "IpFrag IpFragNonOrFirst", q + "TcpControl 0x2", q + "Ttl 9 0xFF" } ),
              lastFpLines( entry, 9 ) );
   EXPECT_EQ( ( HalyardTest::NumericQual{ 0x28, 0xFC } ), qual( entry, QualId::Dscp ) );
   EXPECT_EQ( ( HalyardTest::NumericQual{ 0x0A020300, 0xFFFFFF00 } ),
              qual( entry, QualId::DstIp ) );
   EXPECT_EQ( ( HalyardTest::NumericQual{ 2, 2 } ), qual( entry, QualId::TcpControl ) );
   EXPECT_EQ( Sim::IpFrag::NonOrFirst, sw_.chip( 0 ).ipFrag( entry ) );
   EXPECT_EQ( Sim::IpType::Ipv4Any, sw_.chip( 0 ).ipType( entry ) );
}

// ICMPv6 type and code go in the source port field; the traffic class takes the rule's class
// and the subrule's ECN bits in one byte; the range is a checker, not a qualifier.
TEST_F( SubruleCallsTest, Ipv6SubruleWithRange ) {
   DrivenAcl acl( sw_, "a", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   Acl::Ip6Filter filter = ip6Filter( 58, "2001:db8::/32" );
   filter.icmpTypeIs( 128 );
   filter.icmpCodeIs( 0 );
   filter.ttlIs( Acl::TtlSpec( Acl::TtlOp::eq, 7 ) );
   filter.trafficClassIs( 0xB8, 0xFC );
   Terms terms;
   terms.ipLenLow = 100;
   terms.ipLenHigh = 200;
   terms.ecn = 1;
   terms.ecnMask = 3;
   ASSERT_EQ( 0, acl.ruleIs( ip6Rule( Acl::permit_, filter ), { terms } ) );
   const U32 entry = acl.entries( 0, 0 ).at( 0 );
   EXPECT_EQ( ( Strings{ "bcm_field_qualify_IpType( unit(), entry, bcmFieldIpTypeIpv6 )",
                         "bcm_field_qualify_IpProtocol( unit(), entry, filter.proto(), 0xFF )",
                         "bcm_field_qualify_SrcIp6( unit(), entry, srcAddr, srcMask )",
                         "bcm_field_qualify_IpProtocol( unit(), entry, ipProtocol, 0xFF )",
                         "bcm_field_qualify_L4SrcPort( unit(), entry, icmpData, icmpMask )",
                         "bcm_field_qualify_Ip6HopLimit( unit(), entry, filter.ttl().ttl(), 0xFF )",
                         "bcm_field_qualify_Ip6TrafficClass( unit(), entry, tc, mask )" } ),
              HalyardTest::checkedCalls( sdkTrace_.lines() ) );
   const std::vector<Sim::RangeCheckRef> checks = sw_.chip( 0 ).rangeChecks( entry ).value();
   ASSERT_EQ( 1u, checks.size() );
   const std::string q = e( entry );
   EXPECT_EQ(
       ( Strings{ q + "IpType IpTypeIpv6", q + "IpProtocol 58 0xFF",
                  q + "SrcIp6 0x20010db8000000000000000000000000 "
                      "0xffffffff000000000000000000000000",
                  q + "RangeCheck " + std::to_string( checks[0].id ), q + "IpProtocol 58 0xFF",
                  q + "L4SrcPort 32768 0xFFFF", q + "Ip6HopLimit 7 0xFF", q + "TC 0xb9 0xff" } ),
       lastFpLines( entry, 8 ) );
   const Sim::RangeChecker checker = sw_.chip( 0 ).rangeChecker( checks[0].id ).value();
   EXPECT_EQ( Sim::RangeType::IpLength, checker.type );
   EXPECT_EQ( 100u, checker.min );
   EXPECT_EQ( 200u, checker.max );
   EXPECT_EQ( ( HalyardTest::NumericQual{ 0xB9, 0xFF } ), qual( entry, QualId::Ip6TrafficClass ) );
}

// The fragment rule keys the layer 3 terms of its rule on later fragments.
TEST_F( SubruleCallsTest, FragmentRule ) {
   DrivenAcl acl( sw_, "a", Acl::ip_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ip4Filter( 17, "10.1.0.0/16" ) ),
                             { dstPortEq( 53 ) } ) );
   Vesper::TraceCapture smTrace( "Halyard::AclSm" );
   sdkTrace_.clear();
   ASSERT_EQ( 0, acl.fragRuleIs() );
   const U32 entry = acl.entries( 0, 0, 1 ).at( 0 );
   EXPECT_EQ(
       ( Strings{ "bcm_field_qualify_IpProtocol( unit(), entry, filter.proto(), 0xFF )",
                  "bcm_field_qualify_SrcIp( unit(), entry, filter.source().address().value(), "
                  "filter.source().mask() )" } ),
       HalyardTest::checkedCalls( sdkTrace_.lines() ) );
   const Strings smCalls = HalyardTest::checkedCalls( smTrace.lines() );
   EXPECT_EQ( "bcm_field_qualify_IpFrag( unit, entry, bcmFieldIpFragNotFirst )", smCalls.back() );
   const std::string q = e( entry );
   EXPECT_EQ( ( Strings{ q + "IpType IpTypeIpv4Any", q + "IpProtocol 17 0xFF",
                         q + "SrcIp 167837696 0xFFFF0000", q + "IpFrag IpFragNotFirst" } ),
              lastFpLines( entry, 4 ) );
   EXPECT_EQ( Sim::IpFrag::NotFirst, sw_.chip( 0 ).ipFrag( entry ) );
   EXPECT_FALSE( qual( entry, QualId::L4DstPort ) );
   EXPECT_TRUE( acl.common( 0 )->aclRule( 0 )->hasPermitFragmentRule() );
}

// An IPv6 ACL closes with an ICMPv6 permit ahead of its deny, both in the closing rule number:
// the deny in subrule 0 under the unit's drop rule id, the permit in subrule 1.
TEST_F( SubruleCallsTest, Ipv6ClosingRule ) {
   DrivenAcl acl( sw_, "a", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   ASSERT_EQ( 0, acl.closed() );
   const Halyard::AclRuleData::Ptr closing = acl.common( 0 )->aclRule( 0 );
   ASSERT_TRUE( closing );
   EXPECT_EQ( acl.unitData( 0 )->dropEntryAclId(), closing->aclId() );
   EXPECT_FALSE( closing->aclId().isEmpty() );
   const U32 permit = acl.entries( 0, 0, 1 ).at( 0 );
   const U32 deny = acl.entries( 0, 0, 0 ).at( 0 );
   EXPECT_EQ( ( HalyardTest::NumericQual{ 58, 0xFF } ), qual( permit, QualId::IpProtocol ) );
   EXPECT_FALSE( qual( deny, QualId::IpProtocol ) );
   EXPECT_EQ( Sim::IpType::Ipv6, sw_.chip( 0 ).ipType( deny ) );
   // The permit is acquired first, so it stands ahead of the deny in their group.
   const std::vector<U32> order =
       HalyardTest::groupEntries( sw_.chip( 0 ), Halyard::tcamGroupIp6AclVfp );
   EXPECT_LT( std::find( order.begin(), order.end(), permit ),
              std::find( order.begin(), order.end(), deny ) );
}

// A pass that did not reach commit leaves the closing rule standing; the next pass takes it
// over under the same id, and its entries replace the earlier ones.
TEST_F( SubruleCallsTest, ClosingRuleOfASecondPass ) {
   DrivenAcl acl( sw_, "a", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   ASSERT_EQ( 0, acl.closed() );
   const Acl::UniqueId first = acl.unitData( 0 )->dropEntryAclId();
   const std::vector<U32> before = acl.entries( 0, 0, 0 );
   ASSERT_EQ( 0, acl.closed() );
   EXPECT_EQ( first, acl.unitData( 0 )->dropEntryAclId() );
   EXPECT_EQ( 1u, acl.entries( 0, 0, 0 ).size() );
   EXPECT_EQ( 1u, acl.entries( 0, 0, 1 ).size() );
   EXPECT_NE( before, acl.entries( 0, 0, 0 ) );
   EXPECT_FALSE( sw_.chip( 0 ).entryExists( before.at( 0 ) ) );
}

// With neighbour discovery left to the generic layer, the closing rule is the deny alone.
TEST_F( SubruleCallsTest, Ipv6ClosingRuleWithoutPermit ) {
   sw_.paramConfig()->permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::neighborDiscovery );
   EXPECT_TRUE( sw_.helper()->needToInstallIcmp6NeighborDiscoveryRules() );
   DrivenAcl acl( sw_, "a", Acl::ipv6_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   ASSERT_EQ( 0, acl.closed() );
   EXPECT_TRUE( acl.entries( 0, 0, 1 ).empty() );
   EXPECT_EQ( 1u, acl.entries( 0, 0, 0 ).size() );
}

// Protocol 141 is keyed as an extension header where the chip says so, on ingress only.
class Protocol141Test : public ::testing::TestWithParam<Acl::AclDirection> {
 protected:
   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "tomahawk3" } ) };
};

TEST_P( Protocol141Test, ExtensionHeaderOnIngressOnly ) {
   DrivenAcl acl( sw_, "a", Acl::ip_, GetParam(), { HalyardTest::intfOf( 0, 1 ) } );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 141 ) ) ) );
   const U32 entry = acl.entries( 0, 0 ).at( 0 );
   const bool ingress = GetParam() == Acl::in_;
   EXPECT_EQ( ingress,
              HalyardTest::numericQual( sw_.chip( 0 ), entry, QualId::ExtensionHeaderType ) ==
                  ( HalyardTest::NumericQual{ 141, 0xFF } ) );
   EXPECT_EQ( !ingress, HalyardTest::numericQual( sw_.chip( 0 ), entry, QualId::IpProtocol ) ==
                            ( HalyardTest::NumericQual{ 141, 0xFF } ) );
}

INSTANTIATE_TEST_SUITE_P( Directions, Protocol141Test, ::testing::Values( Acl::in_, Acl::out_ ) );

}  // namespace
}  // namespace AclIpTest
