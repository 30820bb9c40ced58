// Match terms whose meaning is more than data under mask: the InPorts bitmap, range checkers
// and user-defined fields from the managers, IPv4 fragment states, the High IPv6 forms.
#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/halyard/RangeCheckerDesc.h"
#include "platform/halyard/UdfData.h"
#include "tests/sim/lookup/LookupFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimLookupTest::Match" )

namespace SimLookupTest {
namespace {

// ---- InPorts: a packet from port p matches unless the mask has p and the data has not.

struct InPortsCase {
   const char* name;
   std::vector<int> data;
   std::vector<int> mask;
   bool fullMask;  // the mask is every port of the unit
   U32 port;
   bool matches;
};

class InPortsMatch : public LookupTest, public ::testing::WithParamInterface<InPortsCase> {};

TEST_P( InPortsMatch, AZeroDataBitUnderAOneMaskBitRefusesThePort ) {
   const InPortsCase& c = GetParam();
   const U32 e = acquire( tcamGroupIpAcl );
   const bcm_pbmp_t data = pbmp( c.data );
   const bcm_pbmp_t mask = c.fullMask ? allPorts() : pbmp( c.mask );
   SDK_CHECK( bcm_field_qualify_InPorts( kUnit, e, data, mask ) );
   SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
   install( e );
   const SwitchVerdict v = inject( 80, "Ethernet" + std::to_string( c.port ), "Ethernet24" );
   EXPECT_EQ( c.matches, v.dropped() ) << v.text();
   EXPECT_EQ( c.matches ? 1u : 0u, hits( e ) );
}

INSTANTIATE_TEST_SUITE_P(
    Cases, InPortsMatch,
    ::testing::Values( InPortsCase{ "MemberOfFullMask", { 1, 3 }, {}, true, 3, true },
                       InPortsCase{ "NotMemberOfFullMask", { 1, 3 }, {}, true, 4, false },
                       InPortsCase{ "EmptyDataRefusesAll", {}, {}, true, 1, false },
                       InPortsCase{ "PortOutsideTheMaskMatches", {}, { 1, 2 }, false, 5, true },
                       InPortsCase{ "EmptyMaskMatchesAll", {}, {}, false, 7, true },
                       InPortsCase{ "MemberUnderPartialMask", { 9 }, { 9 }, false, 9, true },
                       InPortsCase{ "NonMemberUnderPartialMask", { 8 }, { 9 }, false, 9, false } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

// ---- Range checkers from the manager: inclusive bounds by type, all attached must hold.

struct RangeCase {
   const char* name;
   Halyard::RangeCheckerDesc desc;
   Packet packet;
   bool holds;
};

Packet tcpPorts( U16 sport, U16 dport ) {
   return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), sport, dport );
}
Packet ofLength( U16 len ) {
   return tcpPorts( 1, 1 ).ipTotalLengthIs( len );
}

class RangeCheckTest : public LookupTest {
 protected:
   // An installed entry with the checkers of `descs` attached, through its manager.
   U32 checked( std::initializer_list<Halyard::RangeCheckerDesc> descs ) {
      const U32 e = acquire( tcamGroupIpAcl );
      for ( const auto& d : descs ) {
         const U32 checker = manager( e ).getRangeChecker( kUnit, d );
         EXPECT_NE( 0u, checker );
         manager( e ).attachRangeChecker( kUnit, e, checker );
      }
      SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
      install( e );
      return e;
   }
};

class RangeMatch : public RangeCheckTest, public ::testing::WithParamInterface<RangeCase> {};

TEST_P( RangeMatch, BoundsAreInclusive ) {
   const RangeCase& c = GetParam();
   const U32 e = checked( { c.desc } );
   std::array<bcm_field_range_t, 4> ranges{};
   std::array<int, 4> inverts{};
   int n = 0;
   SDK_CHECK( bcm_field_qualify_RangeCheck_get( kUnit, e, 4, ranges.data(), inverts.data(), &n ) );
   EXPECT_EQ( 1, n );
   EXPECT_EQ( 0, inverts[0] );

   const SwitchVerdict v = inject( c.packet );
   EXPECT_EQ( c.holds, v.dropped() ) << v.text();
   EXPECT_EQ( c.holds ? 1u : 0u, hits( e ) );
}

using Halyard::rangeCheckerDstPort;
using Halyard::rangeCheckerIpLength;
using Halyard::rangeCheckerSrcPort;
const Halyard::RangeCheckerDesc kSrc{ 1000, 2000, rangeCheckerSrcPort };
const Halyard::RangeCheckerDesc kDst{ 1000, 2000, rangeCheckerDstPort };
const Halyard::RangeCheckerDesc kLen{ 64, 128, rangeCheckerIpLength };

INSTANTIATE_TEST_SUITE_P(
    Bounds, RangeMatch,
    ::testing::Values( RangeCase{ "SrcBelow", kSrc, tcpPorts( 999, 1500 ), false },
                       RangeCase{ "SrcLow", kSrc, tcpPorts( 1000, 1 ), true },
                       RangeCase{ "SrcHigh", kSrc, tcpPorts( 2000, 1 ), true },
                       RangeCase{ "SrcAbove", kSrc, tcpPorts( 2001, 1500 ), false },
                       RangeCase{ "DstLow", kDst, tcpPorts( 1, 1000 ), true },
                       RangeCase{ "DstHigh", kDst, tcpPorts( 1, 2000 ), true },
                       RangeCase{ "DstAbove", kDst, tcpPorts( 1500, 2001 ), false },
                       RangeCase{ "LenBelow", kLen, ofLength( 63 ), false },
                       RangeCase{ "LenLow", kLen, ofLength( 64 ), true },
                       RangeCase{ "LenHigh", kLen, ofLength( 128 ), true },
                       RangeCase{ "LenAbove", kLen, ofLength( 129 ), false },
                       // 20 bytes of IPv4 and 20 of TCP header, plus 30 of payload.
                       RangeCase{ "LenComputed", kLen,
                                  tcpPorts( 1, 1 ).payloadIs( std::vector<U8>( 30 ) ), true },
                       // A later fragment carries no ports: the checker sees zero.
                       RangeCase{ "LaterFragmentHasNoPorts",
                                  { 0, 0, rangeCheckerDstPort },
                                  tcpPorts( 5, 80 ).fragmentIs( false, 10 ),
                                  true } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( RangeCheckTest, EveryAttachedCheckerMustHold ) {
   const U32 e =
       checked( { { 1000, 2000, rangeCheckerSrcPort }, { 80, 90, rangeCheckerDstPort } } );
   EXPECT_TRUE( inject( tcpPorts( 1500, 85 ) ).dropped() );
   EXPECT_FALSE( inject( tcpPorts( 1500, 91 ) ).dropped() );
   EXPECT_FALSE( inject( tcpPorts( 999, 85 ) ).dropped() );
   EXPECT_EQ( 1u, hits( e ) );
}

// ---- User-defined fields from the manager, written in the form the unit's chip takes.

struct UdfCase {
   const char* name;
   U32 unit;
   bool udfForm;  // bcm_field_qualify_udf, else bcm_field_qualify_data
   const char* in;
   const char* out;
};

class UdfMatch : public LookupTest, public ::testing::WithParamInterface<UdfCase> {
 protected:
   // Adds to `e` a term on `length` bytes at `offset` from `base`.
   void udfTerm( U32 e, Halyard::UdfOffsetBase base, U8 offset, std::vector<U8> data,
                 std::vector<U8> mask ) {
      const UdfCase& c = GetParam();
      const U8 length = static_cast<U8>( data.size() );
      const auto quals = manager( e ).getAclUdf( c.unit, 0, 6, base, offset, length );
      ASSERT_EQ( 1u, quals.size() );
      const int q = static_cast<int>( *quals.begin() );
      const int unit = static_cast<int>( c.unit );
      if ( c.udfForm ) {
         SDK_CHECK( bcm_field_qualify_udf( unit, e, q, length, data.data(), mask.data() ) );
      } else {
         SDK_CHECK( bcm_field_qualify_data( unit, e, q, data.data(), mask.data(), length ) );
      }
   }
};

TEST_P( UdfMatch, EveryFieldMatchesTheBytesWhereItReads ) {
   const UdfCase& c = GetParam();
   const U32 e = acquire( tcamGroupIpAcl, c.unit );
   // Bytes 2 and 3 after the IPv4 header, the TCP destination port; byte 9 of the IPv4
   // header, the protocol.
   udfTerm( e, Halyard::udfOffsetBaseL3Payload, 2, { 0x12, 0x34 }, { 0xff, 0xff } );
   udfTerm( e, Halyard::udfOffsetBaseL3Header, 8, { 0x00, kProtoTcp }, { 0x00, 0xff } );
   SDK_CHECK( bcm_field_action_add( static_cast<int>( c.unit ), e, bcmFieldActionDrop, 0, 0 ) );
   install( e, c.unit );

   EXPECT_TRUE( inject( 0x1234, c.in, c.out ).dropped() );
   EXPECT_TRUE( inject( tcp( 0x1234 ).taggedIs( 100 ), c.in, c.out ).dropped() );
   EXPECT_FALSE( inject( 0x1235, c.in, c.out ).dropped() );
   const Packet udp = Packet::udp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1, 0x1234 );
   EXPECT_FALSE( inject( udp, c.in, c.out ).dropped() );
   EXPECT_EQ( 2u, hits( e, c.unit ) );
}

INSTANTIATE_TEST_SUITE_P(
    Forms, UdfMatch,
    ::testing::Values( UdfCase{ "UdfForm", 0, true, "Ethernet1", "Ethernet2" },
                       UdfCase{ "DataForm", 1, false, "Ethernet25", "Ethernet26" } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

// ---- IpFrag over the fragment states of IPv4 and IPv6 packets.

// Fragment states as (more fragments, offset): whole, first, middle, last.
constexpr std::array<std::pair<bool, U16>, 4> kFragStates{
    { { false, 0 }, { true, 0 }, { true, 185 }, { false, 370 } } };

struct FragCase {
   const char* name;
   bcm_field_IpFrag_t ( *value )();  // fetched from the SDK when the test runs
   const char* matches;              // per state above, '1' where the value matches
};

class FragmentMatch
    : public LookupTest,
      public ::testing::WithParamInterface<std::tuple<FragCase, std::size_t, bool> > {};

TEST_P( FragmentMatch, IpFragFollowsMoreFragmentsAndOffset ) {
   const auto [c, state, v6] = GetParam();
   const bcm_field_IpFrag_t frag = c.value();
   const U32 e = acquire( tcamGroupIpAcl );
   SDK_CHECK( bcm_field_qualify_IpFrag( kUnit, e, frag ) );
   SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
   install( e );
   bcm_field_IpFrag_t back{};
   SDK_CHECK( bcm_field_qualify_IpFrag_get( kUnit, e, &back ) );
   EXPECT_EQ( frag, back );

   // An IPv6 packet carries a fragment header for the state, none when whole.
   Packet p =
       v6 ? Packet::tcp6( ip6( "2001:db8::1" ), ip6( "2001:db8::2" ), 1, 80 ) : tcpPorts( 1, 80 );
   p.fragmentIs( kFragStates[state].first, kFragStates[state].second );
   const bool matches = c.matches[state] == '1';
   const SwitchVerdict v = inject( p );
   EXPECT_EQ( matches, v.dropped() ) << c.name << " " << v.text();
   EXPECT_EQ( matches ? 1u : 0u, hits( e ) );
}

INSTANTIATE_TEST_SUITE_P(
    AllStates, FragmentMatch,
    ::testing::Combine(
        ::testing::Values( FragCase{ "Non", [] { return bcmFieldIpFragNon; }, "1000" },
                           FragCase{ "First", [] { return bcmFieldIpFragFirst; }, "0100" },
                           FragCase{ "NonOrFirst", [] { return bcmFieldIpFragNonOrFirst; },
                                     "1100" },
                           FragCase{ "NotFirst", [] { return bcmFieldIpFragNotFirst; }, "0011" },
                           FragCase{ "Any", [] { return bcmFieldIpFragAny; }, "0111" } ),
        ::testing::Range( std::size_t{ 0 }, kFragStates.size() ), ::testing::Bool() ) );

// ---- The High IPv6 forms match the upper 64 bits only; the whole forms all 128.

enum class Ip6Form { SrcHigh, DstHigh, Src, Dst };

class Ipv6Forms : public LookupTest, public ::testing::WithParamInterface<Ip6Form> {
 protected:
   bool isSrc() const { return GetParam() == Ip6Form::SrcHigh || GetParam() == Ip6Form::Src; }
   bool highOnly() const {
      return GetParam() == Ip6Form::SrcHigh || GetParam() == Ip6Form::DstHigh;
   }
   void qualify( U32 e, const bcm_ip6_t& data, const bcm_ip6_t& mask ) {
      switch ( GetParam() ) {
         case Ip6Form::SrcHigh:
            SDK_CHECK( bcm_field_qualify_SrcIp6High( kUnit, e, data, mask ) );
            break;
         case Ip6Form::DstHigh:
            SDK_CHECK( bcm_field_qualify_DstIp6High( kUnit, e, data, mask ) );
            break;
         case Ip6Form::Src:
            SDK_CHECK( bcm_field_qualify_SrcIp6( kUnit, e, data, mask ) );
            break;
         case Ip6Form::Dst:
            SDK_CHECK( bcm_field_qualify_DstIp6( kUnit, e, data, mask ) );
            break;
      }
   }
   // A TCP packet with `addr` where the entry looks for it.
   Packet with( const char* addr ) const {
      const Ip6Addr a = ip6( addr );
      const Ip6Addr other = ip6( "fd00::99" );
      return Packet::tcp6( isSrc() ? a : other, isSrc() ? other : a, 1, 2 );
   }
};

TEST_P( Ipv6Forms, TheLowerHalfCountsOnlyForTheWholeForm ) {
   bcm_ip6_t addr;
   bcm_ip6_t mask;
   const Ip6Addr a = ip6( "2001:db8:1:2:aaaa::1" );
   std::copy( a.begin(), a.end(), addr );
   std::fill( std::begin( mask ), std::end( mask ), U8{ 0xff } );
   const U32 e = acquire( Halyard::tcamGroupIp6Acl );
   qualify( e, addr, mask );
   SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
   install( e );

   EXPECT_TRUE( inject( with( "2001:db8:1:2:aaaa::1" ) ).dropped() );
   EXPECT_EQ( 1u, hits( e ) );
   // Same upper 64 bits, other lower 64 bits.
   EXPECT_EQ( highOnly(), inject( with( "2001:db8:1:2:bbbb::7" ) ).dropped() );
   EXPECT_EQ( highOnly() ? 2u : 1u, hits( e ) );
   // Another upper half never matches.
   EXPECT_FALSE( inject( with( "2001:db8:1:3:aaaa::1" ) ).dropped() );
   EXPECT_EQ( highOnly() ? 2u : 1u, hits( e ) );
}

INSTANTIATE_TEST_SUITE_P( Forms, Ipv6Forms,
                          ::testing::Values( Ip6Form::SrcHigh, Ip6Form::DstHigh, Ip6Form::Src,
                                             Ip6Form::Dst ) );

}  // namespace
}  // namespace SimLookupTest
