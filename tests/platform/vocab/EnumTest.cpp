// The enumeration text helper, over the enumerations of the vocabulary.
#include <gtest/gtest.h>

#include "platform/acl/AclTypes.h"
#include "platform/fennel/AclCreateError.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/halyard/UdfData.h"
#include "platform/vesper/Enum.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using Vesper::sequenceToValue;
using Vesper::stringValue;

TEST( EnumTest, ManagementEntryOffsetsAreStable ) {
   EXPECT_EQ( "aclMgmtTcamVlanBlock", stringValue( Halyard::AclManagementTcams( 5 ) ) );
   EXPECT_EQ( "aclMgmtTcamEgressBlock2", stringValue( Halyard::AclPortBlockingTcams( 3 ) ) );
}

TEST( EnumTest, EveryRegisteredNameRoundTrips ) {
   for ( const auto& entry : Vesper::enumNames<Halyard::HalyardAclFeature>().names ) {
      EXPECT_EQ( entry.value,
                 sequenceToValue<Halyard::HalyardAclFeature>( stringValue( entry.value ) ) );
   }
   for ( const auto& entry : Vesper::enumNames<Halyard::UdfOffsetBase>().names ) {
      EXPECT_EQ( entry.value,
                 sequenceToValue<Halyard::UdfOffsetBase>( stringValue( entry.value ) ) );
   }
}

TEST( EnumTest, UnnamedValuesPrintAsNumbersAndParseBack ) {
   // A create result the back-end does not name passes upward unchanged.
   auto passedThrough = Fennel::AclCreateError( 42 );
   EXPECT_EQ( "42", stringValue( passedThrough ) );
   EXPECT_EQ( passedThrough, sequenceToValue<Fennel::AclCreateError>( "42" ) );
   EXPECT_EQ( "aclCreateNotExpressible", stringValue( Fennel::AclCreateError( 13 ) ) );
   // A number that names a value parses to it as well.
   EXPECT_EQ( Halyard::aclFeatureNone, sequenceToValue<Halyard::HalyardAclFeature>( "7" ) );
}

TEST( EnumTest, BadTextNamesTheTypeAndTheText ) {
   VocabTest::expectThrowText<Vesper::ParseException>(
       [] { sequenceToValue<Halyard::HalyardAclFeature>( "aclFeaturenone" ); },
       "'aclFeaturenone' is not a value of Halyard::HalyardAclFeature" );
   VocabTest::expectThrowText<Vesper::ParseException>(
       [] { sequenceToValue<Acl::AclDirection>( "-1" ); },
       "'-1' is not a value of Acl::AclDirection" );
}

}  // namespace
