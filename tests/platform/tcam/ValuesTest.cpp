// The value types of the TCAM interfaces and status records: equality,
// ordering, hashes that tell keys apart, and text that parses back.
#include <gtest/gtest.h>

#include "platform/status/AclModSvi.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/tcam/HalyardModInfo.h"
#include "platform/tcam/ModRequest.h"
#include "platform/vesper/Exception.h"

namespace {

using HalyardCentral::ChipInfo;
using HalyardVlanTopo::AclModSvi;

TEST( ChipInfoTest, EqualityOrderingAndHashCoverEveryField ) {
   const ChipInfo a( 7, 0xB960, 1 );
   EXPECT_EQ( a, ChipInfo( 7, 0xB960, 1 ) );
   EXPECT_EQ( a.hash(), ChipInfo( 7, 0xB960, 1 ).hash() );
   for ( const ChipInfo& other :
         { ChipInfo( 8, 0xB960, 1 ), ChipInfo( 7, 0xB961, 1 ), ChipInfo( 7, 0xB960, 2 ) } ) {
      EXPECT_NE( a, other );
      EXPECT_NE( a.hash(), other.hash() );
      EXPECT_LT( a, other );
   }
   EXPECT_LT( ChipInfo( 7, 0xFFFF, 9 ), ChipInfo( 8, 0, 0 ) ) << "family code first";
   EXPECT_FALSE( ChipInfo( 0, 0, 1 ).isEmpty() ) << "any field set makes it a chip type";
}

TEST( ChipInfoTest, TextRoundTrips ) {
   const ChipInfo chip( 8, 47200, 3 );
   const std::string text = valueToStrep( chip );
   EXPECT_EQ( text,
              "Value('HalyardCentral::ChipInfo', ** {'familyCode': 8, 'deviceId': 47200, "
              "'revisionId': 3})" );
   EXPECT_EQ( HalyardCentral::strepToValue<ChipInfo>( text ), chip );
   EXPECT_THROW( HalyardCentral::strepToValue<ChipInfo>(
                     "Value('HalyardCentral::ChipInfo', ** {'familyCode': x, 'deviceId': 1, "
                     "'revisionId': 3})" ),
                 Vesper::ParseException );
}

TEST( AclModSviTest, KeysOfChipAndVlanAreDistinct ) {
   const AclModSvi a( Pylon::ModId( 1 ), Pylon::VlanId( 2 ) );
   const AclModSvi swapped( Pylon::ModId( 2 ), Pylon::VlanId( 1 ) );
   EXPECT_NE( a, swapped );
   EXPECT_NE( a.hash(), swapped.hash() );
   EXPECT_LT( a, swapped ) << "module id first";
   EXPECT_LT( a, AclModSvi( Pylon::ModId( 1 ), Pylon::VlanId( 3 ) ) );
}

TEST( AclModSviTest, TextRoundTripsAndRangesHold ) {
   const AclModSvi key( Pylon::ModId( 3 ), Pylon::VlanId( 4094 ) );
   const std::string text = valueToStrep( key );
   EXPECT_EQ( text, "Value('HalyardVlanTopo::AclModSvi', ** {'modId': 3, 'vlanId': 4094})" );
   EXPECT_EQ( HalyardVlanTopo::strepToValue<AclModSvi>( text ), key );
   EXPECT_THROW( HalyardVlanTopo::strepToValue<AclModSvi>(
                     "Value('HalyardVlanTopo::AclModSvi', ** {'modId': 3, 'vlanId': 4095})" ),
                 Vesper::RangeException );
}

TEST( HalyardModInfoTest, FamilyCodeReadsThroughToTheChipType ) {
   const Halyard::HalyardModInfo info( 2, Pylon::ModId( 5 ), ChipInfo( 7, 1, 0 ), "chip2" );
   EXPECT_EQ( info.familyCode(), 7u );
   EXPECT_NE( info, Halyard::HalyardModInfo( 2, Pylon::ModId( 5 ), ChipInfo( 7, 1, 0 ), "chip3" ) );
   EXPECT_TRUE( Halyard::HalyardModInfo().modId().isNull() ) << "an unknown unit has no module";
   EXPECT_EQ( valueToStrep( info ),
              "Value('Halyard::HalyardModInfo', ** {'chip': 2, 'modId': 5, 'chipInfo': "
              "Value('HalyardCentral::ChipInfo', ** {'familyCode': 7, 'deviceId': 1, "
              "'revisionId': 0}), 'chipName': 'chip2'})" );
}

}  // namespace
