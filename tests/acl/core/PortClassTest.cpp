// Port classes and port tables, read back from the chip model: doSetPortClass keeps the
// bits of other types, and an interface's port takes its class from the port table's group id
// on the chips that need it.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/sdk/SdkValues.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ChipReadback.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

bool anyLineHas( const std::vector<std::string>& lines, const std::string& text ) {
   return std::any_of( lines.begin(), lines.end(), [&]( const std::string& line ) {
      return line.find( text ) != std::string::npos;
   } );
}

// Units: 0 trident2 (no chip group), 1 trident2plus (group C), 2 tomahawk3 (group F).
class PortClassTest : public ::testing::Test {
 protected:
   PortClassTest() { HalyardAclTest::makeSecurityStateMachines( *sw_.groupManager(), helper_ ); }

   void setClass( Acl::AclType type, Acl::AclDirection direction, U32 port, U8 cls ) {
      helper_->doSetPortClass( type, direction, 0, port, cls, aclFeatureSecurity );
   }

   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{
       HalyardTest::SwitchLayout( { "trident2", "trident2plus", "tomahawk3" } ),
       HalyardTest::notBroughtUp() };
   const AclHelper::Ptr helper_ = sw_.makeHelper();
};

TEST_F( PortClassTest, IngressClassReplacesTheWholeClass ) {
   sw_.chip( 0 ).ports().portClassIs( 7, Sim::PortClassKind::FieldIngress, 0xF1 );
   setClass( Acl::ip_, Acl::in_, 7, 0x0C );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 7 ), 0x0Cu );
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 7 ), 0u );
}

TEST_F( PortClassTest, EgressClassZeroClearsOnlyTheTypesBits ) {
   setClass( Acl::mac_, Acl::out_, 7, 0x20 );
   setClass( Acl::ipv6_, Acl::out_, 7, 0x80 );
   setClass( Acl::ip_, Acl::out_, 7, 0x0A );
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 7 ), 0xAAu );
   setClass( Acl::ip_, Acl::out_, 7, 0 );
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 7 ), 0xA0u )
       << "the MAC and IPv6 classes stay";
   setClass( Acl::mac_, Acl::out_, 7, 0 );
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 7 ), 0x80u );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 7 ), 0u );
}

TEST_F( PortClassTest, ClassIsNotCutToTheTypesBits ) {
   setClass( Acl::mac_, Acl::out_, 7, 0x30 );
   setClass( Acl::ip_, Acl::out_, 7, 0x42 );  // 0x40 lies outside the IPv4 field
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 7 ), 0x72u );
}

TEST_F( PortClassTest, SettingTracesTheClassAndThePortAndWritesTheRing ) {
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   Vesper::Spindle::instance().clear();
   setClass( Acl::ip_, Acl::out_, 5, 0x06 );
   const std::vector<std::string> lines = trace.lines();
   ASSERT_FALSE( lines.empty() );
   EXPECT_EQ( lines.front(), "Setting interface class 0x06 on port ( 5 )" );
   const std::vector<std::string> ring = Vesper::Spindle::instance().lines();
   EXPECT_TRUE( anyLineHas( ring, "bcm_port_class_get( unit, port, pclass, &ic ) (rc:0)" ) );
   EXPECT_TRUE( anyLineHas( ring, "bcm_port_class_set( unit, port, pclass, ic ) (rc:0)" ) );
   EXPECT_TRUE( sw_.sim().sdk().gate().violations().empty() );
}

TEST_F( PortClassTest, PortTablesAreWrittenOnPlainChips ) {
   Vesper::Spindle::instance().clear();
   helper_->handleHalyardIntfToPort( HalyardTest::intfOf( 0, 3 ) );
   const std::vector<std::string> ring = Vesper::Spindle::instance().lines();
   EXPECT_TRUE( anyLineHas( ring,
                            "PORT_LOCK_INTERNAL_NO_CHK( sp.unit(), setPortTabUsePortTableGroupId( "
                            "sp ) ) no rc check" ) );
   EXPECT_TRUE( anyLineHas( ring,
                            "PORT_LOCK_INTERNAL_NO_CHK( sp.unit(), setLPortTabUsePortTableGroupId( "
                            "sp ) ) no rc check" ) );
   EXPECT_EQ( HalyardTest::portTableBit( sw_.chip( 0 ), 3, false ), 1u );
   EXPECT_EQ( HalyardTest::portTableBit( sw_.chip( 0 ), 3, true ), 1u );
   EXPECT_FALSE( HalyardTest::portTableBit( sw_.chip( 0 ), 4, false ) )
       << "only the interface's port";
   EXPECT_TRUE( sw_.sim().sdk().gate().violations().empty() )
       << "locks held, activity lock given up";
   EXPECT_EQ( sw_.sim().sdk().portLockDepth( 0 ), 0u );
}

TEST_F( PortClassTest, GroupCChipsSkipTheLPortTable ) {
   helper_->handleHalyardIntfToPort( HalyardTest::intfOf( 1, 3 ) );
   EXPECT_EQ( HalyardTest::portTableBit( sw_.chip( 1 ), 3, false ), 1u );
   EXPECT_FALSE( HalyardTest::portTableBit( sw_.chip( 1 ), 3, true ) );
   EXPECT_TRUE( sw_.sim().sdk().gate().violations().empty() );
}

TEST_F( PortClassTest, GroupFChipsTouchNoTable ) {
   helper_->handleHalyardIntfToPort( HalyardTest::intfOf( 2, 3 ) );
   EXPECT_FALSE( HalyardTest::portTableBit( sw_.chip( 2 ), 3, false ) );
   EXPECT_FALSE( HalyardTest::portTableBit( sw_.chip( 2 ), 3, true ) );
   EXPECT_EQ( sw_.sim().sdk().callCount( "soc_mem_read" ), 0u );
}

TEST_F( PortClassTest, InterfaceGoneFromTheMapIsTracedAndLeftAlone ) {
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   const Pylon::IntfId gone = HalyardTest::intfOf( 0, 3 );
   sw_.sim().hcsd()->halyardIntfToPortDel( gone );
   helper_->handleHalyardIntfToPort( gone );
   std::ostringstream expected;
   expected << " Interface " << gone << " not present in halyardIntfToPort";
   EXPECT_EQ( trace.lines(), std::vector<std::string>{ expected.str() } );
   EXPECT_EQ( sw_.sim().sdk().callCount( "soc_mem_read" ), 0u );
   EXPECT_EQ( sw_.sim().sdk().callCount( "soc_mem_write" ), 0u );
}

TEST_F( PortClassTest, FailedReadOfTheRowLeavesTheRowAsItWas ) {
   sw_.sim().sdk().failCall( "soc_mem_read", 1, -4 );
   helper_->handleHalyardIntfToPort( HalyardTest::intfOf( 0, 3 ) );
   EXPECT_FALSE( HalyardTest::portTableBit( sw_.chip( 0 ), 3, false ) )
       << "the port table row is not written blind";
   EXPECT_EQ( HalyardTest::portTableBit( sw_.chip( 0 ), 3, true ), 1u )
       << "the L-port table goes on regardless";
}

using PortClassDeathTest = PortClassTest;

TEST_F( PortClassDeathTest, FailedClassReadStops ) {
   sw_.sim().sdk().failCall( "bcm_port_class_get", 1, -4 );
   EXPECT_DEATH( setClass( Acl::ip_, Acl::in_, 7, 0x0C ),
                 "bcm_port_class_get\\( unit, port, pclass, &ic \\) API ERROR:" );
}

}  // namespace
}  // namespace AclCoreTest
