// hwInit beyond the management entries: the capability flags, the bypass, the units where
// ACLs are not supported, VXLAN support, the egress filter, the port tables, the free ingress
// classes, the entry managers, the six security state machines, and the trace of the steps.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "acl/HalyardAclTypeDirectionFeatureSm.h"
#include "platform/fennel/AclHelperCapabilities.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/sdk/SdkValues.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/acl/bringup/MgmtEntryExpectations.h"
#include "tests/support/ChipReadback.h"

namespace AclBringupTest {
namespace {

using FennelHelper::AclCapability;
using Halyard::AclHelper;
using Halyard::HalyardAclTypeDirectionFeature;

// The flags that hwInit sets on every system.
constexpr AclCapability unconditional[] = {
    AclCapability::revertIncompleteAclSupported,
    AclCapability::routerAclSupported,
    AclCapability::aclDscpSupported,
    AclCapability::ecnFilterSupported,
    AclCapability::aclEcnSupported,
    AclCapability::aclIpLenMatchSupported,
    AclCapability::allowIpLenFilter,
    AclCapability::macEgressAclSupported,
    AclCapability::ipEgressAclSupported,
    AclCapability::ip6EgressAclSupported,
    AclCapability::routerEgressAclSupported,
    AclCapability::ip6RouterEgressAclSupported,
    AclCapability::subIntfAclSupported,
    AclCapability::aclCountersSupported,
    AclCapability::dpIp6AclFullMaskSupported,
    AclCapability::ip6AclSupported,
    AclCapability::aclTcSupported,
    AclCapability::mirroringAclSupported,
    AclCapability::aclLoggingSupported,
    AclCapability::routerAclLoggingSupported,
    AclCapability::configurableImplicitIcmp6RulesSupported,
    AclCapability::nonContiguousIpMaskSupported,
    AclCapability::permitDuringAclUpdate,
};

// The flags of chips of groups E, A or B.
constexpr AclCapability bankSharing[] = {
    AclCapability::dpIpv4Ip6SecurityAclBankSharingSupported,
    AclCapability::dpIpv4Ip6MirroringAclBankSharingSupported,
    AclCapability::dpIpv4Ip6QosAclBankSharingSupported,
    AclCapability::dpIpv6SecurityAclKeyWidthModeSupported,
    AclCapability::dpIpv6QosAclKeyWidthModeSupported,
    AclCapability::dpMirrorAclKeyWidthModeSupported,
};

// What a switch of these kinds answers, unit by unit: any unit turns a chip flag on.
struct ChipFlags {
   bool permitFamily = false;
   bool payload = false;
   bool bankSharing = false;
   bool vxlanEverywhere = true;
};

ChipFlags chipFlagsOf( const BringupSwitch& sw ) {
   ChipFlags f;
   for ( U32 u = 0; u < sw.unitCount(); ++u ) {
      const Sim::ChipKind& k = sw.kind( u );
      const U32 family = k.chipInfo.familyCode();
      f.permitFamily |= family == 7 || family == 8;
      f.payload |= k.probes.groupE || k.probes.groupA;
      f.bankSharing |= k.probes.groupE || k.probes.groupA || k.probes.groupB;
      f.vxlanEverywhere &= k.attribute( HalyardCentral::ChipAttribute::supportsVxlanVniMatch );
   }
   return f;
}

void expectCapabilities( const BringupSwitch& sw ) {
   const AclHelper& h = *sw.helper();
   const ChipFlags f = chipFlagsOf( sw );
   EXPECT_TRUE( h.asyncAclConfig() );
   for ( const AclCapability c : unconditional ) {
      EXPECT_TRUE( h.capability( c ) ) << c;
   }
   EXPECT_EQ( h.installImplicitIcmp6Rules(), Fennel::Ip6DefaultIcmp6TypesSupported::defaultTypes );
   EXPECT_EQ( h.defaultActionDuringAclUpdatePermit(), f.permitFamily );
   EXPECT_EQ( h.aclPayloadSupported(), f.payload );
   for ( const AclCapability c : bankSharing ) {
      EXPECT_EQ( h.capability( c ), f.bankSharing ) << c;
   }
   EXPECT_EQ( h.aclVxlanSupported(), f.vxlanEverywhere );
   // Flags that bring-up leaves to the generic layer.
   EXPECT_TRUE( h.macAclSupported() );
   EXPECT_TRUE( h.ipIngressAclSupported() );
   EXPECT_FALSE( h.aclMplsSupported() );
}

class HwInitTest : public ::testing::Test {
 protected:
   CleanProcessState clean_;
   Vesper::ActivityLockGuard activity_;
};

// ---- Capability flags, one chip kind at a time.

class CapabilityTest : public HwInitTest, public ::testing::WithParamInterface<std::string> {};

TEST_P( CapabilityTest, FlagsFollowTheChipProbes ) {
   BringupSwitch sw( SwitchLayout{ { GetParam() } } );
   sw.hwInit();
   expectCapabilities( sw );
}

TEST_P( CapabilityTest, BypassLeavesEveryFlagAtItsDefaultAndTouchesNoHardware ) {
   BringupSwitch sw( SwitchLayout{ { GetParam() } } );
   sw.sim().hcsd()->aclHwInitBypassIs( true );
   sw.hwInit();
   const AclHelper& h = *sw.helper();
   for ( const auto& name : FennelHelper::aclCapabilityNames ) {
      EXPECT_EQ( h.capability( name.value ), FennelHelper::aclCapabilityDefault( name.value ) )
          << name.value;
   }
   EXPECT_FALSE( h.asyncAclConfig() );
   EXPECT_EQ( h.installImplicitIcmp6Rules(), Fennel::Ip6DefaultIcmp6TypesSupported::none );
   EXPECT_FALSE( h.macAclEntryManager() );
   EXPECT_FALSE( h.aclMgmtEntryMgr() );
   EXPECT_TRUE( h.halyardAclTypeDirectionFeatureSm().empty() );
   EXPECT_FALSE( h.halyardIntfClassDataHas( 0 ) );
   EXPECT_TRUE( HalyardTest::chipEntries( sw.chip( 0 ) ).empty() );
   EXPECT_EQ( sw.sim().sdk().callCount( "bcm_port_control_set" ), 0u );
}

TEST_P( CapabilityTest, PortTablesTakeTheClassFromTheGroupIdWhereTheChipNeedsIt ) {
   BringupSwitch sw( SwitchLayout{ { GetParam() } } );
   sw.hwInit();
   const Sim::ChipKind& kind = sw.kind( 0 );
   for ( U32 port = 1; port <= sw.frontPanelPorts(); ++port ) {
      const auto& ports = sw.chip( 0 ).ports();
      const auto field = static_cast<U32>( Sim::SdkValues::kUsePortTableGroupIdField );
      const auto portTab =
          ports.portTableField( port, static_cast<U32>( Sim::SdkValues::kPortTable ), field );
      const auto lportTab =
          ports.portTableField( port, static_cast<U32>( Sim::SdkValues::kLPortTable ), field );
      EXPECT_EQ( portTab, kind.probes.groupF ? std::nullopt : std::optional<U32>( 1 ) ) << port;
      EXPECT_EQ( lportTab,
                 kind.probes.groupF || kind.probes.groupC ? std::nullopt : std::optional<U32>( 1 ) )
          << port;
   }
   EXPECT_TRUE( sw.sim().sdk().gate().violations().empty() );
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, CapabilityTest, ::testing::ValuesIn( catalogKindNames() ),
                          []( const ::testing::TestParamInfo<std::string>& info ) {
                             return info.param;
                          } );

// ---- Several units.

TEST_F( HwInitTest, ChipFlagsOfOneUnitHoldForTheSystem ) {
   BringupSwitch sw( SwitchLayout{ { "trident2", "trident3" } } );
   sw.hwInit();
   expectCapabilities( sw );
   EXPECT_TRUE( sw.helper()->defaultActionDuringAclUpdatePermit() );
   EXPECT_TRUE( sw.helper()->aclPayloadSupported() );
}

TEST_F( HwInitTest, VxlanIsSupportedOnlyWhenEveryChipMatchesIt ) {
   {
      BringupSwitch sw( SwitchLayout{ { "trident3", "tomahawk" } } );
      sw.hwInit();
      EXPECT_TRUE( sw.helper()->aclVxlanSupported() );
   }
   for ( const auto& kinds :
         std::vector<std::vector<std::string> >{ { "trident3", "trident2" },
                                                 { "trident2", "trident3" },
                                                 { "jericho", "tomahawk3" } } ) {
      BringupSwitch sw( SwitchLayout{ kinds } );
      sw.hwInit();
      EXPECT_FALSE( sw.helper()->aclVxlanSupported() ) << kinds[0] << "+" << kinds[1];
   }
}

TEST_F( HwInitTest, RouterAclSharingFollowsTheHardwareFlag ) {
   for ( const bool supported : { true, false } ) {
      BringupSwitch sw( SwitchLayout{ { "trident2" } } );
      sw.sim().aclHwStatus()->ingressRaclSharingSupportedIs( supported );
      sw.hwInit();
      EXPECT_EQ( sw.helper()->ingressRaclSharingSupported(), supported );
   }
}

TEST_F( HwInitTest, TheGroupManagerIsToldWhetherSharingIsOn ) {
   // trident2 forces nothing; tomahawk (group C) on a fixed system turns sharing on.
   BringupSwitch plain( SwitchLayout{ { "trident2" } } );
   plain.hwInit();
   EXPECT_FALSE( plain.groupManager()->ingressRaclSharingSupported() );
   BringupSwitch forced( SwitchLayout{ { "tomahawk" } } );
   forced.hwInit();
   EXPECT_TRUE( forced.groupManager()->ingressRaclSharingSupported() );
}

TEST_F( HwInitTest, WithoutAclSupportAUnitGetsNoEntryButItsStatusClassesAndFilter ) {
   BringupSwitch sw( SwitchLayout{ { "trident3", "tomahawk" } } );
   sw.sim().aclSupportedIs( false );
   sw.hwInit();
   const AclHelper& h = *sw.helper();
   for ( U32 unit = 0; unit < sw.unitCount(); ++unit ) {
      SCOPED_TRACE( "unit " + std::to_string( unit ) );
      EXPECT_TRUE( HalyardTest::chipEntries( sw.chip( unit ) ).empty() );
      const Vesper::Name chipName = sw.sim().hcsd()->halyardModId( U16( unit ) ).chipName();
      EXPECT_TRUE( sw.sim().statusDp()->tcamStatusHas( chipName ) ) << chipName;
      ASSERT_TRUE( h.halyardIntfClassDataHas( unit ) );
      EXPECT_EQ( h.halyardIntfClassData( unit )->freeAclIntfClass().size(), 255u );
      EXPECT_EQ( sw.chip( unit ).ports().portControl(
                     0, static_cast<U32>( Sim::SdkValues::kPortControlFilterEgress ) ),
                 std::optional<S32>( 0 ) );
   }
   EXPECT_EQ( h.halyardAclTypeDirectionFeatureSm().size(), 6u );
}

TEST_F( HwInitTest, EveryUnitGetsItsTcamStatusAndTheFreeIngressClassesHighestFirst ) {
   BringupSwitch sw( SwitchLayout{ { "trident3", "tomahawk" } } );
   sw.hwInit();
   std::vector<U8> rising;
   for ( U32 c = 255; c >= 1; --c ) {
      rising.push_back( U8( c ) );
   }
   for ( U32 unit = 0; unit < sw.unitCount(); ++unit ) {
      const Vesper::Name chipName = sw.sim().hcsd()->halyardModId( U16( unit ) ).chipName();
      EXPECT_TRUE( sw.sim().statusDp()->tcamStatusHas( chipName ) );
      const auto classes = sw.helper()->halyardIntfClassData( unit );
      ASSERT_TRUE( classes );
      EXPECT_EQ( classes->freeAclIntfClass().stack().topFirst(), rising );
   }
   EXPECT_EQ( sw.sim().statusDp()->tcamStatus().size(), 2u );
}

// ---- The egress filter.

std::vector<std::string> portControlCalls( const std::vector<std::string>& lines ) {
   std::vector<std::string> calls;
   for ( const std::string& line : lines ) {
      const auto at = line.find( "bcm_port_control_set(" );
      if ( at != std::string::npos ) {
         calls.push_back( line.substr( at ) );
      }
   }
   return calls;
}

constexpr const char* filterOff =
    "bcm_port_control_set( unitIter.key(), 0, bcmPortControlFilterEgress, 0 ) (rc:0)";
constexpr const char* filterOn =
    "bcm_port_control_set( unitIter.key(), portId, bcmPortControlFilterEgress, 1 ) (rc:0)";

// A modular system: the units' link ports are fabric ports.
SwitchLayout fabricLayout( std::vector<std::string> kinds, bool egressFilterPerPort ) {
   SwitchLayout layout( std::move( kinds ) );
   layout.fabric = true;
   layout.egressFilterPerPort = egressFilterPerPort;
   return layout;
}

std::optional<S32> filterEgress( BringupSwitch& sw, U32 unit, U32 port ) {
   return sw.chip( unit ).ports().portControl(
       port, static_cast<U32>( Sim::SdkValues::kPortControlFilterEgress ) );
}

TEST_F( HwInitTest, EgressFilterIsOffOnPortZeroThenOnPerFabricPortOfTheUnitsOwnModule ) {
   // trident3 links by its last port; jericho by its eight HiGig ports.
   BringupSwitch sw( fabricLayout( { "trident3", "jericho" }, true ) );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   sw.hwInit();

   std::vector<std::string> expected;
   for ( const auto& unitIter : sw.sim().hcsd()->halyardModId() ) {
      expected.push_back( filterOff );
      expected.insert( expected.end(), sw.sim().portLayout( unitIter.key() ).linkPorts.size(),
                       filterOn );
   }
   EXPECT_EQ( portControlCalls( trace.lines() ), expected );
   for ( U32 unit = 0; unit < sw.unitCount(); ++unit ) {
      SCOPED_TRACE( "unit " + std::to_string( unit ) );
      EXPECT_EQ( filterEgress( sw, unit, 0 ), std::optional<S32>( 0 ) );
      const auto& links = sw.sim().portLayout( unit ).linkPorts;
      for ( U32 port = 1; port < sw.kind( unit ).portCount; ++port ) {
         const bool link = std::find( links.begin(), links.end(), port ) != links.end();
         EXPECT_EQ( filterEgress( sw, unit, port ), link ? std::optional<S32>( 1 ) : std::nullopt )
             << "port " << port;
      }
   }
}

TEST_F( HwInitTest, WithoutThePlatformAttributeOnlyPortZeroIsSet ) {
   BringupSwitch sw( fabricLayout( { "trident3", "jericho" }, false ) );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   sw.hwInit();
   EXPECT_EQ( portControlCalls( trace.lines() ), std::vector<std::string>( 2, filterOff ) );
   EXPECT_EQ( filterEgress( sw, 1, sw.sim().portLayout( 1 ).linkPorts.front() ), std::nullopt );
}

// ---- Managers and state machines.

TEST_F( HwInitTest, BuildsTheSixSecurityStateMachinesWithTheirManagers ) {
   BringupSwitch sw( SwitchLayout{ { "tomahawk3" } } );
   sw.hwInit();
   using namespace Halyard;
   const AclHelper& h = *sw.helper();
   EXPECT_EQ( h.halyardAclTypeDirectionFeatureSm().size(), 6u );
   for ( const auto& row : HalyardAclTest::securityMachineRows ) {
      SCOPED_TRACE( valueToStrep(
          HalyardAclTypeDirectionFeature( row.type, row.direction, aclFeatureSecurity ) ) );
      const auto sm =
          h.getHalyardAclTypeDirectionFeatureSm( row.type, row.direction, aclFeatureSecurity );
      ASSERT_TRUE( sm );
      const HalyardUnboundedTcamEntryManager::Ptr held[7] = {
          sm->entryManager(),         sm->vfpEntryManager(),    sm->vniEntryManager(),
          sm->stdEntryManager(),      sm->stdVfpEntryManager(), sm->routerEntryManager(),
          sm->stdRouterEntryManager() };
      for ( int i = 0; i < 7; ++i ) {
         EXPECT_EQ( held[i], row.managers[i] == HalyardAclTest::noManager
                                 ? nullptr
                                 : sw.manager( row.managers[i] ) )
             << "manager " << i;
      }
      EXPECT_EQ( sm->aclHelper(), Vesper::BackPtr<AclHelper>( sw.helper() ) );
      EXPECT_TRUE( sm->initialized() );
   }
}

TEST_F( HwInitTest, TracesTheStepsInOrder ) {
   BringupSwitch sw( SwitchLayout{ { "trident2" } } );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   sw.hwInit();
   std::vector<std::string> marks;
   for ( const std::string& line : trace.lines() ) {
      if ( line.rfind( "Acquiring", 0 ) == 0 || line.rfind( "Initializing", 0 ) == 0 ||
           line.rfind( "processInit", 0 ) == 0 || line.rfind( "handleInitialized", 0 ) == 0 ) {
         marks.push_back( line );
      }
   }
   const auto id = []( U32 entry ) { return std::to_string( entry ); };
   std::vector<std::string> expected = { "Initializing Acl state machine",
                                         "processInit( unit 0 )" };
   // The egress machines fill their pools as they are made: IPv4, then MAC, then IPv6.
   for ( const int c : { 2, 4, 6, 8, 10, 12, 14, 16, 32, 48, 64, 128, 192 } ) {
      expected.push_back( "handleInitialized( adding intf class " + std::to_string( c ) + " )" );
   }
   const std::vector<U32> e = sw.managementEntriesInOrder();
   const std::vector<std::string> acquiring = {
       "Acquiring port blocking TCAM Entry " + id( e[0] ),
       "Acquiring port blocking TCAM Entry " + id( e[1] ),
       "Acquiring STP-blocking log preventer TCAM entry " + id( e[2] ),
       "Acquiring STP-learning log preventer TCAM entry " + id( e[3] ),
       "Acquiring IFP entry for handling VFP drop+log matches",
       "Acquiring IFP entry for handling VFP drops",
       "Acquiring IFP entry for handling VFP logs",
       "Acquiring VLAN blocking TCAM entry " + id( e[7] ),
       "Acquiring egress port blocking TCAM Entry " + id( e[8] ),
       "Acquiring egress port blocking TCAM Entry " + id( e[9] ) };
   expected.insert( expected.end(), acquiring.begin(), acquiring.end() );
   EXPECT_EQ( marks, expected );
}

// ---- Bring-up never stops half-way and goes on.

class HwInitDeathTest : public HwInitTest {};

TEST_F( HwInitDeathTest, AFailedSdkCallStopsWithItsText ) {
   BringupSwitch sw( SwitchLayout{ { "trident3" } } );
   // The third SrcClassField is that of the drop+log entry.
   sw.sim().sdk().failCall( "bcm_field_qualify_SrcClassField", 3, -4 );
   EXPECT_DEATH( sw.hwInit(),
                 sdkCheckFailure( "bcm_field_qualify_SrcClassField( unitIter.key(), entry, ( "
                                  "classVfpAclDrop_ | classVfpAclLog_ ), ( classVfpAclDrop_ | "
                                  "classVfpAclLog_ ) )" ) );
   BringupSwitch other( SwitchLayout{ { "tomahawk" } } );
   other.sim().sdk().failCall( "bcm_port_control_set", 1, -18 );
   EXPECT_DEATH( other.hwInit(), sdkCheckFailure( "bcm_port_control_set( unitIter.key(), 0, "
                                                  "bcmPortControlFilterEgress, 0 )" ) );
}

TEST_F( HwInitDeathTest, AMissingManagerStopsWithItsAccessor ) {
   BringupSwitch sw( SwitchLayout{ { "trident3" } }, { Halyard::tcamGroupMirroringAcl3 } );
   EXPECT_DEATH( sw.hwInit(), assertionFailure( "mirroringAclGroup3EntryManager()" ) );
   BringupSwitch noMgmt( SwitchLayout{ { "trident3" } }, { Halyard::tcamGroupAclMgmt } );
   EXPECT_DEATH( noMgmt.hwInit(), assertionFailure( "aclMgmtEntryMgr()" ) );
}

TEST_F( HwInitDeathTest, AChipWithoutAttributesStops ) {
   BringupSwitch sw( SwitchLayout{ { "trident3" } } );
   sw.sim().attributes()->chipDel( sw.kind( 0 ).chipInfo );
   EXPECT_DEATH( sw.hwInit(), "bring-up of a unit whose chip has no attributes" );
}

}  // namespace
}  // namespace AclBringupTest
