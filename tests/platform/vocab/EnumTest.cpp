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

TEST( EnumTest, FeatureNumbersAreStableAndPrintTheirNames ) {
   EXPECT_EQ( "aclFeatureNone", stringValue( Halyard::HalyardAclFeature( 7 ) ) );
   EXPECT_EQ( "aclFeatureSecurity", stringValue( Halyard::HalyardAclFeature( 0 ) ) );
   EXPECT_EQ( "aclFeatureMirroring3", stringValue( Halyard::HalyardAclFeature( 3 ) ) );
   EXPECT_EQ( "aclFeatureUrpfTHxV4Exception", stringValue( Halyard::HalyardAclFeature( 5 ) ) );
   EXPECT_EQ( "aclFeatureUrpfTHxV4V6Exception", stringValue( Halyard::HalyardAclFeature( 6 ) ) );
   EXPECT_EQ( 4u, Halyard::aclFeatureMirroring4 );
}

TEST( EnumTest, ManagementEntryOffsetsAreStable ) {
   EXPECT_EQ( "aclMgmtTcamVfpDropLog", stringValue( Halyard::AclManagementTcams( 2 ) ) );
   EXPECT_EQ( "aclMgmtTcamVlanBlock", stringValue( Halyard::AclManagementTcams( 5 ) ) );
   EXPECT_EQ( "aclMgmtTcamEgressBlock2", stringValue( Halyard::AclPortBlockingTcams( 3 ) ) );
   EXPECT_EQ( Halyard::aclMgmtTcamStpLearn,
              sequenceToValue<Halyard::AclManagementTcams>( "aclMgmtTcamStpLearn" ) );
}

TEST( EnumTest, GenericEnumerationsHaveTheirNumbers ) {
   EXPECT_EQ( 0u, static_cast<U32>( Acl::ip_ ) );
   EXPECT_EQ( 1u, static_cast<U32>( Acl::ipv6() ) );
   EXPECT_EQ( 2u, static_cast<U32>( Acl::mac() ) );
   EXPECT_EQ( 0u, static_cast<U32>( Acl::in() ) );
   EXPECT_EQ( 1u, static_cast<U32>( Acl::out() ) );
   EXPECT_EQ( 1u, static_cast<U32>( Acl::deny() ) );
   EXPECT_EQ( "ipv6", stringValue( Acl::ipv6_ ) );
   EXPECT_EQ( "out", stringValue( Acl::out_ ) );
   EXPECT_EQ( "deny", stringValue( Acl::deny_ ) );
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
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker,
              sequenceToValue<Fennel::AclCreateError>( "aclCreateNoRangeChecker" ) );
   // A number that names a value parses to it as well.
   EXPECT_EQ( Halyard::aclFeatureNone, sequenceToValue<Halyard::HalyardAclFeature>( "7" ) );
}

TEST( EnumTest, BadTextNamesTheTypeAndTheText ) {
   VocabTest::expectThrowText<Vesper::ParseException>(
       [] { sequenceToValue<Halyard::HalyardAclFeature>( "aclFeaturenone" ); },
       "'aclFeaturenone' is not a value of Halyard::HalyardAclFeature" );
   VocabTest::expectThrowText<Vesper::ParseException>( [] { sequenceToValue<Acl::AclType>( "" ); },
                                                       "'' is not a value of Acl::AclType" );
   VocabTest::expectThrowText<Vesper::ParseException>(
       [] { sequenceToValue<Acl::AclDirection>( "-1" ); },
       "'-1' is not a value of Acl::AclDirection" );
   VocabTest::expectThrowText<Vesper::ParseException>( [] { sequenceToValue<Acl::Action>( "1x" ); },
                                                       "'1x' is not a value of Acl::Action" );
}

}  // namespace
