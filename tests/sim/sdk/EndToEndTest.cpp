// End to end: entries programmed through Shim::sdk_ only (the manager's part, making and
// installing entries, done on the chip model as a manager would), then packets pushed through
// the chip's lookup.
#include <gtest/gtest.h>

#include <array>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::EndToEnd" )

namespace SimSdkTest {
namespace {

class EndToEndTest : public SimSdkFixture {
 protected:
   void install( EntryId e ) { ASSERT_EQ( Status::Ok, chip_.entryInstall( e ) ); }

   // An IPv4 TCP packet from port 1 to port 2.
   static Packet tcp( U16 dstPort ) {
      return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1024, dstPort )
          .ingressPortIs( 1 )
          .egressPortIs( 2 );
   }

   // A rule "deny tcp any host 10.0.0.2 eq 80" on every port, as the library writes it.
   EntryId denyWebToHost() {
      const EntryId e = newEntry( kIfp );
      bcm_pbmp_t all = PBMP_ALL( kUnit );
      SDK_CHECK( bcm_field_qualify_InPorts( kUnit, e, all, all ) );
      SDK_CHECK( bcm_field_qualify_IpType( kUnit, e, bcmFieldIpTypeIpv4Any ) );
      SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, ip4( "10.0.0.2" ), 0xffffffff ) );
      SDK_CHECK( bcm_field_qualify_IpProtocol( kUnit, e, 6, 0xff ) );
      SDK_CHECK( bcm_field_qualify_L4DstPort( kUnit, e, 80, 0xffff ) );
      SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
      return e;
   }
};

TEST_F( EndToEndTest, ADenyRuleDropsOnlyWhatItMatches ) {
   const EntryId e = denyWebToHost();
   install( e );
   const Verdict web = chip_.lookup( tcp( 80 ) );
   EXPECT_TRUE( web.dropped ) << web.text();
   EXPECT_EQ( e, web.hitIn( kIfp ) );
   EXPECT_EQ( 1u, chip_.entryHits( e ) );

   const Verdict other = chip_.lookup( tcp( 443 ) );
   EXPECT_FALSE( other.dropped );
   EXPECT_EQ( PortBitmap{ 2 }, other.egressPorts );
   EXPECT_FALSE( other.hitIn( kIfp ).has_value() );
}

TEST_F( EndToEndTest, NewInPortsTakeEffectAtReinstall ) {
   const EntryId e = denyWebToHost();
   install( e );
   // The ports change: port 1 is refused by a zero data bit under a one mask bit.
   bcm_pbmp_t all = PBMP_ALL( kUnit );
   bcm_pbmp_t data = all;
   BCM_PBMP_PORT_REMOVE( data, 1 );
   SDK_CHECK( bcm_field_qualify_InPorts( kUnit, e, data, all ) );
   EXPECT_TRUE( chip_.lookup( tcp( 80 ) ).dropped );  // hardware holds the old row
   install( e );
   EXPECT_FALSE( chip_.lookup( tcp( 80 ) ).dropped );
   EXPECT_TRUE( chip_.lookup( tcp( 80 ).ingressPortIs( 3 ) ).dropped );
}

TEST_F( EndToEndTest, AVfpClassReachesAnIfpEntryThatCopiesToTheCpu ) {
   const EntryId vfp = newEntry( kVfp );
   SDK_CHECK( bcm_field_qualify_SrcIp( kUnit, vfp, ip4( "10.0.0.0" ), 0xff000000 ) );
   SDK_CHECK( bcm_field_action_add( kUnit, vfp, bcmFieldActionClassSourceSet, 0x10, 0 ) );
   const EntryId ifp = newEntry( kIfp );
   SDK_CHECK( bcm_field_qualify_SrcClassField( kUnit, ifp, 0x10, 0x10 ) );
   SDK_CHECK( bcm_field_action_add( kUnit, ifp, bcmFieldActionCopyToCpu, 1, 7 ) );
   SDK_CHECK( bcm_field_action_add( kUnit, ifp, bcmFieldActionCosQCpuNew, 30, 0 ) );
   install( vfp );
   install( ifp );

   const Verdict v = chip_.lookup( tcp( 22 ) );
   EXPECT_EQ( 0x10u, v.sourceClass ) << v.text();
   EXPECT_TRUE( v.copyToCpu );
   EXPECT_EQ( 7u, v.cpuMatchId );
   EXPECT_EQ( 30u, v.cpuQueue );
   EXPECT_FALSE( v.dropped );

   const Verdict outside = chip_.lookup( Packet::tcp4( ip4( "11.0.0.1" ), ip4( "10.0.0.2" ), 1, 22 )
                                             .ingressPortIs( 1 )
                                             .egressPortIs( 2 ) );
   EXPECT_FALSE( outside.copyToCpu );
}

