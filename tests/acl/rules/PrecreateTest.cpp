// Pre-creation of an ACL on its units: VFP use, interface classes, port claims and their
// conflicts, standard entries. Each pass is checked in the records and on the chip's ports.
#include <gtest/gtest.h>

#include "tests/acl/rules/MacAclFixture.h"
#include "tests/support/ChipReadback.h"

namespace AclRulesTest {
namespace {

using Halyard::AclUnitData;

constexpr U32 unit = 0;

class PrecreateTest : public MacAclFixture {
 protected:
   PrecreateTest() { build( layoutOf( { "trident3", "tomahawk" } ) ); }

   HalyardTest::DrivenAcl aclOf( const std::string& name, Acl::AclType type, Acl::AclDirection dir,
                                 const std::vector<Pylon::IntfId>& intfs, bool standard = false ) {
      HalyardTest::DrivenAcl acl( sw(), name, type, dir, standard );
      acl.portsBound( intfs );
      return acl;
   }
   std::optional<Acl::AclType> claim( U32 port ) {
      return helper().vfpAclTypeForUnit( unit )->vfpAclTypeForPort(
          Vesper::String( "Ethernet" + std::to_string( port ) ) );
   }
   size_t ingressPool() { return helper().halyardIntfClassData( unit )->freeAclIntfClass().size(); }
   U64 classWrites() { return sw().sim().sdk().callCount( "bcm_port_class_set" ); }
};

TEST_F( PrecreateTest, IngressPortAclTakesVfpAndAClassAndKeepsThemAcrossPasses ) {
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ), intfOf( 0, 2 ) } );
   const size_t pool = ingressPool();
   EXPECT_EQ( helper().precreateAcl( acl.data(), nullptr ), Fennel::aclCreateSuccess );

   const AclUnitData::Ptr u = acl.unitData( unit );
   EXPECT_TRUE( u->common()->canUseVfp() );
   EXPECT_EQ( u->intfClass(), 255 ) << "the pool gives its top, 255, first";
   EXPECT_EQ( ingressPool(), pool - 1 );
   EXPECT_EQ( claim( 1 ), Acl::mac_ );
   EXPECT_EQ( claim( 2 ), Acl::mac_ );
   EXPECT_FALSE( claim( 3 ) );
   EXPECT_EQ( HalyardTest::ingressClass( sw().chip( unit ), 1 ), 255u );
   EXPECT_EQ( HalyardTest::ingressClass( sw().chip( unit ), 3 ), 0u );
   // A bound port anywhere counts for every unit of the ACL: unit 1 plans VFP too, with a
   // class of its own pool, and has no port to claim.
   EXPECT_TRUE( acl.unitData( 1 )->common()->canUseVfp() );
   EXPECT_TRUE( helper().vfpAclTypeForUnit( 1 )->vfpAclTypeForPort().empty() );

   u->common()->dirtyIs( true );
   const U64 writes = classWrites();
   helper().precreateAcl( acl.data(), nullptr );
   EXPECT_FALSE( u->common()->dirty() ) << "a pass starts clean";
   EXPECT_EQ( u->intfClass(), 255 ) << "the class is kept";
   EXPECT_EQ( ingressPool(), pool - 1 ) << "no pop, no push";
   EXPECT_EQ( classWrites(), writes ) << "no port touched";
}

TEST_F( PrecreateTest, ASecondTypeOnAClaimedPortIsInConflictAndGivesItsClassBack ) {
   auto mac = macAcl( "m", Acl::in_, { intfOf( 0, 1 ) } );
   mac.precreated();
   auto ip = aclOf( "i", Acl::ip_, Acl::in_, { intfOf( 0, 3 ) } );
   ip.precreated();
   ASSERT_EQ( ip.unitData( unit )->intfClass(), 254 ) << "alone on its port it has VFP";
   EXPECT_EQ( claim( 3 ), Acl::ip_ );

   ip.portsBound( { intfOf( 0, 1 ) } );
   ip.precreated();
   const AclUnitData::Ptr u = ip.unitData( unit );
   EXPECT_TRUE( u->vfpPortConflict() );
   EXPECT_FALSE( u->common()->canUseVfp() );
   EXPECT_FALSE( u->intfClassValid() );
   EXPECT_EQ( helper().halyardIntfClassData( unit )->freeAclIntfClassPop(), 254 )
       << "the class went back on top of the pool";
   EXPECT_EQ( claim( 1 ), Acl::mac_ ) << "the first type keeps the port";
   EXPECT_FALSE( claim( 3 ) ) << "the ACL took its own claim back";
   EXPECT_EQ( HalyardTest::ingressClass( sw().chip( unit ), 3 ), 0u );
   EXPECT_TRUE( mac.unitData( unit )->common()->canUseVfp() );
}

