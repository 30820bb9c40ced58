// The chip-attribute lookup: unit to chip type, by the group manager or by
// the common data, then chip type to its row in the process-wide table.
#include <gtest/gtest.h>

#include "platform/tcam/ChipLookup.h"
#include "platform/tcam/HalyardAttributes.h"
#include "tests/platform/tcam/TcamTestSupport.h"

namespace {

using HalyardCentral::ChipAttribute;
using HalyardCentral::ChipAttributes;
using HalyardCentral::ChipInfo;
using Vesper::Ptr;

const ChipInfo familySeven( 7, 0xB960, 1 );
const ChipInfo familyEight( 8, 0xB970, 0 );

Halyard::HalyardModInfo modInfo( U16 chip, U16 modId, const ChipInfo& chipInfo ) {
   return Halyard::HalyardModInfo( chip, Pylon::ModId( modId ), chipInfo,
                                   "chip" + std::to_string( chip ) );
}

// Two chip types with rows told apart by usesRangeConfig; units 0 and 1 of
// family seven, unit 2 of family eight, in both the group manager and the
// common data.
class ChipLookupTest : public TcamTest::ActivityTest {
 protected:
   void SetUp() override {
      auto table = HalyardCentral::halyardAttributesFactory();
      seven_ = row( false );
      eight_ = row( true );
      table->chipIs( familySeven, seven_ );
      table->chipIs( familyEight, eight_ );
      HalyardCentral::halyardAttributesIs( table );
      for ( U16 unit : { 0, 1 } ) {
         gm_->modChipInfoIs( unit, familySeven );
         hcsd_->halyardModIdIs( unit, modInfo( unit, unit + 1, familySeven ) );
      }
      gm_->modChipInfoIs( 2, familyEight );
      hcsd_->halyardModIdIs( 2, modInfo( 2, 3, familyEight ) );
   }
   void TearDown() override { HalyardCentral::halyardAttributesIs( nullptr ); }

   static Ptr<const ChipAttributes> row( bool usesRangeConfig ) {
      auto attrs = HalyardCentral::chipAttributesFactory();
      attrs->attributeIs( ChipAttribute::usesRangeConfig, usesRangeConfig );
      return attrs;
   }

   Ptr<const ChipAttributes> seven_, eight_;
   Ptr<TcamTest::InertGroupManager> gm_ = TcamTest::InertGroupManager::create();
   Halyard::HalyardCommonSmData::Ptr hcsd_ = Halyard::halyardCommonSmDataFactory();
};

TEST_F( ChipLookupTest, KnownUnitFindsTheRowOfItsChipType ) {
   EXPECT_EQ( Halyard::unitChipInfo( *gm_, 2 ), familyEight );
   EXPECT_EQ( Halyard::chipAttributesForUnit( *gm_, 2 ), eight_ );
   EXPECT_EQ( Halyard::chipAttributesForUnit( *gm_, 1 ), seven_ );
   EXPECT_EQ( Halyard::chipAttributesForUnit( *hcsd_, 2 ), eight_ );
   EXPECT_EQ( Halyard::chipAttributesForUnit( *hcsd_, 0 ), seven_ );
}

TEST_F( ChipLookupTest, UnknownUnitYieldsTheEmptyChipInfoWithoutARow ) {
   EXPECT_EQ( Halyard::unitChipInfo( *gm_, 9 ), ChipInfo() );
   EXPECT_TRUE( Halyard::unitChipInfo( *hcsd_, 9 ).isEmpty() );
   EXPECT_EQ( HalyardCentral::chipAttributes( ChipInfo() ), nullptr );
   EXPECT_FALSE( gm_->modChipInfoHas( 9 ) ) << "a lookup adds no member";
}

TEST_F( ChipLookupTest, UnitAbove16BitsDoesNotWrapOntoASmallUnit ) {
   EXPECT_TRUE( Halyard::unitChipInfo( *gm_, 0x10002 ).isEmpty() );
   EXPECT_TRUE( Halyard::unitChipInfo( *hcsd_, 0x10000 ).isEmpty() );
}

TEST_F( ChipLookupTest, UnknownUnitStopsTheProcessRatherThanFaultLater ) {
   EXPECT_DEATH( Halyard::chipAttributesForUnit( *gm_, 9 ),
                 "Assertion `chipAttr && \"chip attributes of the unit's chip\"' failed" );
   gm_->modChipInfoIs( 4, ChipInfo( 9, 9, 9 ) );
   EXPECT_DEATH( Halyard::chipAttributesForUnit( *gm_, 4 ), "chip attributes of the unit's chip" )
       << "a chip type without a row is as fatal as an unknown unit";
}

TEST_F( ChipLookupTest, FirstModuleIsTheFirstUnitInWalkOrder ) {
   // Units 1 and 2 of different types: the walk goes by the bit-reversed
   // unit number, so unit 2 (0x40000000) comes before unit 1 (0x80000000).
   hcsd_->halyardModIdDel( 0 );
   const U16 first = hcsd_->halyardModId().iterator().currNodeNonStale()->key();
   ASSERT_EQ( first, 2 );
   EXPECT_EQ( Halyard::firstModuleChipInfo( *hcsd_ ), familyEight );
   EXPECT_EQ( Halyard::chipAttributesForFirstModule( *hcsd_ ), eight_ );
   hcsd_->halyardModIdDel( 2 );
   EXPECT_EQ( Halyard::chipAttributesForFirstModule( *hcsd_ ), seven_ );
   hcsd_->halyardModIdDelAll();
   EXPECT_TRUE( Halyard::firstModuleChipInfo( *hcsd_ ).isEmpty() ) << "no module";
}

TEST_F( ChipLookupTest, InstalledTableIsTheOneInForceUntilReset ) {
   EXPECT_EQ( HalyardCentral::chipAttributes( familySeven ), seven_ );
   HalyardCentral::halyardAttributesIs( nullptr );
   ASSERT_NE( HalyardCentral::halyardAttributes(), nullptr ) << "never null";
   EXPECT_EQ( HalyardCentral::chipAttributes( familySeven ), nullptr ) << "an empty table stands";
   EXPECT_TRUE( HalyardCentral::halyardAttributes()->chip().empty() );
}

TEST_F( ChipLookupTest, NullRowDeletesTheMember ) {
   auto table = HalyardCentral::halyardAttributes();
   table->chipIs( familySeven, nullptr );
   EXPECT_FALSE( table->chipHas( familySeven ) );
   EXPECT_EQ( table->chipDel( familyEight ), eight_ );
   EXPECT_TRUE( table->chip().empty() );
}

}  // namespace
