// Port classes per class kind, port controls, egress masks by module, and the port-table rows
// with the locks that must guard them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::Ports" )

namespace SimSdkTest {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

struct PortClassCase {
   const char* name;
   std::function<bcm_port_class_t()> sdkClass;
   PortClassKind model;
   PortClassKind other;
};
void PrintTo( const PortClassCase& c, std::ostream* os ) {
   *os << c.name;
}

class PortClassTest : public SimSdkFixture, public ::testing::WithParamInterface<PortClassCase> {};

TEST_P( PortClassTest, SetThenGetOnlyThatKind ) {
   const PortClassCase& c = GetParam();
   U32 cls = 99;
   EXPECT_EQ( BCM_E_NONE, SDK_CHECK( bcm_port_class_get( kUnit, 5, c.sdkClass(), &cls ) ) );
   EXPECT_EQ( 0u, cls );
   SDK_CHECK( bcm_port_class_set( kUnit, 5, c.sdkClass(), 0x21 ) );
   EXPECT_EQ( 0x21u, chip_.ports().portClass( 5, c.model ) );
   EXPECT_EQ( 0u, chip_.ports().portClass( 5, c.other ) );
   EXPECT_EQ( 0u, chip_.ports().portClass( 6, c.model ) );
   SDK_CHECK( bcm_port_class_get( kUnit, 5, c.sdkClass(), &cls ) );
   EXPECT_EQ( 0x21u, cls );
}

TEST_P( PortClassTest, APortTheUnitLacksIsAPortError ) {
   const int beyond = static_cast<int>( kind_.portCount );
   U32 cls = 0;
   EXPECT_EQ( SdkValues::kPort,
              SDK_TRACE_RV( bcm_port_class_set( kUnit, beyond, GetParam().sdkClass(), 1 ) ) );
   EXPECT_EQ( SdkValues::kPort,
              SDK_TRACE_RV( bcm_port_class_get( kUnit, -1, GetParam().sdkClass(), &cls ) ) );
}

INSTANTIATE_TEST_SUITE_P(
    BothKinds, PortClassTest,
    ::testing::Values( PortClassCase{ "Ingress", [] { return bcmPortClassFieldIngress; },
                                      PortClassKind::FieldIngress, PortClassKind::FieldEgress },
                       PortClassCase{ "Egress", [] { return bcmPortClassFieldEgress; },
                                      PortClassKind::FieldEgress, PortClassKind::FieldIngress } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

using PortTest = SimSdkFixture;

TEST_F( PortTest, EgressMasksByModule ) {
   bcm_pbmp_t mask;
   SDK_CHECK( bcm_port_modid_egress_get( kUnit, 3, 0, &mask ) );
   EXPECT_EQ( PBMP_ALL( kUnit ), mask );  // reset: every port

   bcm_pbmp_t some;
   BCM_PBMP_CLEAR( some );
   BCM_PBMP_PORT_ADD( some, 1 );
   BCM_PBMP_PORT_ADD( some, 2 );
   SDK_CHECK( bcm_port_modid_egress_set( kUnit, 3, -1, some ) );
   for ( int module : { 0, 4, 17 } ) {
      SDK_CHECK( bcm_port_modid_egress_get( kUnit, 3, module, &mask ) );
      EXPECT_EQ( some, mask ) << "module " << module;
   }
   bcm_pbmp_t one;
   BCM_PBMP_CLEAR( one );
   BCM_PBMP_PORT_ADD( one, 9 );
   SDK_CHECK( bcm_port_modid_egress_set( kUnit, 3, 4, one ) );
   SDK_CHECK( bcm_port_modid_egress_get( kUnit, 3, 4, &mask ) );
   EXPECT_EQ( one, mask );
   SDK_CHECK( bcm_port_modid_egress_get( kUnit, 3, 0, &mask ) );
   EXPECT_EQ( some, mask );
   EXPECT_EQ( ( PortBitmap{ 1, 2 } ), chip_.ports().localEgressMask( 3 ) );
}

// ---- Port-table rows, the way the library forces a port's class to come from the table.

int setPortTabUse( int port ) {
   port_tab_entry_s row;
   soc_mem_read( kUnit, PORT_TABm, MEM_BLOCK_ANY, port, &row );
   soc_mem_field32_set( kUnit, PORT_TABm, &row, USE_PORT_TABLE_GROUP_IDf, 1 );
   return soc_mem_write( kUnit, PORT_TABm, MEM_BLOCK_ALL, port, &row );
}

int setLPortTabUse( int port ) {
   lport_tab_entry_s row;
   soc_mem_lock( kUnit, LPORT_TABm );
   soc_mem_read( kUnit, LPORT_TABm, MEM_BLOCK_ANY, port, &row );
   soc_mem_field32_set( kUnit, LPORT_TABm, &row, USE_PORT_TABLE_GROUP_IDf, 1 );
   const int rc = soc_mem_write( kUnit, LPORT_TABm, MEM_BLOCK_ALL, port, &row );
   soc_mem_unlock( kUnit, LPORT_TABm );
   return rc;
}

class PortTableTest : public SimSdkFixture {
 protected:
   std::optional<U32> field( soc_mem_t table, U32 port ) {
      return chip_.ports().portTableField( port, static_cast<U32>( table ),
                                           static_cast<U32>( USE_PORT_TABLE_GROUP_IDf ) );
   }
};

TEST_F( PortTableTest, RowsWrittenUnderTheirLocksReachTheChip ) {
   EXPECT_EQ( BCM_E_NONE, SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK( kUnit, setPortTabUse( 5 ) ) ) );
   EXPECT_EQ( BCM_E_NONE, SDK_NO_CHECK( setLPortTabUse( 5 ) ) );
   EXPECT_EQ( 1u, field( PORT_TABm, 5 ) );
   EXPECT_EQ( 1u, field( LPORT_TABm, 5 ) );
   EXPECT_FALSE( field( PORT_TABm, 6 ).has_value() );
   EXPECT_EQ( 0u, sim_.portLockDepth( kUnit ) );
   EXPECT_EQ( 1u, sim_.callCount( "PORT_LOCK" ) );
   EXPECT_EQ( 1u, sim_.callCount( "PORT_UNLOCK" ) );

   // Reading the row back finds the field set, and nothing else.
   port_tab_entry_s row;
   SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK(
       kUnit, soc_mem_read( kUnit, PORT_TABm, MEM_BLOCK_ANY, 5, &row ) ) );
   port_tab_entry_s expected;
   SDK_NO_CHECK( soc_mem_field32_set( kUnit, PORT_TABm, &expected, USE_PORT_TABLE_GROUP_IDf, 1 ) );
   EXPECT_EQ( 0, std::memcmp( &row, &expected, sizeof row ) );
}

TEST_F( PortTableTest, AccessOutsideTheLocksIsAViolation ) {
   SDK_NO_CHECK( setPortTabUse( 5 ) );
   lport_tab_entry_s row;
   SDK_NO_CHECK( soc_mem_write( kUnit, LPORT_TABm, MEM_BLOCK_ALL, 5, &row ) );
   SDK_NO_CHECK( PORT_UNLOCK( kUnit ) );
   EXPECT_THAT( sim_.gate().violations(),
                ElementsAre( "soc_mem_read of PORT_TAB on unit 0 without its lock",
                             "soc_mem_write of PORT_TAB on unit 0 without its lock",
                             "soc_mem_write of LPORT_TAB on unit 0 without its lock",
                             "PORT_UNLOCK of unit 0 without PORT_LOCK" ) );
   // The writes still happened: a violation is noted, not refused.
   EXPECT_EQ( 1u, field( PORT_TABm, 5 ) );
   sim_.gate().violationsDelAll();
}

TEST_F( PortTableTest, WrongTablesAndFieldsAreRefused ) {
   port_tab_entry_s row;
   EXPECT_EQ( SdkValues::kParam,
              SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK(
                  kUnit, soc_mem_read( kUnit, LPORT_TABm, MEM_BLOCK_ANY, 5, &row ) ) ) );
   EXPECT_EQ( SdkValues::kParam,
              SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK(
                  kUnit, soc_mem_read( kUnit, PORT_TABm, MEM_BLOCK_ANY, 10000, &row ) ) ) );
   SDK_NO_CHECK( soc_mem_field32_set( kUnit, PORT_TABm, &row, soc_field_t{ 1 }, 1 ) );
   ASSERT_EQ( 1u, sim_.gate().violations().size() );
   EXPECT_THAT( sim_.gate().violations()[0], HasSubstr( "is no field of PORT_TAB" ) );
   sim_.gate().violationsDelAll();
}

}  // namespace
}  // namespace SimSdkTest
