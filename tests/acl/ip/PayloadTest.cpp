// Payload matches: each 32-bit word of a rule's payload becomes one user-defined field per
// 16-bit half whose mask is not 0, at the word's byte offset (plus 2 for the low half), with the
// pattern's bytes most significant first; the entry then matches the packet's bytes there. Run
// on the chips that match payloads, which take the two forms of the SDK's UDF calls.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "platform/acl/PayloadSpec.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/chip/Packet.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclIpTest {

using namespace HalyardTest;
namespace {

using Halyard::QualIdList;
using Halyard::UdfData;
using Sim::ip4;

// Words 2, 3 and 4 after the IP header: bytes 8 to 11 whole (the start of a UDP payload), the
// low half of word 3 (bytes 14, 15), the high half of word 4 (bytes 16, 17).
const Acl::PayloadSpec spec( Acl::PayloadStart::headerEnd, { { 2, 0x12345678, 0xFFFFFFFF },
                                                             { 3, 0x0000ABCD, 0x0000FFFF },
                                                             { 4, 0xBEEF0000, 0xFFFF0000 } } );

class PayloadTest : public ::testing::TestWithParam<std::string> {
 protected:
   explicit PayloadTest( const HalyardTest::AgentOptions& options = {} )
       : sw_( HalyardTest::SwitchLayout( { GetParam() } ), options ) {}

   Acl::RuleConfig payloadRule( Acl::Action action ) {
      Acl::IpFilter filter = ip4Filter( 17 );
      filter.payloadIs( spec );
      return ip4Rule( action, filter );
   }
   // The UDF data that the chip holds for the entry, by the offset of its chunk.
   std::map<U8, std::vector<U8> > udfBytes( U32 entry ) {
      std::map<U8, std::vector<U8> > out;
      for ( const Sim::UdfId id : sw_.chip( 0 ).udfIds() ) {
         if ( const auto value = sw_.chip( 0 ).udfData( entry, id ) ) {
            const Sim::UdfChunk chunk = sw_.chip( 0 ).udf( id ).value();
            EXPECT_EQ( Sim::UdfBase::L4Header, chunk.base );
            out[chunk.offset] =
                std::vector<U8>( value->data.begin(), value->data.begin() + value->length );
         }
      }
      return out;
   }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_;
};

TEST_P( PayloadTest, WordsBecomeFieldsAndPacketsMatchThem ) {
   DrivenAcl acl( sw_, "p", Acl::ip_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   acl.rulesCommitted( { { payloadRule( Acl::permit_ ), { Terms{} } } } );
   const U32 entry = acl.entries( 0, 0 ).at( 0 );
   // A payload takes the ACL out of VFP, which has no user-defined fields.
   EXPECT_EQ( Halyard::tcamGroupIpAcl, HalyardTest::groupOf( sw_.chip( 0 ), entry ) );
   const std::map<U8, std::vector<U8> > expected = { { 8, { 0x12, 0x34 } },
                                                     { 10, { 0x56, 0x78 } },
                                                     { 14, { 0xAB, 0xCD } },
                                                     { 16, { 0xBE, 0xEF } } };
   EXPECT_EQ( expected, udfBytes( entry ) );
   std::map<U16, UdfData> recorded;
   for ( const auto& [qualIds, data] : acl.common( 0 )->aclRule( 0 )->udfDataForRule() ) {
      EXPECT_EQ( 1u, sw_.groupManager()->udfChunkUses( 0, data.base(), data.offset(), 2 ) );
      recorded[data.offset()] = data;
   }
   const Halyard::UdfOffsetBase base = Halyard::udfOffsetBaseL3Payload;
   EXPECT_EQ( ( std::map<U16, UdfData>{ { 8, UdfData( base, 8, 0x1234, 0xFFFF, 17 ) },
                                        { 10, UdfData( base, 10, 0x5678, 0xFFFF, 17 ) },
                                        { 14, UdfData( base, 14, 0xABCD, 0xFFFF, 17 ) },
                                        { 16, UdfData( base, 16, 0xBEEF, 0xFFFF, 17 ) } } ),
              recorded );

   std::vector<U8> bytes = { 0x12, 0x34, 0x56, 0x78, 0, 0, 0xAB, 0xCD, 0xBE, 0xEF, 0x99 };
   auto sent = [&]( const std::vector<U8>& payload ) {
      return sw_.sim().inject(
          intfName( 0, 1 ),
          Sim::Packet::udp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1, 2 ).payloadIs( payload ),
          intfName( 0, 2 ) );
   };
   EXPECT_TRUE( sent( bytes ).forwarded() );
   bytes[4] = 0x77;  // the high half of word 3 is not looked at
   EXPECT_TRUE( sent( bytes ).forwarded() );
   for ( const size_t i : { 0, 3, 6, 9 } ) {
      std::vector<U8> other = bytes;
      other[i] ^= 0x01;
      EXPECT_FALSE( sent( other ).forwarded() ) << "byte " << i;
   }
}

// A rule without a payload asks the manager for nothing.
TEST_P( PayloadTest, NoPayloadNoField ) {
   DrivenAcl acl( sw_, "p", Acl::ip_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   ASSERT_EQ( 0, acl.ruleIs( ip4Rule( Acl::permit_, ip4Filter( 17 ) ) ) );
   EXPECT_TRUE( sw_.chip( 0 ).udfIds().empty() );
   EXPECT_EQ( 0u, acl.common( 0 )->aclRule( 0 )->udfDataForRule().size() );
}

class FewFieldsTest : public PayloadTest {
 protected:
   static HalyardTest::AgentOptions twoFields() {
      HalyardTest::AgentOptions options;
      Sim::UnitLimits limits;
      limits.rangeCheckers = 8;
      limits.udfChunks = 2;
      options.sim.unitLimits = limits;
      return options;
   }
   FewFieldsTest() : PayloadTest( twoFields() ) {}
};

// The third field cannot be had: 12, with the marks of a failed rule and the unit error; the
// fields obtained so far stay recorded for teardown, and the entry stays in the rule's list.
TEST_P( FewFieldsTest, UdfErrorKeepsWhatItGot ) {
   DrivenAcl acl( sw_, "p", Acl::ip_, Acl::in_, { HalyardTest::intfOf( 0, 1 ) } );
   EXPECT_EQ( Fennel::aclCreateUdfError, acl.ruleIs( payloadRule( Acl::deny_ ) ) );
   EXPECT_EQ( 2u, acl.common( 0 )->aclRule( 0 )->udfDataForRule().size() );
   EXPECT_EQ( 1u, acl.entries( 0, 0 ).size() );
   EXPECT_TRUE( acl.common( 0 )->dirty() );
   EXPECT_TRUE( sw_.helper()->unitDirty( 0 ) );
   const Vesper::Name chip = sw_.sim().hcsd()->halyardModId( 0 ).chipName();
   EXPECT_EQ( Fennel::aclCreateUdfError, sw_.helper()->unitError( chip ) );
}

INSTANTIATE_TEST_SUITE_P( PayloadChips, PayloadTest,
                          ::testing::Values( "trident3", "tomahawk3", "jericho" ) );
INSTANTIATE_TEST_SUITE_P( PayloadChips, FewFieldsTest, ::testing::Values( "trident3" ) );

}  // namespace
}  // namespace AclIpTest