TEST_F( EndToEndTest, AnEgressEntryMatchesThePortClassSetThroughTheSdk ) {
   SDK_CHECK( bcm_port_class_set( kUnit, 2, bcmPortClassFieldEgress, 0x4 ) );
   const EntryId efp = newEntry( kEfp );
   SDK_CHECK( bcm_field_qualify_InterfaceClassPort( kUnit, efp, 0x4, 0xff ) );
   SDK_CHECK( bcm_field_action_add( kUnit, efp, bcmFieldActionDrop, 0, 0 ) );
   install( efp );

   PortBitmap both{ 2, 3 };
   const Verdict v = chip_.lookup( tcp( 80 ).egressPortsIs( both ) );
   EXPECT_EQ( PortBitmap{ 2 }, v.egressDropped ) << v.text();
   EXPECT_EQ( PortBitmap{ 3 }, v.egressPorts );
   EXPECT_EQ( efp, v.hitIn( kEfp, 2 ) );
}

TEST_F( EndToEndTest, ARangeCheckerAndFragmentsSelectPackets ) {
   // The manager's part: a checker for destination ports 8000 to 8080, attached to the entry.
   const RangeCheckerId checker = *chip_.rangeCheckerCreate( { RangeType::DstPort, 8000, 8080 } );
   const EntryId e = newEntry( kIfp );
   ASSERT_EQ( Status::Ok, chip_.rangeCheckAttach( e, checker ) );
   SDK_CHECK( bcm_field_qualify_IpFrag( kUnit, e, bcmFieldIpFragNonOrFirst ) );
   SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
   install( e );

   std::array<bcm_field_range_t, 32> ranges{};
   std::array<int, 32> inverts{};
   int n = 0;
   SDK_CHECK( bcm_field_qualify_RangeCheck_get( kUnit, e, 32, ranges.data(), inverts.data(), &n ) );
   ASSERT_EQ( 1, n );
   U32 flags = 0;
   int low = 0, high = 0;
   const bcm_field_range_t id = ranges[0];
   SDK_NO_CHECK( bcm_field_range_get( kUnit, id, &flags, &low, &high ) );
   EXPECT_EQ( 2u, flags );
   EXPECT_EQ( 8000, low );
   EXPECT_EQ( 8080, high );

   EXPECT_TRUE( chip_.lookup( tcp( 8000 ) ).dropped );
   EXPECT_TRUE( chip_.lookup( tcp( 8080 ) ).dropped );
   EXPECT_FALSE( chip_.lookup( tcp( 8081 ) ).dropped );
   EXPECT_FALSE( chip_.lookup( tcp( 8000 ).fragmentIs( false, 100 ) ).dropped );
}

TEST_F( EndToEndTest, TheEgressMaskOfTheIngressPortCutsDestinations ) {
   bcm_pbmp_t mask = PBMP_ALL( kUnit );
   BCM_PBMP_PORT_REMOVE( mask, 2 );
   SDK_CHECK( bcm_port_modid_egress_set( kUnit, 1, -1, mask ) );
   const Verdict v = chip_.lookup( tcp( 80 ).egressPortsIs( PortBitmap{ 2, 3 } ) );
   EXPECT_EQ( PortBitmap{ 3 }, v.egressPorts ) << v.text();
}

}  // namespace
}  // namespace SimSdkTest
