// Qualifiers as the SDK reads them back: exactly what was written, or not found.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

TEST_F( ChipTest, QualifiersReadBackExactlyAndAbsentOnesAreNotFound ) {
   EntryId e = entry( kIfp );
   EXPECT_EQ( std::nullopt, chip.qualifier( e, QualId::SrcIp ) );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, QualId::SrcIp, 0x0A000001, 0xFFFFFF00 ) );
   auto v = chip.qualifier( e, QualId::SrcIp );
   ASSERT_TRUE( v );
   EXPECT_EQ( 4u, v->width );
   // Data is kept as given, also the bits the mask hides.
   EXPECT_EQ( 0x0A000001u, v->dataU64() );
   EXPECT_EQ( 0xFFFFFF00u, v->maskU64() );
   EXPECT_EQ( 0x0Au, v->data[0] );

   ASSERT_EQ( Status::Ok, chip.qualifierDel( e, QualId::SrcIp ) );
   EXPECT_EQ( std::nullopt, chip.qualifier( e, QualId::SrcIp ) );
   EXPECT_EQ( Status::NotFound, chip.qualifierDel( e, QualId::SrcIp ) );
   EXPECT_EQ( std::nullopt, chip.qualifier( 777, QualId::SrcIp ) );
   EXPECT_EQ( Status::NotFound, chip.qualifierIs( 777, QualId::SrcIp, 1, 1 ) );
}

TEST_F( ChipTest, ValuesWiderThanTheFieldAreRefused ) {
   EntryId e = entry( kIfp );
   EXPECT_EQ( Status::Param, chip.qualifierIs( e, QualId::L4DstPort, 0x10000, 0xFFFF ) );
   EXPECT_EQ( Status::Param, chip.qualifierIs( e, QualId::IpProtocol, 6, 0x1FF ) );
   // 16-byte fields take bytes, and exactly 16 of them.
   EXPECT_EQ( Status::Param, chip.qualifierIs( e, QualId::SrcIp6, 1, 1 ) );
   const std::array<U8, 4> four{};
   EXPECT_EQ( Status::Param, chip.qualifierIs( e, QualId::SrcMac, four, four ) );
   // IpFrag and IpType have their own setters.
   EXPECT_EQ( Status::Param, chip.qualifierIs( e, QualId::IpFrag, 1, 0xFF ) );
   EXPECT_EQ( std::nullopt, chip.qualifier( e, QualId::L4DstPort ) );
   EXPECT_EQ( false, chip.entryPending( e ) );
}

TEST_F( ChipTest, EnumeratedAndBitmapQualifiersReadBack ) {
   EntryId e = entry( kIfp );
   EXPECT_EQ( std::nullopt, chip.ipType( e ) );
   EXPECT_EQ( std::nullopt, chip.ipFrag( e ) );
   EXPECT_EQ( std::nullopt, chip.inPorts( e ) );
   ASSERT_EQ( Status::Ok, chip.ipTypeIs( e, IpType::Ipv6 ) );
   ASSERT_EQ( Status::Ok, chip.ipFragIs( e, IpFrag::NotFirst ) );
   ASSERT_EQ( Status::Ok, chip.inPortsIs( e, PortBitmap{ 1 }, PortBitmap{ 1, 2 } ) );
   EXPECT_EQ( IpType::Ipv6, chip.ipType( e ) );
   EXPECT_EQ( IpFrag::NotFirst, chip.ipFrag( e ) );
   EXPECT_EQ( ( InPortsValue{ PortBitmap{ 1 }, PortBitmap{ 1, 2 } } ), chip.inPorts( e ) );

   // Clearing all qualifiers also clears the port bitmap and the range checkers.
   auto checker = chip.rangeCheckerCreate( { RangeType::DstPort, 1, 5 } );
   ASSERT_EQ( Status::Ok, chip.rangeCheckAttach( e, *checker ) );
   ASSERT_EQ( Status::Ok, chip.qualifiersDelAll( e ) );
   EXPECT_EQ( std::nullopt, chip.ipType( e ) );
   EXPECT_EQ( std::nullopt, chip.inPorts( e ) );
   EXPECT_EQ( std::vector<RangeCheckRef>{}, chip.rangeChecks( e ) );
   EXPECT_EQ( Status::Ok, chip.rangeCheckerDestroy( *checker ) );
}

}  // namespace
}  // namespace Sim
