// The switch assembled from a profile: units and their chips, the agent's shared data, the chip
// table reached the platform's way, the process-wide installs and what puts them back, the
// group table and its overrides, and fault injection reached through the switch.
#include <gtest/gtest.h>

#include "platform/shim/FabIoctl.h"
#include "platform/shim/Sdk.h"
#include "platform/tcam/ChipLookup.h"
#include "sim/switch/SimSwitch.h"
#include "tests/sim/switch/SwitchFixture.h"

namespace SimSwitchTest {
namespace {

using Halyard::HalyardModInfo;
using HalyardTypes::HalyardPort;
using Pylon::IntfId;
using Pylon::ModId;
using Sim::SimSwitch;

class DefaultSwitchTest : public ::testing::Test {
 protected:
   SimSwitch sw;
};

TEST_F( DefaultSwitchTest, UnitsAreTheProfilesChips ) {
   EXPECT_EQ( ( std::vector<U32>{ 0, 1 } ), sw.units() );
   EXPECT_EQ( "trident3", sw.chipKind( 0 ).name );
   EXPECT_EQ( "tomahawk", sw.chipKind( 1 ).name );
   EXPECT_EQ( 33u, sw.chip( 0 ).config().portCount );
   EXPECT_EQ( 1, sw.chip( 0 ).config().moduleId );
   EXPECT_EQ( 2, sw.chip( 1 ).config().moduleId );
   EXPECT_EQ( sw.chipKind( 0 ).rangeCheckers, sw.chip( 0 ).config().rangeCheckers );
   EXPECT_EQ( ModId( 2 ), sw.modId( 1 ) );
   EXPECT_EQ( 31u, sw.portLayout( 0 ).lastFrontPanel );
   EXPECT_EQ( ( std::vector<U32>{ 32 } ), sw.portLayout( 0 ).linkPorts );
   EXPECT_THROW( sw.chip( 2 ), Vesper::RangeException );
}

TEST_F( DefaultSwitchTest, FaultsInjectedOnTheSwitchReachTheCodeUnderTest ) {
   const auto ingress = Shim::sdk_->bcmPortClassFieldIngress();
   sw.sdk().failCall( "bcm_port_class_set", 1, -4 );
   EXPECT_EQ( -4, Shim::sdk_->bcm_port_class_set( 1, 3, ingress, 5 ) );
   EXPECT_EQ( 0u, sw.chip( 1 ).ports().portClass( 3, Sim::PortClassKind::FieldIngress ) );
   EXPECT_EQ( 0, Shim::sdk_->bcm_port_class_set( 1, 3, ingress, 5 ) );
   EXPECT_EQ( 5u, sw.chip( 1 ).ports().portClass( 3, Sim::PortClassKind::FieldIngress ) );
   EXPECT_EQ( 2u, sw.sdk().callCount( "bcm_port_class_set" ) );
}

TEST_F( DefaultSwitchTest, EpochStatusSupportsAclsUntilSwitchedOff ) {
   const auto& epochs = *Fennel::fennelEpochStatus();
   EXPECT_EQ( sw.epochStatus(), Fennel::fennelEpochStatus() );
   EXPECT_TRUE( epochs.aclSupported( Vesper::Name( "Epoch1" ) ) );
   EXPECT_TRUE( epochs.aclSupported( Vesper::Name( "Linecard1" ) ) );
   sw.aclSupportedIs( false );
   EXPECT_FALSE( epochs.aclSupported( Vesper::Name( "Epoch1" ) ) );
   EXPECT_FALSE( epochs.aclSupported( Vesper::Name( "Linecard1" ) ) );
}

TEST( SimSwitchOptionsTest, TinyGroupsExhaustAndLimitsAreCut ) {
   Sim::SwitchOptions options;
   options.groupTable = Sim::GroupTable{
       { Halyard::tcamGroupIpAcl, { Sim::Stage::Ifp, 60, 2, false } },
   };
   Sim::UnitLimits limits;
   limits.rangeCheckers = 1;
   limits.udfChunks = 99;  // above every chip's pool: cut to it
   options.unitLimits = limits;
   options.raclIdBits = 9;
   options.ingressRaclSharingSupported = false;
   SimSwitch sw( Sim::defaultProfile(), options );

   const auto ip = sw.groupManager()->unboundedEntryManager( Halyard::tcamGroupIpAcl );
   EXPECT_FALSE( ip->exhausted( 1 ) );
   EXPECT_NE( 0u, newEntry( sw, 1 ) );
   EXPECT_NE( 0u, newEntry( sw, 1 ) );
   EXPECT_EQ( 0u, ip->entriesAvailable( 1 ) );
   EXPECT_TRUE( ip->exhausted( 1 ) );
   EXPECT_FALSE( ip->exhausted( 0 ) );
   EXPECT_EQ( nullptr, sw.groupManager()->unboundedEntryManager( Halyard::tcamGroupMacAcl ) );
   EXPECT_EQ( 1u, sw.groupManager()->unitLimits( 0 )->rangeCheckers );
   EXPECT_EQ( sw.chip( 0 ).config().udfChunks, sw.groupManager()->unitLimits( 0 )->udfChunks );
   EXPECT_EQ( 9u, sw.aclHwStatus()->raclIdBits() );
   EXPECT_FALSE( sw.aclHwStatus()->ingressRaclSharingSupported() );
}

TEST( SimSwitchFabricTest, LinkPortsAreFabricPortsByModule ) {
   Sim::SwitchProfile p;
   Sim::SwitchFlags flags;
   flags.fabric = true;
   flags.egressFilterPerPort = true;
   p.flagsIs( flags );
   p.unitIs( Sim::UnitDef{ 0, "trident3", 1, 33, "" } );
   p.unitIs( Sim::UnitDef{ 1, "jericho", 5, 0, "" } );  // 65 ports, the last 8 HiGig
   SimSwitch sw( p );

   EXPECT_TRUE( sw.hasFabric() );
   EXPECT_TRUE( sw.attributes()->egressFilterPerPort() );
   const auto& fabric = sw.hcsd()->halyardPortToFabricIntf();
   ASSERT_EQ( 9u, fabric.size() );
   EXPECT_EQ( "Fabric1/1", sw.hcsd()->halyardPortToFabricIntf( HalyardPort( 1, 32 ) ) );
   EXPECT_EQ( "Fabric5/1", sw.hcsd()->halyardPortToFabricIntf( HalyardPort( 5, 57 ) ) );
   EXPECT_EQ( "Fabric5/8", sw.hcsd()->halyardPortToFabricIntf( HalyardPort( 5, 64 ) ) );
   // Walked by module, then port: the first unit's port first.
   EXPECT_EQ( HalyardPort( 1, 32 ), fabric.begin()->first );
}

TEST( SimSwitchInstallTest, InstallsForItsLifeAndPutsBackWhatItFound ) {
   Shim::Sdk* const sdkBefore = Shim::sdk_;
   const auto attributesBefore = HalyardCentral::halyardAttributes();
   const auto epochBefore = Fennel::fennelEpochStatus();
   Shim::FabricDevice* const fabricBefore = &Shim::fabricDevice();
   {
      SimSwitch outer;
      EXPECT_EQ( &outer.sdk(), Shim::sdk_ );
      EXPECT_EQ( outer.attributes(), HalyardCentral::halyardAttributes() );
      EXPECT_EQ( &outer.fabricDevice(), &Shim::fabricDevice() );
      {
         SimSwitch inner;
         EXPECT_EQ( &inner.sdk(), Shim::sdk_ );
         EXPECT_EQ( inner.epochStatus(), Fennel::fennelEpochStatus() );
         EXPECT_EQ( &inner.fabricDevice(), &Shim::fabricDevice() );
      }
      EXPECT_EQ( &outer.sdk(), Shim::sdk_ );
      EXPECT_EQ( outer.attributes(), HalyardCentral::halyardAttributes() );
      EXPECT_EQ( outer.epochStatus(), Fennel::fennelEpochStatus() );
      EXPECT_EQ( &outer.fabricDevice(), &Shim::fabricDevice() );
   }
   EXPECT_EQ( sdkBefore, Shim::sdk_ );
   EXPECT_EQ( attributesBefore, HalyardCentral::halyardAttributes() );
   EXPECT_EQ( epochBefore, Fennel::fennelEpochStatus() );
   EXPECT_EQ( fabricBefore, &Shim::fabricDevice() );
}

TEST( SimSwitchInstallTest, IncompleteProfileIsRefusedBeforeAnythingIsInstalled ) {
   Shim::Sdk* const sdkBefore = Shim::sdk_;
   const auto attributesBefore = HalyardCentral::halyardAttributes();
   Sim::SwitchProfile empty;
   empty.nameIs( "empty" );
   try {
      SimSwitch sw( empty );
      FAIL() << "an empty profile built a switch";
   } catch ( const Sim::ProfileError& e ) {
      EXPECT_EQ( "the profile defines no unit", e.message() );
   }
   EXPECT_EQ( sdkBefore, Shim::sdk_ );
   EXPECT_EQ( attributesBefore, HalyardCentral::halyardAttributes() );
}

}  // namespace
}  // namespace SimSwitchTest
