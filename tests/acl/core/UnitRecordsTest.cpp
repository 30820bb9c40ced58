// The ACL-level records on the simulated switch: AclUnitData's port mask and interface
// class as the chip model sees them, HalyardAclData's units, the per-unit VFP types and the
// interface class pools.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Exception.h"
#include "platform/vesper/Trace.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ChipReadback.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

class UnitRecordsTest : public ::testing::Test {
 protected:
   UnitRecordsTest() { HalyardAclTest::makeSecurityStateMachines( *sw_.groupManager(), helper_ ); }

   AclUnitData::Ptr unitData( Acl::AclType type, Acl::AclDirection direction, U32 unit = 0 ) {
      return helper_->halyardAclDataIs( Fennel::AclKey( "acl", type, direction ) )
          ->unitDataIs( unit, type, direction, helper_.ptr() );
   }
   U64 classSets() { return sw_.sim().sdk().callCount( "bcm_port_class_set" ); }

   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3" } ),
                                 HalyardTest::notBroughtUp() };
   const AclHelper::Ptr helper_ = sw_.makeHelper();
};

TEST_F( UnitRecordsTest, PortMaskFollowsActivePortsAndAddingTwiceReactsOnce ) {
   Vesper::TraceCapture trace( "Halyard::AclTypes" );
   const AclUnitData::Ptr data = unitData( Acl::ip_, Acl::in_ );
   data->activePortIs( 3 );
   data->activePortIs( 3 );
   data->activePortIs( 40 );
   EXPECT_EQ( trace.lines().size(), 2u ) << "a port already active changes nothing";
   EXPECT_TRUE( data->portMask().member( 3 ) );
   EXPECT_TRUE( data->portMask().member( 40 ) );
   EXPECT_EQ( data->portMask().count(), 2 );

   EXPECT_TRUE( data->activePortDel( 3 ) );
   EXPECT_FALSE( data->activePortDel( 3 ) );
   EXPECT_EQ( trace.lines().size(), 3u );
   EXPECT_FALSE( data->portMask().member( 3 ) );
   EXPECT_EQ( data->portMask().count(), 1 );
}

TEST_F( UnitRecordsTest, PortMaskTextShowsFourWordsLowestPortRightmost ) {
   const AclUnitData::Ptr data = unitData( Acl::ip_, Acl::in_ );
   data->activePortIs( 0 );
   data->activePortIs( 33 );
   data->activePortIs( 127 );
   data->activePortIs( 200 );  // beyond the rendered words
   const std::string text = data->getPortMask( false );
   ASSERT_EQ( text.size(), 128u );
   std::string expected( 128, '0' );
   expected[127 - 0] = '1';
   expected[127 - 33] = '1';
   expected[127 - 127] = '1';
   EXPECT_EQ( text, expected );

   bcm_pbmp_t sub;
   sub.portAdd( 1 );
   data->subIntfPortMaskIs( sub );
   EXPECT_EQ( data->getPortMask( true ), std::string( 126, '0' ) + "10" );
}

TEST_F( UnitRecordsTest, ValidClassGoesToActivePortsAndIsRecorded ) {
   const AclUnitData::Ptr data = unitData( Acl::ip_, Acl::in_ );
   data->activePortIs( 2 );
   data->activePortIs( 5 );
   data->intfClassIs( 0x1A5 );  // cut to 8 bits on the way to the port
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 2 ), 0xA5u );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 5 ), 0xA5u );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 3 ), 0u );
   EXPECT_TRUE( data->intfClassAppliedPortHas( 2 ) );
   EXPECT_TRUE( data->intfClassAppliedPortHas( 5 ) );
   EXPECT_EQ( data->intfClassAppliedPort().size(), 2u );

   const U64 sets = classSets();
   data->intfClassIs( 0x1A5 );
   EXPECT_EQ( classSets(), sets ) << "an unchanged class touches no port";
}

