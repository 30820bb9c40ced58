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
#include "tests/acl/core/CoreSwitch.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

std::vector<std::string> kindNames() {
   std::vector<std::string> names;
   for ( const Sim::ChipKind& kind : Sim::chipCatalog() ) {
      names.push_back( kind.name );
   }
   return names;
}

class SharingTest : public ::testing::TestWithParam<std::string> {
 protected:
   bool forcingChip() const {
      const Sim::ChipProbes& p = sw_.kind( 0 ).probes;
      return p.groupC || p.groupD || p.groupF;
   }

   Vesper::ActivityLockGuard activity_;
   CoreSwitch sw_{ { GetParam() } };
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

   sw_.paramConfig->ingressRaclSharingIs( true );
   sw_.hwStatus->ingressRaclSharingSupportedIs( true );
   EXPECT_TRUE( helper->raclSharingCliSupport() );
   EXPECT_TRUE( helper->raclSharingConfig() );
   EXPECT_TRUE( helper->raclSharingSupport() );
}

TEST_P( SharingTest, WithFabricTheChipChangesNothing ) {
   const AclHelper::Ptr helper = sw_.makeHelper( true );
   EXPECT_FALSE( helper->raclSharingConfig() );
   EXPECT_FALSE( helper->raclSharingSupport() );
   sw_.paramConfig->ingressRaclSharingIs( true );
   EXPECT_TRUE( helper->raclSharingConfig() );
   EXPECT_FALSE( helper->raclSharingSupport() )
       << "the store follows the hardware, not the setting";
   sw_.hwStatus->ingressRaclSharingSupportedIs( true );
   EXPECT_TRUE( helper->raclSharingSupport() );
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, SharingTest, ::testing::ValuesIn( kindNames() ),
                          []( const auto& info ) { return info.param; } );

TEST( SharingMixedSystem, OneForcingChipAmongOthersTurnsSharingOn ) {
   Vesper::ActivityLockGuard activity;
   CoreSwitch sw( { "trident2", "jericho", "trident3" } );
   const AclHelper::Ptr helper = sw.makeHelper( false );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   EXPECT_TRUE( helper->raclSharingConfig() );
   EXPECT_EQ( trace.lines().size(), 1u ) << "one trace per forcing unit";
}

}  // namespace
}  // namespace AclCoreTest
