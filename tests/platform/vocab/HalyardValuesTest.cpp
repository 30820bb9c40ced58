// The smaller Halyard values: ports, UDF data, qualifier lists, range
// checker keys, a rule's UDF map, and the constants.
#include <gtest/gtest.h>

#include <set>

#include "platform/halyard/AclRuleUdfData.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/halyard/HalyardPort.h"
#include "platform/halyard/RangeCheckerDesc.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using Halyard::AclRuleUdfData;
using Halyard::QualIdList;
using Halyard::RangeCheckerDesc;
using Halyard::UdfData;
using HalyardTypes::HalyardPort;

TEST( HalyardPortTest, PacksUnitLowAndPortHigh ) {
   HalyardPort p( 3, 0x1234 );
   EXPECT_EQ( 0x12340003u, p.value() );
   EXPECT_EQ( p, HalyardPort::fromValue( 0x12340003u ) );
   EXPECT_EQ( 0xFFFFFFFFu, HalyardPort( 0xFFFF, 0xFFFF ).value() );
   VocabTest::expectThrowText<Vesper::RangeException>( [] { HalyardPort( 0x10000, 0 ); },
                                                       "HalyardPort::unit > 0xFFFF not allowed" );
   VocabTest::expectThrowText<Vesper::RangeException>( [] { HalyardPort( 0, 0x10000 ); },
                                                       "HalyardPort::port > 0xFFFF not allowed" );
}

TEST( HalyardPortTest, OrdersByUnitThenPortAndRoundTripsText ) {
   // Unit 0 port 9 packs above unit 1 port 1, yet sorts before it.
   EXPECT_LT( HalyardPort( 0, 9 ), HalyardPort( 1, 1 ) );
   EXPECT_LT( HalyardPort( 1, 1 ), HalyardPort( 1, 2 ) );
   HalyardPort p( 1, 52 );
   EXPECT_EQ( "Value('HalyardTypes::HalyardPort', ** {'unit': 1, 'port': 52})", valueToStrep( p ) );
   EXPECT_EQ( p, HalyardTypes::strepToValue<HalyardPort>( valueToStrep( p ) ) );
}

TEST( UdfDataTest, TextHasTheStatedFormAndRoundTrips ) {
   UdfData data( Halyard::udfOffsetBaseL3Payload, 6, 0x1234, 0xFFFF, 17 );
   std::string text = valueToStrep( data );
   EXPECT_EQ(
       "Value('Halyard::UdfData', ** {'base': udfOffsetBaseL3Payload, 'offset': 6, "
       "'pattern': 4660, 'mask': 65535, 'proto': 17})",
       text );
   EXPECT_EQ( data, Halyard::strepToValue<UdfData>( text ) );
   EXPECT_EQ( UdfData(), Halyard::strepToValue<UdfData>( valueToStrep( UdfData() ) ) );
}

TEST( UdfDataTest, EqualityCoversAllFiveFields ) {
   const UdfData base( Halyard::udfOffsetBaseL2Header, 2, 3, 4, 5 );
   for ( const UdfData& other : { UdfData( Halyard::udfOffsetBaseL2Payload, 2, 3, 4, 5 ),
                                  UdfData( Halyard::udfOffsetBaseL2Header, 9, 3, 4, 5 ),
                                  UdfData( Halyard::udfOffsetBaseL2Header, 2, 9, 4, 5 ),
                                  UdfData( Halyard::udfOffsetBaseL2Header, 2, 3, 9, 5 ),
                                  UdfData( Halyard::udfOffsetBaseL2Header, 2, 3, 4, 9 ) } ) {
      EXPECT_NE( base, other ) << other;
   }
}

TEST( UdfDataTest, OutOfRangeFieldIsNamed ) {
   std::string message = VocabTest::parseErrorText( [] {
      Halyard::strepToValue<UdfData>(
          "Value('Halyard::UdfData', ** {'base': udfOffsetBaseNone, 'offset': 65536, "
          "'pattern': 0, 'mask': 0, 'proto': 0})" );
   } );
   EXPECT_NE( std::string::npos, message.find( "attribute \"offset\" from '65536'" ) ) << message;
}

TEST( QualIdListTest, TextRoundTrips ) {
   QualIdList list{ 42, 3 };
   EXPECT_EQ( "Value('Halyard::QualIdList', ** {'qualId': [3, 42]})", valueToStrep( list ) );
   EXPECT_EQ( list, Halyard::strepToValue<QualIdList>( valueToStrep( list ) ) );
}

TEST( RangeCheckerDescTest, HashIsPinnedOverThreeWords ) {
   // Pinned: Python oaat (see HalyardAclTypeDirectionFeatureTest) over
   // low, high, type as little-endian 32-bit words.
   EXPECT_EQ( 0xe31dbcfbu, RangeCheckerDesc( 1024, 65535, Halyard::rangeCheckerDstPort ).hash() );
   EXPECT_EQ( 0x131edfe9u, RangeCheckerDesc( 80, 80, Halyard::rangeCheckerSrcPort ).hash() );
   EXPECT_EQ( 0x8a4e8078u, RangeCheckerDesc( 64, 1500, Halyard::rangeCheckerIpLength ).hash() );
}

TEST( RangeCheckerDescTest, SameRangeOfAnotherTypeIsAnotherKey ) {
   RangeCheckerDesc src( 1000, 2000, Halyard::rangeCheckerSrcPort );
   RangeCheckerDesc dst( 1000, 2000, Halyard::rangeCheckerDstPort );
   EXPECT_NE( src, dst );
   EXPECT_NE( src.hash(), dst.hash() );
   std::set<RangeCheckerDesc> keys{ src, dst, src };
   EXPECT_EQ( 2u, keys.size() );
   EXPECT_EQ( src, *keys.begin() );
   EXPECT_EQ( dst, Halyard::strepToValue<RangeCheckerDesc>( valueToStrep( dst ) ) );
}

TEST( AclRuleUdfDataDeathTest, ParsingStopsOnTheAssertion ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   EXPECT_DEATH( Halyard::strepToValue<AclRuleUdfData>( "anything" ),
                 "Assertion `!\"No String constructor for AclRuleUdfData - has collection\"' "
                 "failed" );
}

}  // namespace
