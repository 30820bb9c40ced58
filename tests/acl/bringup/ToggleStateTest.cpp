// Feature toggles: a default until set, and the answer that bring-up keeps for the process.
#include <gtest/gtest.h>

#include "acl/ToggleState.h"

namespace AclBringupTest {
namespace {

constexpr const char* toggle = "BringupTestToggle";

class ToggleStateTest : public ::testing::Test {
 protected:
   ToggleStateTest() { reset(); }
   ~ToggleStateTest() override { reset(); }
   static void reset() {
      Halyard::toggleStateDel( toggle );
      Halyard::ToggleTestAccess::onceCacheClear();
   }
};

TEST_F( ToggleStateTest, AToggleNobodySetReadsAsItsDefault ) {
   EXPECT_TRUE( Halyard::getToggleState( toggle, true ) );
   EXPECT_FALSE( Halyard::getToggleState( toggle, false ) );
}

TEST_F( ToggleStateTest, ASetToggleReadsAsSetWhateverTheDefaultUntilDeleted ) {
   Halyard::toggleStateIs( toggle, false );
   EXPECT_FALSE( Halyard::getToggleState( toggle, true ) );
   EXPECT_FALSE( Halyard::getToggleState( toggle, false ) );
   EXPECT_TRUE( Halyard::getToggleState( "AnotherToggle", true ) );
   Halyard::toggleStateIs( toggle, true );
   EXPECT_TRUE( Halyard::getToggleState( toggle, false ) );
   Halyard::toggleStateDel( toggle );
   EXPECT_FALSE( Halyard::getToggleState( toggle, false ) );
   Halyard::toggleStateDel( toggle );
   EXPECT_TRUE( Halyard::getToggleState( toggle, true ) );
}

TEST_F( ToggleStateTest, TheFirstAnswerStandsForTheProcess ) {
   Halyard::toggleStateIs( toggle, false );
   EXPECT_FALSE( Halyard::toggleStateOnce( toggle, true ) );
   Halyard::toggleStateIs( toggle, true );
   EXPECT_FALSE( Halyard::toggleStateOnce( toggle, true ) );
   EXPECT_TRUE( Halyard::getToggleState( toggle, false ) );
   // Forgetting the kept answers lets the setting of now through.
   Halyard::ToggleTestAccess::onceCacheClear();
   EXPECT_TRUE( Halyard::toggleStateOnce( toggle, false ) );
}

}  // namespace
}  // namespace AclBringupTest
