// The callable names: each reaches its own member of Shim::sdk_, constants
// are fetched when evaluated, and call sites written as the library writes
// them compile and keep their text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/shim/SdkCall.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "tests/platform/shim/FakeSdk.h"
#include "tests/platform/shim/SpySdk.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "ShimTest::SdkNames" )

namespace ShimTest {
namespace {

using ::testing::ElementsAre;

// A value of each parameter type to call every operation with; pointers
// point at a value, since spies write through them.
template <typename Parameter>
auto& argumentOf() {
   using Value = std::remove_cvref_t<Parameter>;
   if constexpr ( std::is_pointer_v<Value> ) {
      static std::remove_pointer_t<Value> target{};
      static Value pointer = &target;
      return pointer;
   } else {
      static Value value{};
      return value;
   }
}

template <typename... Parameters, typename Call>
void callWithArguments( Call call ) {
   call( argumentOf<Parameters>()... );
}

struct NameCase {
   const char* name;
   void ( *call )();
};

// `name` below is expanded through SdkNames.h, `#name` is not.
#define SHIM_TEST_NAME_CASE( Result, name, ... ) \
   NameCase{ #name,                              \
             [] { callWithArguments<__VA_ARGS__>( []( auto&... args ) { name( args... ); } ); } },

const NameCase operationCases[] = { SHIM_TEST_SDK_OPERATIONS( SHIM_TEST_NAME_CASE ) };

struct ConstantCase {
   const char* name;
   long long expected;
   long long ( *fetch )();
};

#define SHIM_TEST_CONSTANT_CASE( Type, name, value ) \
   ConstantCase{ #name, value, [] { return static_cast<long long>( name ); } },

const ConstantCase constantCases[] = { SHIM_TEST_SDK_CONSTANTS( SHIM_TEST_CONSTANT_CASE ) };

class SdkNamesTest : public ::testing::Test {
 protected:
   Vesper::ActivityLockGuard activity_;
   SpySdk spy_;
   Shim::SdkInstall install_{ spy_ };
   Vesper::TraceCapture trace_{ "ShimTest::SdkNames" };
};

TEST_F( SdkNamesTest, EveryOperationNameCallsItsOwnMember ) {
   for ( const NameCase& operation : operationCases ) {
      spy_.calls.clear();
      operation.call();
      EXPECT_EQ( std::vector<std::string>{ operation.name }, spy_.callNames() );
   }
}

TEST_F( SdkNamesTest, EveryConstantIsFetchedWhenEvaluated ) {
   for ( const ConstantCase& constant : constantCases ) {
      spy_.calls.clear();
      EXPECT_EQ( constant.expected, constant.fetch() ) << constant.name;
      EXPECT_EQ( std::vector<std::string>{ constant.name }, spy_.callNames() );
   }
}

// A library object with a unit() member, as the rule code has.
struct RuleCode {
   int unit() const { return 3; }

   int setActions( U64 entry ) {
      const U32 cpuCosqDrop_ = 0;
      SDK_CHECK( bcm_field_action_add( unit(), entry, bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 ) );
      return SDK_CHECK(
          bcm_field_qualify_InPorts( unit(), entry, PBMP_E_ALL( unit() ), PBMP_ALL( unit() ) ) );
   }

   bool isFragment( U64 entry ) {
      bcm_field_IpFrag_t ipFrag{};
      const int rv = SDK_TRACE_RV( bcm_field_qualify_IpFrag_get( unit(), entry, &ipFrag ) );
      return rv == BCM_E_NONE && ipFrag == bcmFieldIpFragNotFirst;
   }
};

TEST_F( SdkNamesTest, CallSitesKeepTheirTextAndReachTheSdk ) {
   RuleCode rules;
   const U64 entry = 0x100000007ull;  // the low 32 bits reach the SDK
   EXPECT_EQ( 0, rules.setActions( entry ) );
   EXPECT_EQ( ( std::vector<long long>{ 3, 7, fakeCosQCpuNew, 0, 0 } ), spy_.actionArgs );
   EXPECT_TRUE( spy_.inPortsData.member( 130 ) );
   EXPECT_EQ( 2, spy_.inPortsData.count() );
   EXPECT_TRUE( rules.isFragment( entry ) );
   const std::vector<std::string> lines = trace_.lines();
   ASSERT_EQ( 3u, lines.size() );
   EXPECT_THAT( lines[0], ::testing::EndsWith( " bcm_field_action_add( unit(), entry, "
                                               "bcmFieldActionCosQCpuNew, cpuCosqDrop_, 0 ) "
                                               "(rc:0)" ) );
   EXPECT_THAT( lines[1], ::testing::EndsWith( " bcm_field_qualify_InPorts( unit(), entry, "
                                               "PBMP_E_ALL( unit() ), PBMP_ALL( unit() ) ) "
                                               "(rc:0)" ) );
   EXPECT_THAT( lines[2], ::testing::EndsWith( " bcm_field_qualify_IpFrag_get( unit(), entry, "
                                               "&ipFrag ) (rv:0)" ) );
}

TEST_F( SdkNamesTest, ConstantsComparedWithTheResultAreFetchedWithTheLockHeld ) {
   RuleCode().isFragment( 1 );
   EXPECT_THAT( spy_.callNames(), ElementsAre( "bcm_field_qualify_IpFrag_get", "BCM_E_NONE",
                                               "bcmFieldIpFragNotFirst" ) );
   EXPECT_FALSE( spy_.calls[0].activityLockHeld );
   EXPECT_TRUE( spy_.calls[1].activityLockHeld );
   EXPECT_TRUE( spy_.calls[2].activityLockHeld );
}

TEST_F( SdkNamesTest, MacAddressesPassAsSixByteArrays ) {
   U8 mac[6] = { 0x00, 0x1c, 0x73, 0x01, 0x02, 0x03 };
   U8 macMask[6] = { 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
   SDK_CHECK( bcm_field_qualify_DstMac( 0, 1, mac, macMask ) );
   EXPECT_EQ( ( std::vector<U8>{ 0x00, 0x1c, 0x73, 0x01, 0x02, 0x03, 0xff, 0xff, 0xff, 0xff, 0xff,
                                 0xff } ),
              spy_.macData );
   U8 destAddr[6];
   U8 destMask[6];
   EXPECT_EQ( 0, SDK_TRACE_RV( bcm_field_qualify_DstMac_get( 0, 1, &destAddr, &destMask ) ) );
}

// Table rows under the port lock, as the port-table writer does them.
int usePortTableGroupId( int unit, int port ) {
   port_tab_entry_s row;
   soc_mem_read( unit, PORT_TABm, MEM_BLOCK_ANY, port, &row );
   soc_mem_field32_set( unit, PORT_TABm, &row, USE_PORT_TABLE_GROUP_IDf, 1 );
   return soc_mem_write( unit, PORT_TABm, MEM_BLOCK_ALL, port, &row );
}

TEST_F( SdkNamesTest, PortLockHoldsAroundTheWholeCallInOneBracket ) {
   const int unit = 1;
   const unsigned line = __LINE__ + 1;
   SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK( unit, usePortTableGroupId( unit, 5 ) ) );
   // Constants are fetched in the compiler's order of arguments; the
   // operations keep theirs.
   std::vector<std::string> operations;
   for ( const std::string& name : spy_.callNames() ) {
      if ( name.starts_with( "soc_" ) || name.starts_with( "PORT_" ) ) {
         operations.push_back( name );
      }
   }
   EXPECT_THAT( operations,
                ElementsAre( "PORT_LOCK", "PORT_TABm", "soc_mem_read", "PORT_TABm",
                             "soc_mem_field32_set", "PORT_TABm", "soc_mem_write", "PORT_UNLOCK" ) );
   EXPECT_EQ( 11u, spy_.calls.size() );
   for ( const FakeCall& call : spy_.calls ) {
      EXPECT_FALSE( call.activityLockHeld ) << call.name;
   }
   EXPECT_THAT( trace_.lines(),
                ElementsAre( std::string( __FILE__ ) + ":" + std::to_string( line ) +
                             " PORT_LOCK_INTERNAL_NO_CHK( unit, usePortTableGroupId( unit, 5 ) ) "
                             "no rc check" ) );
}

int failingTableWrite() {
   throw std::runtime_error( "table write" );
}

TEST_F( SdkNamesTest, PortLockIsGivenBackWhenTheCallThrows ) {
   EXPECT_THROW( PORT_LOCK_INTERNAL_NO_CHK( 0, failingTableWrite() ), std::runtime_error );
   EXPECT_THAT( spy_.callNames(), ElementsAre( "PORT_LOCK", "PORT_UNLOCK" ) );
}

TEST( SdkInstallTest, InstallsForItsScopeAndRestoresThePrevious ) {
   FakeSdk outer;
   FakeSdk inner;
   EXPECT_EQ( nullptr, Shim::sdk_ );
   {
      Shim::SdkInstall installOuter( outer );
      {
         Shim::SdkInstall installInner( inner );
         EXPECT_EQ( &inner, Shim::sdk_ );
      }
      EXPECT_EQ( &outer, Shim::sdk_ );
   }
   EXPECT_EQ( nullptr, Shim::sdk_ );
}

}  // namespace
}  // namespace ShimTest
