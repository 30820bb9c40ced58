// What the simulated SDK answers to a unit without a chip and to an unknown entry, the texts
// of its return codes, and the entry dump.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::UnitAndError" )

namespace SimSdkTest {
namespace {

using ::testing::HasSubstr;

constexpr int kNoUnit = 3;
constexpr EntryId kNoEntry = 4242;

using UnitAndErrorTest = SimSdkFixture;

TEST_F( UnitAndErrorTest, EveryFamilyOnAUnitWithoutAChipIsInvalidUnit ) {
   const EntryId e = newEntry();
   bcm_ip_t ip = 0, mask = 0;
   U32 p1 = 0, p2 = 0, cls = 0;
   bcm_pbmp_t pbmp;
   bcm_range_config_s conf;
   const int unitCode = SdkValues::kUnit;
   EXPECT_EQ( unitCode, SDK_TRACE_RV( bcm_field_qualify_DstIp( kNoUnit, e, 1, 1 ) ) );
   EXPECT_EQ( unitCode, SDK_TRACE_RV( bcm_field_qualify_DstIp_get( kNoUnit, e, &ip, &mask ) ) );
   EXPECT_EQ( unitCode,
              SDK_TRACE_RV( bcm_field_action_add( kNoUnit, e, bcmFieldActionDrop, 0, 0 ) ) );
   EXPECT_EQ( unitCode,
              SDK_TRACE_RV( bcm_field_action_get( kNoUnit, e, bcmFieldActionDrop, &p1, &p2 ) ) );
   EXPECT_EQ( unitCode, SDK_NO_CHECK( bcm_range_get( kNoUnit, &conf ) ) );
   EXPECT_EQ( unitCode,
              SDK_TRACE_RV( bcm_port_class_get( kNoUnit, 1, bcmPortClassFieldIngress, &cls ) ) );
   EXPECT_EQ( unitCode, SDK_TRACE_RV( bcm_port_modid_egress_get( kNoUnit, 1, 0, &pbmp ) ) );
   EXPECT_EQ( unitCode, SDK_NO_CHECK( bcm_field_entry_dump( kNoUnit, e ) ) );
   EXPECT_EQ( unitCode, SDK_TRACE_RV( bcm_field_qualify_DstIp( -1, e, 1, 1 ) ) );
   EXPECT_FALSE( chip_.qualifier( e, QualId::DstIp ).has_value() );
}

TEST_F( UnitAndErrorTest, AnUnknownEntryIsNotFound ) {
   bcm_ip_t ip = 0, mask = 0;
   U32 p1 = 0, p2 = 0;
   bcm_field_IpFrag_t frag{};
   const int notFound = BCM_E_NOT_FOUND;
   EXPECT_EQ( notFound, SDK_TRACE_RV( bcm_field_qualify_DstIp( kUnit, kNoEntry, 1, 1 ) ) );
   EXPECT_EQ( notFound,
              SDK_TRACE_RV( bcm_field_qualify_DstIp_get( kUnit, kNoEntry, &ip, &mask ) ) );
   EXPECT_EQ( notFound, SDK_TRACE_RV( bcm_field_qualify_IpFrag_get( kUnit, kNoEntry, &frag ) ) );
   EXPECT_EQ( notFound,
              SDK_TRACE_RV( bcm_field_action_add( kUnit, kNoEntry, bcmFieldActionDrop, 0, 0 ) ) );
   EXPECT_EQ( notFound, SDK_TRACE_RV( bcm_field_action_get( kUnit, kNoEntry, bcmFieldActionDrop,
                                                            &p1, &p2 ) ) );
   EXPECT_EQ( notFound, SDK_NO_CHECK( bcm_field_entry_dump( kUnit, kNoEntry ) ) );
}

TEST( SimSdkUnits, ANegativeUnitIsRefused ) {
   SimSdk sim;
   ChipModel chip;
   EXPECT_THROW( sim.unitIs( -1, chip, *chipKindByName( "tomahawk" ) ), Vesper::RangeException );
}

// The texts of the role codes, which the library prints in its failure line, and of codes
// that this build does not have.
TEST_F( UnitAndErrorTest, CodesHaveTheirTexts ) {
   const struct {
      int code;
      const char* text;
   } texts[] = { { BCM_E_NONE, "Ok" },
                 { BCM_E_NOT_FOUND, "Entry not found" },
                 { BCM_E_RESOURCE, "No resources for operation" },
                 { enableEntryToleratedCode, "Operation disabled" },
                 { SdkValues::kUnit, "Invalid unit" },
                 { SdkValues::kParam, "Invalid parameter" },
                 { -1000, "Unknown error" },
                 { 5, "Unknown error" } };
   for ( const auto& t : texts ) {
      EXPECT_STREQ( t.text, Shim::sdk_->bcm_errmsg( t.code ) ) << t.code;
   }
}

}  // namespace
}  // namespace SimSdkTest
