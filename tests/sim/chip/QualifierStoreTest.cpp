// Qualifiers as the SDK reads them back: exactly what was written, or not found.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

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

}  // namespace
}  // namespace Sim
