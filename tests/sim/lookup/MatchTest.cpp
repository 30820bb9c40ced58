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

}  // namespace
}  // namespace SimLookupTest
