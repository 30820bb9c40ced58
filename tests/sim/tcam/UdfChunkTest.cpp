// User-defined field chunks: shared per unit by where they read the packet, limited per chip,
// and read by the lookup from the header the back-end names.
#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

constexpr int kIpv4 = 0;
constexpr int kMac = 2;

class UdfChunks : public TcamTest {
 protected:
   U32 only( const QualIdList& list ) {
      EXPECT_EQ( 1u, list.size() );
      return list.empty() ? 0 : *list.begin();
   }
   // An installed IP ACL entry dropping packets whose chunk `qual` holds `data` under `mask`.
   U32 dropOnChunk( U32 qual, std::vector<U8> data, std::vector<U8> mask ) {
      const U32 e = ip->getEntry( kUnit, "payload" );
      EXPECT_EQ( Status::Ok, chip.udfDataIs( e, qual, data, mask ) );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
      ip->installEntry( kUnit, e );
      return e;
   }
};

TEST_F( UdfChunks, SharedByThePlaceTheyReadAndGivenBack ) {
   const U32 q = only( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 4, 2 ) );
   EXPECT_EQ( ( UdfChunk{ UdfBase::L4Header, 4, 2 } ), chip.udf( q ) );
   EXPECT_EQ( q, only( mac->getAclUdf( kUnit, kIpv4, 17, udfOffsetBaseL3Payload, 4, 2 ) ) );
   EXPECT_EQ( 2u, gm->udfChunkUses( kUnit, udfOffsetBaseL3Payload, 4, 2 ) );
   // The end of the Ethernet header is where the IP header starts.
   const U32 l3 = only( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Header, 4, 2 ) );
   EXPECT_EQ( l3, only( ip->getAclUdf( kUnit, kMac, 0x800, udfOffsetBaseL2Payload, 4, 2 ) ) );
   EXPECT_NE( l3, only( ip->getAclUdf( kUnit, kMac, 0x800, udfOffsetBaseL2Header, 4, 2 ) ) );
   EXPECT_NE( q, only( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 6, 2 ) ) );
   EXPECT_EQ( 4u, chip.udfIds().size() );

   ip->releaseAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 4, 2 );
   EXPECT_TRUE( chip.udf( q ) );
   mac->releaseAclUdf( kUnit, kIpv4, 17, udfOffsetBaseL3Payload, 4, 2 );
   EXPECT_EQ( std::nullopt, chip.udf( q ) );
   EXPECT_EQ( 0u, gm->udfChunkUses( kUnit, udfOffsetBaseL3Payload, 4, 2 ) );
   EXPECT_TRUE( otherChip.udfIds().empty() );
}

TEST_F( UdfChunks, TheChipLimitGivesAnEmptyList ) {
   for ( U8 offset = 0; offset < 8; offset += 2 ) {
      EXPECT_EQ( 1u, ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, offset, 2 ).size() );
   }
   EXPECT_TRUE( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 8, 2 ).empty() );
   EXPECT_EQ( 1u, ip->getAclUdf( kOther, kIpv4, 6, udfOffsetBaseL3Payload, 8, 2 ).size() );
   ip->releaseAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 0, 2 );
   EXPECT_EQ( 1u, ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 8, 2 ).size() );
   EXPECT_TRUE( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseNone, 0, 2 ).empty() );
}

TEST_F( UdfChunks, TheLookupReadsFromTheNamedHeader ) {
   // From the end of the IP header: bytes 2 and 3 are the TCP destination port.
   const U32 port = only( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 2, 2 ) );
   const U32 e = dropOnChunk( port, { 0x12, 0x34 }, { 0xFF, 0xFF } );
   EXPECT_EQ( e, chip.lookup( tcpTo( 0x1234 ) ).hitIn( tcamGroupIpAcl ) );
   EXPECT_FALSE( chip.lookup( tcpTo( 0x1235 ) ).dropped );
   // From the start of the IP header: byte 9 is the protocol.
   const U32 proto = only( ip->getAclUdf( kUnit, kIpv4, 17, udfOffsetBaseL3Header, 8, 2 ) );
   dropOnChunk( proto, { 0x00, kProtoUdp }, { 0x00, 0xFF } );
   EXPECT_TRUE( chip.lookup( Packet::udp4( 1, 2, 3, 4 ).ingressPortIs( 1 ) ).dropped );
   EXPECT_FALSE( chip.lookup( tcpTo( 80 ) ).dropped );
}

TEST_F( UdfChunks, AChunkStaysWhileAnEntryStillReadsIt ) {
   const U32 q = only( ip->getAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 2, 2 ) );
   const U32 e = dropOnChunk( q, { 0x12, 0x34 }, { 0xFF, 0xFF } );
   ip->releaseAclUdf( kUnit, kIpv4, 6, udfOffsetBaseL3Payload, 2, 2 );
   EXPECT_TRUE( chip.udf( q ) );
   EXPECT_TRUE( chip.lookup( tcpTo( 0x1234 ) ).dropped );
   ip->releaseEntry( kUnit, e );
   EXPECT_EQ( std::nullopt, chip.udf( q ) );
}

}  // namespace
}  // namespace Sim
