// Actions through Shim::sdk_: add, read back, replace, remove, and the port-bitmap actions.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::Actions" )

namespace SimSdkTest {
namespace {

struct ActionCase {
   const char* name;
   std::function<bcm_field_action_t()> sdkAction;
   ActionId model;
};
void PrintTo( const ActionCase& c, std::ostream* os ) {
   *os << c.name;
}

class ActionRoundTrip : public SimSdkFixture, public ::testing::WithParamInterface<ActionCase> {
 protected:
   int get( EntryId e, U32& p1, U32& p2 ) {
      return SDK_TRACE_RV( bcm_field_action_get( kUnit, e, GetParam().sdkAction(), &p1, &p2 ) );
   }
};

TEST_P( ActionRoundTrip, AddReadReplaceRemove ) {
   const ActionCase& c = GetParam();
   const EntryId e = newEntry();
   U32 p1 = 0, p2 = 0;
   EXPECT_EQ( BCM_E_NOT_FOUND, get( e, p1, p2 ) );

   SDK_CHECK( bcm_field_action_add( kUnit, e, c.sdkAction(), 5, 9 ) );
   EXPECT_EQ( ( ActionParams{ 5, 9 } ), chip_.action( e, c.model ) );
   EXPECT_EQ( BCM_E_NONE, get( e, p1, p2 ) );
   EXPECT_EQ( 5u, p1 );
   EXPECT_EQ( 9u, p2 );

   SDK_CHECK( bcm_field_action_add( kUnit, e, c.sdkAction(), 6, 0 ) );
   EXPECT_EQ( ( ActionParams{ 6, 0 } ), chip_.action( e, c.model ) );

   SDK_CHECK( bcm_field_action_remove( kUnit, e, c.sdkAction() ) );
   EXPECT_FALSE( chip_.action( e, c.model ).has_value() );
   EXPECT_EQ( BCM_E_NOT_FOUND, get( e, p1, p2 ) );
   EXPECT_EQ( BCM_E_NOT_FOUND, SDK_TRACE_RV( bcm_field_action_remove( kUnit, e, c.sdkAction() ) ) );
}

INSTANTIATE_TEST_SUITE_P(
    EveryParamAction, ActionRoundTrip,
    ::testing::Values(
        ActionCase{ "Drop", [] { return bcmFieldActionDrop; }, ActionId::Drop },
        ActionCase{ "CopyToCpu", [] { return bcmFieldActionCopyToCpu; }, ActionId::CopyToCpu },
        ActionCase{ "SwitchToCpuCancel", [] { return bcmFieldActionSwitchToCpuCancel; },
                    ActionId::SwitchToCpuCancel },
        ActionCase{ "CosQCpuNew", [] { return bcmFieldActionCosQCpuNew; }, ActionId::CosQCpuNew },
        ActionCase{ "PrioIntNew", [] { return bcmFieldActionPrioIntNew; }, ActionId::PrioIntNew },
        ActionCase{ "MirrorIngressIndex", [] { return bcmFieldActionMirrorIngressIndex; },
                    ActionId::MirrorIngressIndex },
        ActionCase{ "ClassSourceSet", [] { return bcmFieldActionClassSourceSet; },
                    ActionId::ClassSourceSet } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

using ActionTest = SimSdkFixture;

TEST_F( ActionTest, CopyAndItsCancelExcludeEachOther ) {
   const EntryId e = newEntry();
   SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionCopyToCpu, 1, 0 ) );
   EXPECT_EQ( SdkValues::kConfig, SDK_TRACE_RV( bcm_field_action_add(
                                      kUnit, e, bcmFieldActionSwitchToCpuCancel, 0, 0 ) ) );
   EXPECT_FALSE( chip_.action( e, ActionId::SwitchToCpuCancel ).has_value() );
   EXPECT_EQ( ( ActionParams{ 1, 0 } ), chip_.action( e, ActionId::CopyToCpu ) );
}

TEST_F( ActionTest, AnActionOfTheOtherKindIsAParameterError ) {
   const EntryId e = newEntry();
   bcm_pbmp_t ports = PBMP_PORT_ALL( kUnit );
   U32 p1 = 0, p2 = 0;
   EXPECT_EQ( SdkValues::kParam,
              SDK_TRACE_RV( bcm_field_action_add( kUnit, e, bcmFieldActionEgressMask, 1, 0 ) ) );
   EXPECT_EQ( SdkValues::kParam,
              SDK_TRACE_RV( bcm_field_action_ports_add( kUnit, e, bcmFieldActionDrop, ports ) ) );
   EXPECT_EQ( SdkValues::kParam, SDK_TRACE_RV( bcm_field_action_get(
                                     kUnit, e, bcmFieldActionEgressMask, &p1, &p2 ) ) );
   EXPECT_EQ( SdkValues::kParam,
              SDK_TRACE_RV( bcm_field_action_add( kUnit, e, bcm_field_action_t{ 9999 }, 0, 0 ) ) );
   EXPECT_FALSE( chip_.actionPorts( e, ActionId::EgressMask ).has_value() );
   EXPECT_FALSE( chip_.action( e, ActionId::Drop ).has_value() );
}

}  // namespace
}  // namespace SimSdkTest