TEST_F( PrecreateTest, TwoAclsOfOneTypeShareAPortEachWithItsClass ) {
   auto first = macAcl( "m1", Acl::in_, { intfOf( 0, 1 ) } );
   auto second = macAcl( "m2", Acl::in_, { intfOf( 0, 1 ) } );
   first.precreated();
   second.precreated();
   EXPECT_FALSE( second.unitData( unit )->vfpPortConflict() );
   EXPECT_TRUE( second.unitData( unit )->common()->canUseVfp() );
   EXPECT_EQ( first.unitData( unit )->intfClass(), 255 );
   EXPECT_EQ( second.unitData( unit )->intfClass(), 254 );
}

TEST_F( PrecreateTest, AnEmptyPoolTurnsVfpOffWithoutConflict ) {
   helper().halyardIntfClassData( unit )->freeAclIntfClassDelAll();
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ) } );
   acl.precreated();
   const AclUnitData::Ptr u = acl.unitData( unit );
   EXPECT_FALSE( u->common()->canUseVfp() );
   EXPECT_FALSE( u->vfpPortConflict() );
   EXPECT_FALSE( u->intfClassValid() );
   EXPECT_FALSE( claim( 1 ) );
}

TEST_F( PrecreateTest, EgressAclTakesAClassOfItsTypesFieldAndNeverVfp ) {
   auto acl = macAcl( "m", Acl::out_, { intfOf( 0, 2 ) } );
   acl.precreated();
   const AclUnitData::Ptr u = acl.unitData( unit );
   EXPECT_EQ( u->intfClass(), 48 ) << "the MAC field of the egress class is 0x30";
   EXPECT_FALSE( u->common()->canUseVfp() );
   EXPECT_FALSE( claim( 2 ) );
   EXPECT_EQ( HalyardTest::egressClass( sw().chip( unit ), 2 ), 48u );
   EXPECT_EQ( HalyardTest::ingressClass( sw().chip( unit ), 2 ), 0u );
}

TEST_F( PrecreateTest, VlanAclLivesOnEveryUnitWithoutVfpOrClass ) {
   const auto acl = HalyardTest::aclDataOf( "v", Acl::ip_, Acl::in_, 10 );
   EXPECT_EQ( helper().precreateAcl( acl, nullptr ), Fennel::aclCreateSuccess );
   for ( const U32 u : sw().units() ) {
      const AclUnitData::Ptr data = helper().halyardAclData( acl->key() )->unitData( u );
      ASSERT_TRUE( data && data->common() ) << "unit " << u;
      EXPECT_FALSE( data->common()->canUseVfp() );
      EXPECT_FALSE( data->intfClassValid() );
   }
}

TEST_F( PrecreateTest, PortAclWithoutBindingHasNoUnitData ) {
   auto acl = macAcl( "m", Acl::in_, {} );
   EXPECT_EQ( acl.precreated(), Fennel::aclCreateSuccess );
   ASSERT_TRUE( acl.records() );
   EXPECT_TRUE( acl.records()->unitData().empty() );
}

TEST_F( PrecreateTest, StandardEntriesWhereTheTypeHasStandardManagers ) {
   auto ip6 = aclOf( "s6", Acl::ipv6_, Acl::in_, { intfOf( 0, 1 ) }, true );
   auto mac = aclOf( "sm", Acl::mac_, Acl::out_, { intfOf( 0, 1 ) }, true );
   ip6.precreated();
   mac.precreated();
   EXPECT_TRUE( ip6.unitData( unit )->common()->canUseStd() );
   EXPECT_FALSE( mac.unitData( unit )->common()->canUseStd() ) << "MAC has no standard key";
}

}  // namespace
}  // namespace AclRulesTest
