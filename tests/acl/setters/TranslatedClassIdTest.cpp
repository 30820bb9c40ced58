// getTranslatedIpClassId on every chip kind: a chip with both destination
// class forms keeps every id; any other rotates 1..5 by one, 5 wrapping to 1,
// and refuses every other id, 0 included. The mask always passes unchanged.
#include <gtest/gtest.h>

#include <string>

#include "acl/HalyardAclHelper.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/acl/setters/SetterUnit.h"

namespace AclSettersTest {
namespace {

using HalyardCentral::ChipAttribute;

class TranslatedClassIdTest : public ::testing::TestWithParam<std::string> {
 protected:
   TranslatedClassIdTest() : unit_( GetParam() ) {}

   bool keepsIds() const {
      return unit_.attribute( ChipAttribute::supportsIfpDstClassField ) &&
             unit_.attribute( ChipAttribute::supportsIfpDstIpClassMsbNibble );
   }
   std::pair<U16, U16> translated( U16 classId, U16 classMask ) {
      U16 outClass = 0xdead;
      U16 outMask = 0xdead;
      Halyard::getTranslatedIpClassId( unit_.hcsd(), classId, classMask, &outClass, &outMask );
      return { outClass, outMask };
   }

   Vesper::ActivityLockGuard activity_;
   SetterUnit unit_;
};

using TranslatedClassIdDeathTest = TranslatedClassIdTest;

TEST_P( TranslatedClassIdTest, RotatesTheRingUnlessTheChipHasBothForms ) {
   const U16 ring[][2] = { { 1, 2 }, { 2, 3 }, { 3, 4 }, { 4, 5 }, { 5, 1 } };
   for ( const auto& [in, rotated] : ring ) {
      const U16 mask = static_cast<U16>( 0x0F0F ^ in );
      EXPECT_EQ( translated( in, mask ), std::make_pair( keepsIds() ? in : rotated, mask ) )
          << "class " << in;
   }
}

TEST_P( TranslatedClassIdTest, AChipWithBothFormsKeepsIdsOutsideTheRing ) {
   if ( !keepsIds() ) {
      GTEST_SKIP() << "the chip rotates ids";
   }
   EXPECT_EQ( translated( 0, 0xF ), std::make_pair( U16( 0 ), U16( 0xF ) ) );
   EXPECT_EQ( translated( 6, 0x7 ), std::make_pair( U16( 6 ), U16( 0x7 ) ) );
   EXPECT_EQ( translated( 0x1234, 0xFFFF ), std::make_pair( U16( 0x1234 ), U16( 0xFFFF ) ) );
}

TEST_P( TranslatedClassIdDeathTest, AnIdOutsideTheRingStops ) {
   if ( keepsIds() ) {
      GTEST_SKIP() << "the chip keeps every id";
   }
   for ( const U16 classId : { U16( 0 ), U16( 6 ), U16( 0xFFFF ) } ) {
      EXPECT_DEATH( translated( classId, 0xF ),
                    assertionFailure( "false && \"Invalid ClassID requested\"" ) )
          << "class " << classId;
   }
}

std::string kindName( const ::testing::TestParamInfo<std::string>& info ) {
   return info.param;
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, TranslatedClassIdTest, ::testing::ValuesIn( chipKindNames() ),
                          kindName );
INSTANTIATE_TEST_SUITE_P( ChipKinds, TranslatedClassIdDeathTest,
                          ::testing::ValuesIn( chipKindNames() ), kindName );

}  // namespace
}  // namespace AclSettersTest
