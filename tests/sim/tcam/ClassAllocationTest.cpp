// The class compression tables: a value keeps its first class, a table has a limit, and the
// lookup sees the classes bound.
#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

class ClassAllocation : public TcamTest {
 protected:
   ClassAllocation() {
      UnitLimits limits = UnitLimits::of( spareChip );
      limits.classTables = ClassTableLimits{ 2, 2, 2, 2, 2, 2 };
      gm->unitIs( kSmall, spareChip, limits );
   }
   static constexpr U32 kSmall = 2;
   ChipModel& thirdChip = spareChip;
};

using Allocate = bool ( SimTcamGroupManager::* )( U32, U16, U8 );

struct ExactCase {
   const char* name;
   Allocate allocate;
   ExactClassTable table;
};

class ExactClassAllocation : public ClassAllocation,
                             public ::testing::WithParamInterface<ExactCase> {};

TEST_P( ExactClassAllocation, AValueKeepsItsClassAndTheTableHasALimit ) {
   const ExactCase& c = GetParam();
   SimTcamGroupManager& m = *gm;
   EXPECT_TRUE( ( m.*c.allocate )( kSmall, 100, 5 ) );
   EXPECT_EQ( 5u, thirdChip.classTables().exactClass( c.table, 100 ) );
   EXPECT_TRUE( ( m.*c.allocate )( kSmall, 100, 5 ) ) << "the same binding again";
   EXPECT_FALSE( ( m.*c.allocate )( kSmall, 100, 6 ) ) << "a conflicting binding";
   EXPECT_EQ( 5u, thirdChip.classTables().exactClass( c.table, 100 ) );
   EXPECT_TRUE( ( m.*c.allocate )( kSmall, 200, 6 ) );
   EXPECT_FALSE( ( m.*c.allocate )( kSmall, 300, 7 ) ) << "the table is full";
   EXPECT_EQ( std::nullopt, thirdChip.classTables().exactClass( c.table, 300 ) );
   EXPECT_TRUE( ( m.*c.allocate )( kUnit, 300, 7 ) ) << "another unit, another table";
   EXPECT_FALSE( ( m.*c.allocate )( 9, 300, 7 ) ) << "no such unit";
}

INSTANTIATE_TEST_SUITE_P(
    Tables, ExactClassAllocation,
    ::testing::Values( ExactCase{ "EtherType", &SimTcamGroupManager::allocateEtherTypeClassId,
                                  ExactClassTable::EtherType },
                       ExactCase{ "IpProtocol", &SimTcamGroupManager::allocateIpProtocolClassId,
                                  ExactClassTable::IpProtocol },
                       ExactCase{ "L4SrcPort", &SimTcamGroupManager::allocateL4SrcPortClassId,
                                  ExactClassTable::L4SrcPort },
                       ExactCase{ "L4DstPort", &SimTcamGroupManager::allocateL4DstPortClassId,
                                  ExactClassTable::L4DstPort } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( ClassAllocation, TheLookupMatchesTheBoundClass ) {
   ASSERT_TRUE( gm->allocateL4DstPortClassId( kUnit, 179, 3 ) );
   const U32 e = ip->getEntry( kUnit, "bgp" );
   EXPECT_EQ( Status::Ok, chip.qualifierIs( e, QualId::L4DstPortClass, 3, 0xFF ) );
   EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
   ip->installEntry( kUnit, e );
   EXPECT_TRUE( chip.lookup( tcpTo( 179 ) ).dropped );
   EXPECT_FALSE( chip.lookup( tcpTo( 180 ) ).dropped );
}

TEST_F( ClassAllocation, DestinationPrefixesBindShiftedClasses ) {
   const Pylon::IpAddrWithFullMask net( Pylon::IpAddr( 10, 1, 0, 0 ), 0xFFFF0000 );
   EXPECT_TRUE( gm->allocateDstIpClassId( kSmall, net, U64{ 2 } << 32 ) );
   EXPECT_EQ( U64{ 2 } << 32,
              thirdChip.classTables().dstIp4Class( ip4( "10.1.0.0" ), 0xFFFF0000 ) );
   EXPECT_EQ( 2u,
              ClassTables::msbNibble( thirdChip.classTables().matchDstIp4( ip4( "10.1.2.3" ) ) ) );
   const Pylon::IpAddrWithFullMask same( Pylon::IpAddr( 10, 1, 9, 9 ), 0xFFFF0000 );
   EXPECT_TRUE( gm->allocateDstIpClassId( kSmall, same, U64{ 2 } << 32 ) ) << "same prefix";
   EXPECT_FALSE( gm->allocateDstIpClassId( kSmall, net, U64{ 3 } << 32 ) );
   EXPECT_TRUE( gm->allocateDstIpClassId(
       kSmall, Pylon::IpAddrWithFullMask( Pylon::IpAddr( 10, 2, 0, 0 ), 0xFFFF0000 ), 0 ) );
   EXPECT_FALSE( gm->allocateDstIpClassId(
       kSmall, Pylon::IpAddrWithFullMask( Pylon::IpAddr( 10, 3, 0, 0 ), 0xFFFF0000 ), 0 ) );

   Pylon::Ip6Addr::Bytes addr{ 0x20, 0x01, 0x0d, 0xb8 };
   Pylon::Ip6Addr::Bytes mask{ 0xFF, 0xFF, 0xFF, 0xFF };
   const Pylon::Ip6AddrWithFullMask net6{ Pylon::Ip6Addr( addr ), Pylon::Ip6Addr( mask ) };
   EXPECT_TRUE( gm->allocateDstIp6ClassId( kSmall, net6, U64{ 4 } << 32 ) );
   EXPECT_EQ( U64{ 4 } << 32, thirdChip.classTables().dstIp6Class( addr, mask ) );
   EXPECT_FALSE( gm->allocateDstIp6ClassId( kSmall, net6, U64{ 5 } << 32 ) );
}

}  // namespace
}  // namespace Sim
