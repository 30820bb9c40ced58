// The activity lock round SDK calls, seen from the simulated SDK: released for every call made
// through the library's forms, held again when the code is looked at, and a call made with
// it held is caught.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "platform/shim/SdkCall.h"
#include "platform/vesper/Trace.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::LockProbe" )

namespace SimSdkTest {
namespace {

using ::testing::ElementsAre;

class LockProbeTest : public SimSdkFixture {
 protected:
   // A mix of operations in each of the forms, as the library writes them.
   void callThroughEveryForm( EntryId e ) {
      bcm_ip_t ip = 0, mask = 0;
      bcm_range_config_s conf;
      SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, 0x0a000001, 0xffffffff ) );
      SDK_CHECK_SPINDLE( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
      SDK_TRACE_RV( bcm_field_qualify_DstIp_get( kUnit, e, &ip, &mask ) );
      SDK_NO_CHECK( bcm_range_get( kUnit, &conf ) );
      SDK_NO_CHECK_SPINDLE( bcm_field_entry_dump( kUnit, e ) );
      SDK_NO_CHECK( PORT_LOCK_INTERNAL_NO_CHK( kUnit, 0 ) );
   }
   U64 probedCalls() const {
      U64 n = 0;
      for ( const char* name :
            { "bcm_field_qualify_DstIp", "bcm_field_action_add", "bcm_field_qualify_DstIp_get",
              "bcm_range_get", "bcm_field_entry_dump", "PORT_LOCK", "PORT_UNLOCK" } ) {
         n += sim_.callCount( name );
      }
      return n;
   }

   std::ostringstream console_;
};

TEST_F( LockProbeTest, EveryFormReleasesTheLockForTheCall ) {
   sim_.consoleIs( console_ );
   const EntryId e = newEntry();
   callThroughEveryForm( e );
   EXPECT_EQ( 7u, probedCalls() );
   EXPECT_EQ( 0u, sim_.gate().lockViolations() );
   EXPECT_TRUE( Vesper::ActivityUnlockAnchor::lock().held() );
}

TEST_F( LockProbeTest, ACallMadeWithTheLockHeldIsRecorded ) {
   const EntryId e = newEntry();
   bcm_field_qualify_DstIp( kUnit, e, 0x0a000001, 0xffffffff );
   SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, 0x0a000002, 0xffffffff ) );
   EXPECT_EQ( 1u, sim_.gate().lockViolations() );
   EXPECT_THAT( sim_.gate().violations(),
                ElementsAre( "bcm_field_qualify_DstIp called with the activity lock held" ) );
   // The call itself went through: the probe notes, it does not refuse.
   EXPECT_EQ( 2u, sim_.callCount( "bcm_field_qualify_DstIp" ) );
   sim_.gate().violationsDelAll();
}

TEST_F( LockProbeTest, ValuesMayBeFetchedWithTheLockHeld ) {
   const int none = BCM_E_NONE;
   const bcm_field_action_t drop = bcmFieldActionDrop;
   const bool probe = isChipGroupA( kUnit );
   const bcm_pbmp_t all = PBMP_ALL( kUnit );
   const char* text = Shim::sdk_->bcm_errmsg( BCM_E_NOT_FOUND );
   EXPECT_EQ( 0, none );
   EXPECT_EQ( SdkValues::sdkAction( ActionId::Drop ), drop );
   EXPECT_EQ( kind_.probes.groupA, probe );
   EXPECT_FALSE( BCM_PBMP_IS_NULL( all ) );
   EXPECT_STREQ( "Entry not found", text );
   EXPECT_EQ( 0u, sim_.gate().lockViolations() );
}

TEST_F( LockProbeTest, ProbeOffLetsEverythingPass ) {
   sim_.gate().lockProbeIs( SdkCallGate::LockProbe::off );
   const EntryId e = newEntry();
   bcm_field_qualify_DstIp( kUnit, e, 0x0a000001, 0xffffffff );
   EXPECT_EQ( 0u, sim_.gate().lockViolations() );
   EXPECT_EQ( 1u, sim_.callCount( "bcm_field_qualify_DstIp" ) );
}

// Without a capture, trace lines reach the sink, which sees whether the lock is held as each
// form writes the line that carries the code.
TEST_F( LockProbeTest, TheLockIsHeldWhenTheCodeIsLookedAt ) {
   sim_.consoleIs( console_ );
   const EntryId e = newEntry();
   std::vector<bool> heldAtWrite;
   Vesper::traceSinkIs( [&]( const Vesper::TraceHandle&, int, std::string_view ) {
      heldAtWrite.push_back( Vesper::ActivityUnlockAnchor::lock().held() );
   } );
   Vesper::traceLevelIs( "SimSdkTest::LockProbe", 4, true );
   callThroughEveryForm( e );
   sim_.failCall( "bcm_field_qualify_DstIp_get", 1, -7 );
   bcm_ip_t ip = 0, mask = 0;
   const int rv = SDK_TRACE_RV( bcm_field_qualify_DstIp_get( kUnit, e, &ip, &mask ) );
   const bool heldForTheCaller = Vesper::ActivityUnlockAnchor::lock().held();
   Vesper::traceLevelIs( "SimSdkTest::LockProbe", 4, false );
   Vesper::traceSinkIs( {} );

   EXPECT_EQ( -7, rv );
   EXPECT_TRUE( heldForTheCaller );
   EXPECT_EQ( std::vector<bool>( 7, true ), heldAtWrite );
   EXPECT_EQ( 0u, sim_.gate().lockViolations() );
}

using LockProbeDeathTest = LockProbeTest;

TEST_F( LockProbeDeathTest, AbortModeStopsAtTheFirstViolation ) {
   sim_.gate().lockProbeIs( SdkCallGate::LockProbe::abort );
   const EntryId e = newEntry();
   SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, 1, 1 ) );
   EXPECT_DEATH( bcm_field_qualify_DstIp( kUnit, e, 1, 1 ),
                 "simulated SDK: bcm_field_qualify_DstIp called with the activity lock held" );
}

}  // namespace
}  // namespace SimSdkTest
