// Range checker reads in both forms, the checkers of an entry, and user-defined field data in
// the form that the chip takes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::RangeAndUdf" )

namespace SimSdkTest {
namespace {

using ::testing::ElementsAre;

class RangeTest : public SimSdkFixture {
 protected:
   RangeTest() {
      src_ = *chip_.rangeCheckerCreate( { RangeType::SrcPort, 1024, 2047 } );
      dst_ = *chip_.rangeCheckerCreate( { RangeType::DstPort, 80, 90 } );
      len_ = *chip_.rangeCheckerCreate( { RangeType::IpLength, 64, 128 } );
      entry_ = newEntry();
      EXPECT_EQ( Status::Ok, chip_.rangeCheckAttach( entry_, dst_ ) );
      EXPECT_EQ( Status::Ok, chip_.rangeCheckAttach( entry_, src_, true ) );
      EXPECT_EQ( Status::Ok, chip_.rangeCheckAttach( entry_, len_ ) );
   }

   RangeCheckerId src_ = 0, dst_ = 0, len_ = 0;
   EntryId entry_ = 0;
};

TEST_F( RangeTest, RangeGetFillsTypeAndBoundsOfTheNamedChecker ) {
   const struct {
      RangeCheckerId id;
      bcm_range_type_t type;
      int min, max;
   } expected[] = { { src_, bcmRangeTypeL4SrcPort, 1024, 2047 },
                    { dst_, bcmRangeTypeL4DstPort, 80, 90 },
                    { len_, bcmRangeTypePacketLength, 64, 128 } };
   for ( const auto& x : expected ) {
      bcm_range_config_s conf;
      bcm_range_config_t_init( &conf );
      conf.rid_is( x.id );
      EXPECT_EQ( BCM_E_NONE, SDK_NO_CHECK( bcm_range_get( kUnit, &conf ) ) );
      EXPECT_EQ( x.id, conf.rid() );
      EXPECT_EQ( x.type, conf.rtype() );
      EXPECT_EQ( x.min, conf.min() );
      EXPECT_EQ( x.max, conf.max() );
   }
}

TEST_F( RangeTest, OlderFormAnswersFlagsAndBounds ) {
   const struct {
      RangeCheckerId id;
      U32 flags;
      int low, high;
   } expected[] = { { src_, 1, 1024, 2047 }, { dst_, 2, 80, 90 }, { len_, 0x100, 64, 128 } };
   for ( const auto& x : expected ) {
      U32 flags = 0;
      int low = 0, high = 0;
      const RangeCheckerId id = x.id;
      EXPECT_EQ( BCM_E_NONE,
                 SDK_NO_CHECK( bcm_field_range_get( kUnit, id, &flags, &low, &high ) ) );
      EXPECT_EQ( x.flags, flags );
      EXPECT_EQ( x.low, low );
      EXPECT_EQ( x.high, high );
   }
}

TEST_F( RangeTest, RangeCheckGetListsTheEntrysCheckersInOrderOfAttachment ) {
   std::array<bcm_field_range_t, 32> ranges{};
   std::array<int, 32> inverts{};
   int n = -1;
   EXPECT_EQ( BCM_E_NONE, SDK_TRACE_RV( bcm_field_qualify_RangeCheck_get(
                              kUnit, entry_, 32, ranges.data(), inverts.data(), &n ) ) );
   ASSERT_EQ( 3, n );
   EXPECT_THAT( std::vector<bcm_field_range_t>( ranges.begin(), ranges.begin() + n ),
                ElementsAre( dst_, src_, len_ ) );
   EXPECT_THAT( std::vector<int>( inverts.begin(), inverts.begin() + n ), ElementsAre( 0, 1, 0 ) );

   EXPECT_EQ( BCM_E_NONE, SDK_TRACE_RV( bcm_field_qualify_RangeCheck_get(
                              kUnit, entry_, 2, ranges.data(), inverts.data(), &n ) ) );
   EXPECT_EQ( 2, n );
}

// ---- User-defined fields: the form follows the chip kind.

class UdfTest : public SimSdkFixture, public ::testing::WithParamInterface<const char*> {
 protected:
   UdfTest() : SimSdkFixture( GetParam() ) {
      chunk_ = static_cast<int>( *chip_.udfCreate( { UdfBase::L4Payload, 4, 2 } ) );
   }
   bool altForm() const {
      return kind_.attribute( HalyardCentral::ChipAttribute::udfAltFormA ) ||
             kind_.attribute( HalyardCentral::ChipAttribute::udfAltFormB );
   }
   int write( EntryId e, bool alt, U16 length ) {
      return alt ? SDK_TRACE_RV( bcm_field_qualify_udf( kUnit, e, chunk_, length, data_, mask_ ) )
                 : SDK_TRACE_RV( bcm_field_qualify_data( kUnit, e, chunk_, data_, mask_, length ) );
   }
   int read( EntryId e, bool alt, U16 maxLength, U16& length ) {
      return alt ? SDK_TRACE_RV( bcm_field_qualify_udf_get( kUnit, e, chunk_, maxLength, readData_,
                                                            readMask_, &length ) )
                 : SDK_TRACE_RV( bcm_field_qualify_data_get( kUnit, e, chunk_, maxLength, readData_,
                                                             readMask_, &length ) );
   }

   int chunk_ = 0;
   U8 data_[2] = { 0x12, 0x34 };
   U8 mask_[2] = { 0xff, 0x0f };
   U8 readData_[4] = {};
   U8 readMask_[4] = {};
};

TEST_P( UdfTest, TheChipsFormWritesAndReadsBack ) {
   const EntryId e = newEntry();
   U16 length = 0;
   EXPECT_EQ( BCM_E_NOT_FOUND, read( e, altForm(), 4, length ) );
   EXPECT_EQ( BCM_E_NONE, write( e, altForm(), 2 ) );
   const auto stored = chip_.udfData( e, static_cast<UdfId>( chunk_ ) );
   ASSERT_TRUE( stored.has_value() );
   EXPECT_EQ( 0x12, stored->data[0] );
   EXPECT_EQ( 0x0f, stored->mask[1] );

   EXPECT_EQ( BCM_E_NONE, read( e, altForm(), 4, length ) );
   EXPECT_EQ( 2, length );
   EXPECT_THAT( readData_, ElementsAre( 0x12, 0x34, 0, 0 ) );
   EXPECT_THAT( readMask_, ElementsAre( 0xff, 0x0f, 0, 0 ) );
   EXPECT_EQ( SdkValues::kParam, read( e, altForm(), 1, length ) );
}

TEST_P( UdfTest, TheOtherFormIsUnavailableAndChangesNothing ) {
   const EntryId e = newEntry();
   U16 length = 0;
   EXPECT_EQ( SdkValues::kUnavail, write( e, !altForm(), 2 ) );
   EXPECT_FALSE( chip_.udfData( e, static_cast<UdfId>( chunk_ ) ).has_value() );
   EXPECT_EQ( SdkValues::kUnavail, read( e, !altForm(), 4, length ) );
}

TEST_P( UdfTest, DataMustBeAsLongAsTheChunk ) {
   const EntryId e = newEntry();
   EXPECT_EQ( SdkValues::kParam, write( e, altForm(), 1 ) );
   EXPECT_FALSE( chip_.udfData( e, static_cast<UdfId>( chunk_ ) ).has_value() );
}

// Plain form, each of the two other-form attributes.
INSTANTIATE_TEST_SUITE_P( Kinds, UdfTest,
                          ::testing::Values( "trident2", "trident3", "tomahawk3" ) );

}  // namespace
}  // namespace SimSdkTest
