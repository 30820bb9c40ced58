// The High IPv6 forms keep all 16 bytes but match the upper 64 bits only.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

struct HighCase {
   const char* name;
   QualId qual;
   bool src;
   bool highOnly;
};

class Ipv6High : public ChipTest, public ::testing::WithParamInterface<HighCase> {
 protected:
   Packet to( const Ip6Addr& a ) {
      const Ip6Addr other = ip6( "fd00::99" );
      const bool src = GetParam().src;
      return Packet::tcp6( src ? a : other, src ? other : a, 1, 2 ).ingressPortIs( 1 );
   }
};

TEST_P( Ipv6High, LowerHalfCountsOnlyForTheWholeForm ) {
   const HighCase& c = GetParam();
   const Ip6Addr addr = ip6( "2001:db8:1:2:aaaa::1" );
   const Ip6Addr mask = ip6( "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff" );
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, c.qual, addr, mask ) );
   install( e );

   EXPECT_EQ( e, chip.lookup( to( addr ) ).hitIn( kIfp ) );
   // Same upper 64 bits, different lower 64 bits.
   EXPECT_EQ( c.highOnly, chip.lookup( to( ip6( "2001:db8:1:2:bbbb::7" ) ) ).hitIn( kIfp ) == e );
   // A different upper half never matches.
   EXPECT_EQ( std::nullopt, chip.lookup( to( ip6( "2001:db8:1:3:aaaa::1" ) ) ).hitIn( kIfp ) );

   // The read gives back all 16 bytes as written.
   auto back = chip.qualifier( e, c.qual );
   ASSERT_TRUE( back );
   EXPECT_EQ( 16u, back->width );
   EXPECT_TRUE( std::equal( addr.begin(), addr.end(), back->data.begin() ) );
   EXPECT_TRUE( std::equal( mask.begin(), mask.end(), back->mask.begin() ) );
}

INSTANTIATE_TEST_SUITE_P(
    Forms, Ipv6High,
    ::testing::Values( HighCase{ "SrcIp6High", QualId::SrcIp6High, true, true },
                       HighCase{ "DstIp6High", QualId::DstIp6High, false, true },
                       HighCase{ "SrcIp6", QualId::SrcIp6, true, false },
                       HighCase{ "DstIp6", QualId::DstIp6, false, false } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

}  // namespace
}  // namespace Sim