TEST_F( UnitRecordsTest, InvalidClassClearsExactlyTheAppliedPorts ) {
   const AclUnitData::Ptr data = unitData( Acl::ip_, Acl::in_ );
   data->activePortIs( 2 );
   data->activePortIs( 5 );
   data->intfClassIs( 0x21 );
   data->activePortDel( 5 );  // left, but still carries the class
   data->activePortIs( 6 );   // came later: the class was never written there
   sw_.chip( 0 ).ports().portClassIs( 6, Sim::PortClassKind::FieldIngress, 0x44 );

   const U64 sets = classSets();
   data->intfClassIs( intfClassInvalid );
   EXPECT_EQ( classSets(), sets + 2 );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 2 ), 0u );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 5 ), 0u );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 6 ), 0x44u );
   EXPECT_TRUE( data->intfClassAppliedPort().empty() );
   EXPECT_FALSE( data->intfClassValid() );
}

TEST_F( UnitRecordsTest, EgressClassKeepsTheBitsOfOtherTypes ) {
   const AclUnitData::Ptr mac = unitData( Acl::mac_, Acl::out_ );
   const AclUnitData::Ptr ip = unitData( Acl::ip_, Acl::out_ );
   mac->activePortIs( 4 );
   ip->activePortIs( 4 );
   mac->intfClassIs( 0x30 );
   ip->intfClassIs( 0x06 );
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 4 ), 0x36u );
   EXPECT_EQ( HalyardTest::ingressClass( sw_.chip( 0 ), 4 ), 0u )
       << "egress ACLs leave the ingress class alone";
   ip->intfClassIs( intfClassInvalid );
   EXPECT_EQ( HalyardTest::egressClass( sw_.chip( 0 ), 4 ), 0x30u );
}

// ---- Interface class pools: the ingress pool of a unit and the egress pool of a machine
// behave alike.

template <class Pool>
struct PoolOps;
template <>
struct PoolOps<HalyardIntfClassData> {
   static Vesper::Ptr<HalyardIntfClassData> make() { return new HalyardIntfClassData( 0 ); }
   static U32 push( HalyardIntfClassData& p, U8 c ) { return p.freeAclIntfClassPush( c ); }
   static U8 pop( HalyardIntfClassData& p ) { return p.freeAclIntfClassPop(); }
   static void is( HalyardIntfClassData& p, U32 i, U8 c ) { p.freeAclIntfClassIs( i, c ); }
   static void del( HalyardIntfClassData& p, U32 i ) { p.freeAclIntfClassDel( i ); }
   static const IntfClassPool& pool( const HalyardIntfClassData& p ) {
      return p.freeAclIntfClass();
   }
};
template <>
struct PoolOps<AclTypeUnitData> {
   static Vesper::Ptr<AclTypeUnitData> make() { return new AclTypeUnitData( 0 ); }
   static U32 push( AclTypeUnitData& p, U8 c ) { return p.freeIntfClassPush( c ); }
   static U8 pop( AclTypeUnitData& p ) { return p.freeIntfClassPop(); }
   static void is( AclTypeUnitData& p, U32 i, U8 c ) { p.freeIntfClassIs( i, c ); }
   static void del( AclTypeUnitData& p, U32 i ) { p.freeIntfClassDel( i ); }
   static const IntfClassPool& pool( const AclTypeUnitData& p ) { return p.freeIntfClass(); }
};

template <class Pool>
class IntfClassPoolTest : public ::testing::Test {};
using PoolTypes = ::testing::Types<HalyardIntfClassData, AclTypeUnitData>;
TYPED_TEST_SUITE( IntfClassPoolTest, PoolTypes );

TYPED_TEST( IntfClassPoolTest, LastPushedComesOutFirstAndEmptyYieldsZero ) {
   using Ops = PoolOps<TypeParam>;
   const auto pool = Ops::make();
   for ( U32 c = 1; c <= 255; ++c ) {
      EXPECT_EQ( Ops::push( *pool, U8( c ) ), c - 1 );
   }
   EXPECT_EQ( Ops::pop( *pool ), 255 );
   EXPECT_EQ( Ops::pop( *pool ), 254 );
   Ops::push( *pool, 255 );
   EXPECT_EQ( Ops::pop( *pool ), 255 ) << "a class given back is the next one out";
   while ( !Ops::pool( *pool ).empty() ) {
      Ops::pop( *pool );
   }
   EXPECT_EQ( Ops::pop( *pool ), 0 );
   EXPECT_EQ( Ops::pop( *pool ), 0 );
   Ops::push( *pool, 9 );
   EXPECT_EQ( Ops::pop( *pool ), 9 ) << "the pool stays usable after running dry";
}

}  // namespace
}  // namespace AclCoreTest
