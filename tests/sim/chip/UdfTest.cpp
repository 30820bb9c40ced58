// User-defined fields: chunks at an offset from a header boundary, matched against the bytes
// of the packet as it stands on the wire.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

class UdfTest : public ChipTest {
 protected:
   // An installed entry whose only term is `data` under `mask` in a new chunk.
   EntryId udfEntry( UdfBase base, U8 offset, std::vector<U8> data, std::vector<U8> mask ) {
      auto chunk = chip.udfCreate( UdfChunk{ base, offset, static_cast<U8>( data.size() ) } );
      EXPECT_TRUE( chunk );
      EntryId e = entry( kIfp );
      EXPECT_EQ( Status::Ok, chip.udfDataIs( e, *chunk, data, mask ) );
      install( e );
      return e;
   }
   bool hits( EntryId e, const Packet& p ) { return chip.lookup( p ).hitIn( kIfp ) == e; }
};

TEST_F( UdfTest, PayloadBytesAfterTheL4Header ) {
   EntryId e = udfEntry( UdfBase::L4Payload, 2, { 0x12, 0x34 }, { 0xFF, 0xFF } );
   EXPECT_TRUE( hits( e, tcp().payloadIs( { 0, 0, 0x12, 0x34, 9 } ) ) );
   EXPECT_FALSE( hits( e, tcp().payloadIs( { 0, 0, 0x12, 0x35 } ) ) );
   // The same bytes after a UDP header: the base moves with the header's size.
   auto udp = Packet::udp4( 1, 2, 3, 4 ).ingressPortIs( 1 ).payloadIs( { 0, 0, 0x12, 0x34 } );
   EXPECT_TRUE( hits( e, udp ) );
}

TEST_F( UdfTest, L2BaseCountsFromTheFrame ) {
   // Bytes 12 and 13: the TPID of a tagged frame.
   EntryId e = udfEntry( UdfBase::L2Header, 12, { 0x81, 0x00 }, { 0xFF, 0xFF } );
   EXPECT_TRUE( hits( e, tcp().taggedIs( 5 ) ) );
   EXPECT_FALSE( hits( e, tcp() ) );
}

TEST_F( UdfTest, MaskedBitsOnlyAndMissingBases ) {
   EntryId e = udfEntry( UdfBase::L4Payload, 0, { 0xA0, 0x00 }, { 0xF0, 0x00 } );
   EXPECT_TRUE( hits( e, tcp().payloadIs( { 0xAB, 0xCD } ) ) );
   // A packet without layer 4 header has no such base: the chunk cannot match.
   EXPECT_FALSE( hits( e, Packet::ethernet( kEtherTypeArp )
                              .ingressPortIs( 1 )
                              .payloadIs( std::vector<U8>( 60, 0xA0 ) ) ) );
   EXPECT_FALSE( hits( e, tcp().fragmentIs( false, 4 ).payloadIs( { 0xA0 } ) ) );
   // Bytes past the end of the packet read as zero.
   EntryId zero = udfEntry( UdfBase::L4Payload, 200, { 0x00 }, { 0xFF } );
   EXPECT_EQ( zero, chip.lookup( tcp().payloadIs( { 1, 2, 3 } ) ).hitIn( kIfp ) );
}

}  // namespace
}  // namespace Sim
