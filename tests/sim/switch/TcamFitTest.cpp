// Whether an ACL fits: 2,000 IPv4 entries (the size of acl1_1k and fw1_1k in one list) in the
// IPv4 group of each unit of the default switch, beside the management and port-blocking
// entries; not on a profile shrunk to four IFP slices; and every slice free again after.
#include <gtest/gtest.h>

#include <vector>

#include "sim/switch/ProfileText.h"
#include "sim/switch/SimSwitch.h"

namespace SimSwitchTest {
namespace {

using Halyard::tcamGroupAclMgmt;
using Halyard::tcamGroupAclPortBlocking;
using Halyard::tcamGroupIpAcl;

constexpr U32 kRules = 2000;
constexpr std::size_t kIfp = std::size_t( Sim::Stage::Ifp );

Sim::GroupUsage usageOf( const Sim::UnitUsage& u, Halyard::TcamGroupAssignment a ) {
   for ( const Sim::GroupUsage& g : u.groups ) {
      if ( g.assignment == a ) {
         return g;
      }
   }
   ADD_FAILURE() << "no group " << a;
   return {};
}

class TcamFitTest : public ::testing::Test {
 protected:
   // The hidden entries that bring-up takes on every unit: six management, four port blocking.
   static void bringUp( Sim::SimSwitch& sw ) {
      for ( U32 unit : sw.units() ) {
         for ( auto [a, count] :
               { std::pair{ tcamGroupAclMgmt, 6u }, std::pair{ tcamGroupAclPortBlocking, 4u } } ) {
            auto m = sw.groupManager()->entryManager( a );
            for ( U32 i = 0; i < count; ++i ) {
               ASSERT_NE( 0u, m->getEntry( unit, m->entryBase() + i, "hidden" ) );
            }
         }
      }
   }
   // Acquires up to `count` IPv4 entries on the unit; answers how many it got.
   static std::vector<U32> acquire( Sim::SimSwitch& sw, U32 unit, U32 count ) {
      std::vector<U32> ids;
      auto ip = sw.groupManager()->unboundedEntryManager( tcamGroupIpAcl );
      while ( ids.size() < count ) {
         const U32 id = ip->getEntry( unit, "acl1_1k+fw1_1k" );
         if ( !id ) {
            break;
         }
         ids.push_back( id );
      }
      return ids;
   }
   static void release( Sim::SimSwitch& sw, U32 unit, const std::vector<U32>& ids ) {
      auto ip = sw.groupManager()->unboundedEntryManager( tcamGroupIpAcl );
      for ( U32 id : ids ) {
         ip->releaseEntry( unit, id );
      }
      ip->compressEntries( unit );
   }
};

TEST_F( TcamFitTest, TwoThousandIpv4EntriesFitOnBothUnitsOfTheDefaultSwitch ) {
   Sim::SimSwitch sw;
   bringUp( sw );
   for ( U32 unit : sw.units() ) {
      const U32 freeBefore = sw.tcamUsage( unit ).stages[kIfp].freeSlices;
      EXPECT_EQ( 10u, freeBefore ) << "twelve slices, one each for the hidden groups";
      const std::vector<U32> ids = acquire( sw, unit, kRules );
      ASSERT_EQ( kRules, ids.size() ) << "unit " << unit;

      const Sim::UnitUsage u = sw.tcamUsage( unit );
      const Sim::GroupUsage ip = usageOf( u, tcamGroupIpAcl );
      EXPECT_EQ( kRules, ip.used );
      EXPECT_EQ( 4u, ip.slices ) << "512 entries a slice";
      EXPECT_EQ( 10u * 512, ip.capacity );
      EXPECT_EQ( 6u, u.stages[kIfp].freeSlices );
      EXPECT_EQ( 1u, usageOf( u, tcamGroupAclMgmt ).slices );
      EXPECT_EQ( 1u, usageOf( u, tcamGroupAclPortBlocking ).slices );

      release( sw, unit, ids );
      EXPECT_EQ( freeBefore, sw.tcamUsage( unit ).stages[kIfp].freeSlices );
      EXPECT_EQ( 0u, usageOf( sw.tcamUsage( unit ), tcamGroupIpAcl ).slices );
   }
}

TEST_F( TcamFitTest, AProfileShrunkToFourIfpSlicesDoesNotFitThem ) {
   std::string text = Sim::profileText( Sim::defaultProfile() );
   for ( const char* unit : { "name chip0", "name chip1" } ) {
      const std::size_t at = text.find( unit ) + std::string( unit ).size();
      text.insert( at, " slices ifp:4" );
   }
   Sim::SimSwitch sw( Sim::parseProfile( text, "small.switch" ) );
   bringUp( sw );
   for ( U32 unit : sw.units() ) {
      const std::vector<U32> ids = acquire( sw, unit, kRules );
      EXPECT_EQ( 2u * 512, ids.size() ) << "two slices are left for the ACL on unit " << unit;
      auto ip = sw.groupManager()->unboundedEntryManager( tcamGroupIpAcl );
      EXPECT_TRUE( ip->exhausted( unit ) );
      EXPECT_EQ( 0u, sw.tcamUsage( unit ).stages[kIfp].freeSlices );

      release( sw, unit, ids );
      EXPECT_EQ( 2u, sw.tcamUsage( unit ).stages[kIfp].freeSlices );
      EXPECT_FALSE( ip->exhausted( unit ) );
   }
}

}  // namespace
}  // namespace SimSwitchTest
