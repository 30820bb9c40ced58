// Port masks onto committed IFP entries, in each of the three orders: ports that come are
// written from the first rule up, ports that go from the last rule down, and with
// permitDuringUpdate every entry is switched off from the last rule up before the ascending
// rewrite reinstalls them. Checked from the order of the field-processor commands, from the
// chip's entries, and with packets on the new and the old ports.
#include <gtest/gtest.h>

#include <regex>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclLifecycleTest {

using namespace HalyardTest;
namespace {

using HalyardTest::intfOf;

struct Case {
   const char* name;
   bool permitDuringUpdate;
   bool portAdded;  // else a port leaves
};

void PrintTo( const Case& c, std::ostream* os ) {
   *os << c.name;
}

// What one update did, in order: the rules whose entries were switched off, and those whose
// port key was written (each followed by its reinstall).
struct Walk {
   std::vector<U32> disabled;
   std::vector<U32> written;
   bool eachWriteReinstalled = true;
};

class PortUpdateTest : public ::testing::TestWithParam<Case> {
 protected:
   void SetUp() override {
      // No ingress class: the ACL lives in IFP, where ports are a key of every entry.
      classes_ = ingressClassesTaken( sw_, 0 );
      acl_.bound( intfOf( 0, 1 ) );
      if ( !GetParam().portAdded ) {
         acl_.bound( intfOf( 0, 2 ) );
      }
      ASSERT_EQ( Fennel::aclCreateSuccess,
                 acl_.applied( { macFromHost( Acl::deny_, 1 ), macFromHost( Acl::deny_, 2 ),
                                 macAny( Acl::permit_ ) } ) );
      ASSERT_FALSE( acl_.common( 0 )->canUseVfp() );
      sw_.paramConfig()->permitDuringAclUpdateConfigIs(
          GetParam().permitDuringUpdate ? Acl::PermitDuringAclUpdateConfig::permit
                                        : Acl::PermitDuringAclUpdateConfig::deny );
   }

   Walk walkOf( const std::vector<std::string>& lines ) const {
      static const std::regex disable( R"(Entry (\d+) \( Setting entry \d+ enable to 0 \) )" );
      static const std::regex inPorts( R"(fp qual (\d+) InPorts .*)" );
      static const std::regex install( R"(fp entry install (\d+))" );
      Walk walk;
      std::optional<U32> pending;
      std::smatch m;
      for ( const std::string& line : lines ) {
         if ( std::regex_match( line, m, disable ) ) {
            walk.disabled.push_back( *acl_.ruleOfEntry( 0, U32( std::stoul( m[1] ) ) ) );
         } else if ( std::regex_match( line, m, inPorts ) ) {
            walk.eachWriteReinstalled = walk.eachWriteReinstalled && !pending;
            pending = U32( std::stoul( m[1] ) );
            walk.written.push_back( *acl_.ruleOfEntry( 0, *pending ) );
         } else if ( std::regex_match( line, m, install ) ) {
            walk.eachWriteReinstalled =
                walk.eachWriteReinstalled && pending == U32( std::stoul( m[1] ) );
            pending.reset();
         }
      }
      walk.eachWriteReinstalled = walk.eachWriteReinstalled && !pending;
      return walk;
   }

   bool passesIn( U32 port, U8 host ) {
      return sw_.sim()
          .inject( intfName( 0, port ), macPacket( host ), intfName( 0, 4 ) )
          .forwarded();
   }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3" } ) };
   DrivenAcl acl_{ sw_, "p", Acl::mac_, Acl::in_ };
   std::vector<U8> classes_;
};

TEST_P( PortUpdateTest, EveryPortStaysOnAPrefixOfTheRules ) {
   const Case& c = GetParam();
   const U32 changed = c.portAdded ? 2 : 1;
   const U32 kept = c.portAdded ? 1 : 2;
   Vesper::TraceCapture trace( "Halyard::*" );
   if ( c.portAdded ) {
      EXPECT_FALSE( acl_.bound( intfOf( 0, changed ) ) );
   } else {
      EXPECT_FALSE( acl_.unbound( intfOf( 0, changed ) ) );
   }
   sw_.helper()->updateAclPorts( acl_.data(), c.portAdded );

   const Walk walk = walkOf( trace.lines() );
   const std::vector<U32> up = { 0, 1, 2, 3 };
   const std::vector<U32> down = { 3, 2, 1, 0 };
   EXPECT_EQ( walk.disabled, c.permitDuringUpdate ? down : std::vector<U32>{} );
   EXPECT_EQ( walk.written, c.permitDuringUpdate || c.portAdded ? up : down );
   EXPECT_TRUE( walk.eachWriteReinstalled );
   EXPECT_FALSE( acl_.unitData( 0 )->needsPortUpdate() );

   const Sim::ChipModel& chip = sw_.chip( 0 );
   for ( U32 ruleNum = 0; ruleNum < 4; ++ruleNum ) {
      for ( const U32 entry : acl_.ruleEntries( 0, ruleNum ) ) {
         SCOPED_TRACE( HalyardTest::entryText( chip, entry ) );
         const auto ports = chip.inPorts( entry );
         ASSERT_TRUE( ports );
         EXPECT_EQ( ports->data.test( changed ), c.portAdded );
         EXPECT_TRUE( ports->data.test( kept ) );
         EXPECT_TRUE( ports->mask.test( changed ) && ports->mask.test( kept ) );
         EXPECT_EQ( chip.entryInstalled( entry ), true );
         EXPECT_EQ( chip.entryEnabled( entry ), true );
      }
   }
   EXPECT_EQ( passesIn( changed, 1 ), !c.portAdded );
   EXPECT_EQ( passesIn( changed, 2 ), !c.portAdded );
   EXPECT_TRUE( passesIn( changed, 3 ) );
   EXPECT_FALSE( passesIn( kept, 1 ) );
   EXPECT_TRUE( passesIn( kept, 3 ) );

   // A unit whose ports did not change is left alone.
   trace.clear();
   sw_.helper()->updateAclPorts( acl_.data(), c.portAdded );
   EXPECT_TRUE( walkOf( trace.lines() ).written.empty() );
}

INSTANTIATE_TEST_SUITE_P( Orders, PortUpdateTest,
                          ::testing::Values( Case{ "PortComesAscending", false, true },
                                             Case{ "PortGoesDescending", false, false },
                                             Case{ "PermitDuringUpdatePortComes", true, true },
                                             Case{ "PermitDuringUpdatePortGoes", true, false } ),
                          []( const auto& info ) { return std::string( info.param.name ); } );

}  // namespace
}  // namespace AclLifecycleTest
