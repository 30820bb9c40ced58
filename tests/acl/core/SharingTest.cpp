// Whether router ACLs are shared, over every chip kind of the catalog: on a fixed system the
// chips of groups C, D and F force sharing on; elsewhere, and with fabric, the hardware flag
// and the configuration decide.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/catalog/ChipCatalog.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ChipReadback.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

// The hardware says nothing of sharing until a test says so.
HalyardTest::AgentOptions sharingUnsupported() {
   HalyardTest::AgentOptions options = HalyardTest::notBroughtUp();
   options.sim.ingressRaclSharingSupported = false;
   return options;
}

class SharingTest : public ::testing::TestWithParam<std::string> {
 protected:
   bool forcingChip() const {
      const Sim::ChipProbes& p = sw_.kind( 0 ).probes;
      return p.groupC || p.groupD || p.groupF;
   }

   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { GetParam() } ),
                                 sharingUnsupported() };
};

TEST_P( SharingTest, FixedSystemFollowsTheChipOrTheSettings ) {
   const AclHelper::Ptr helper = sw_.makeHelper( false );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   EXPECT_FALSE( helper->raclSharingCliSupport() );
   EXPECT_EQ( helper->raclSharingConfig(), forcingChip() );
   EXPECT_EQ( helper->raclSharingSupport(), forcingChip() );
   const std::vector<std::string> expected =
       forcingChip() ? std::vector<std::string>{ " Bypassing racl sharing support for "
                                                 "TomahawkX/T2+/Trident3.",
                                                 " Bypassing racl sharing support for "
                                                 "Tomahawk/Tomahawk+/Tomahawk2/Trident2+/"
                                                 "Trident3." }
                     : std::vector<std::string>{};
   EXPECT_EQ( trace.lines(), expected );

   sw_.paramConfig()->ingressRaclSharingIs( true );
   sw_.sim().aclHwStatus()->ingressRaclSharingSupportedIs( true );
   EXPECT_TRUE( helper->raclSharingCliSupport() );
   EXPECT_TRUE( helper->raclSharingConfig() );
   EXPECT_TRUE( helper->raclSharingSupport() );
}

TEST_P( SharingTest, WithFabricTheChipChangesNothing ) {
   const AclHelper::Ptr helper = sw_.makeHelper( true );
   EXPECT_FALSE( helper->raclSharingConfig() );
   EXPECT_FALSE( helper->raclSharingSupport() );
   sw_.paramConfig()->ingressRaclSharingIs( true );
   EXPECT_TRUE( helper->raclSharingConfig() );
   EXPECT_FALSE( helper->raclSharingSupport() )
       << "the store follows the hardware, not the setting";
   sw_.sim().aclHwStatus()->ingressRaclSharingSupportedIs( true );
   EXPECT_TRUE( helper->raclSharingSupport() );
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, SharingTest,
                          ::testing::ValuesIn( HalyardTest::catalogKindNames() ),
                          []( const auto& info ) { return info.param; } );

TEST( SharingMixedSystem, OneForcingChipAmongOthersTurnsSharingOn ) {
   Vesper::ActivityLockGuard activity;
   HalyardTest::AgentSwitch sw( HalyardTest::SwitchLayout( { "trident2", "jericho", "trident3" } ),
                                sharingUnsupported() );
   const AclHelper::Ptr helper = sw.makeHelper( false );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   EXPECT_TRUE( helper->raclSharingConfig() );
   EXPECT_EQ( trace.lines().size(), 1u ) << "one trace per forcing unit";
}

}  // namespace
}  // namespace AclCoreTest
