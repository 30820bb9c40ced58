// What the managers do to entries in hardware, checked by pushing packets through the chip.
#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

class EntryHardware : public TcamTest {
 protected:
   // A new IP ACL entry that drops TCP to `port`, installed.
   U32 installedDrop( U16 port ) {
      const U32 e = ip->getEntry( kUnit, "acl" );
      dropTcpTo( e, port );
      EXPECT_EQ( codes.none, ip->installEntry( kUnit, e ) );
      return e;
   }
   std::optional<EntryId> hit( U16 port ) {
      return chip.lookup( tcpTo( port ) ).hitIn( tcamGroupIpAcl );
   }
};

TEST_F( EntryHardware, InstallingTwiceRewritesTheEntry ) {
   const U32 e = installedDrop( 80 );
   EXPECT_EQ( e, hit( 80 ) );
   dropTcpTo( e, 443 );
   EXPECT_EQ( e, hit( 80 ) ) << "a change waits for the next install";
   EXPECT_EQ( codes.none, ip->installEntry( kUnit, e ) );
   EXPECT_EQ( std::nullopt, hit( 80 ) );
   EXPECT_EQ( e, hit( 443 ) );
   EXPECT_EQ( codes.none, ip->installEntry( kUnit, e ) );
   EXPECT_EQ( e, hit( 443 ) );
}

TEST_F( EntryHardware, CompressionKeepsTheOrderAndPacksTheOrdinals ) {
   std::vector<U32> ids;
   for ( U16 port : { 80, 80, 443, 80 } ) {
      if ( ids.size() == kIpCapacity ) {
         ip->releaseEntry( kUnit, ids[0] );
         ids.erase( ids.begin() );
      }
      ids.push_back( installedDrop( port ) );
   }
   // Left: [80, 443, 80] with ordinals 1, 2, 3.
   const std::optional<EntryId> before80 = hit( 80 );
   const std::optional<EntryId> before443 = hit( 443 );
   EXPECT_EQ( ids[0], before80 );
   ip->compressEntries( kUnit );
   EXPECT_EQ( before80, hit( 80 ) );
   EXPECT_EQ( before443, hit( 443 ) );
   EXPECT_EQ( ids, chip.entries( tcamGroupIpAcl ) );
   for ( std::size_t i = 0; i < ids.size(); ++i ) {
      EXPECT_EQ( i, chip.entryOrdinal( ids[i] ) );
   }
   ip->releaseEntry( kUnit, ids[0] );
   const U32 next = installedDrop( 80 );
   EXPECT_EQ( ids[2], hit( 80 ) ) << "a later entry stays behind the ones before it";
   EXPECT_EQ( 3u, chip.entryOrdinal( next ) );
}

TEST_F( EntryHardware, PortKeyIsRecordedForAnyEntryOfTheUnit ) {
   const U32 base = mgmt->getEntry( kUnit, mgmt->entryBase(), "Prevent ACL logging" );
   const U32 rule = ip->getEntry( kUnit, "acl" );
   bcm_pbmp_t data, mask;
   data.portAdd( 3 );
   mask.portAdd( 3 );
   mask.portAdd( 4 );
   // The back-end records some ports through the management manager.
   mgmt->addInPortsForEntry( kUnit, rule, data, mask );
   EXPECT_EQ( data, ip->tcamEntryBcmPbmp( kUnit, rule ) );
   EXPECT_EQ( bcm_pbmp_t{}, ip->tcamEntryBcmPbmp( kUnit, base ) );
   mgmt->setTcamEntryBcmPbmpPermanent( kUnit, base, true );
   auto* sim = static_cast<SimBoundedTcamEntryManager*>( mgmt.ptr() );
   EXPECT_TRUE( sim->tcamEntryBcmPbmpPermanent( kUnit, base ) );
   EXPECT_FALSE( sim->tcamEntryBcmPbmpPermanent( kUnit, rule ) );
   data.portAdd( 5 );
   mgmt->addInPortsForEntry( kUnit, base, data, mask );
   EXPECT_EQ( data, mgmt->tcamEntryBcmPbmp( kUnit, base ) ) << "permanent keys still record";
}

using EntryHardwareDeathTest = EntryHardware;

TEST_F( EntryHardwareDeathTest, AnUntoleratedEnableFailureStops ) {
   const U32 e = ip->getEntry( kUnit, "never installed" );
   ip->enableEntry( kUnit, e, true, codes.notInstalled );
   EXPECT_DEATH( ip->enableEntry( kUnit, e, true, codes.resource ), "rc == toleratedRc" );
   EXPECT_DEATH( ip->qualifyIpType( kUnit, 4242, bcm_field_IpType_t( codes.ipTypeIpv6 ) ),
                 "qualifyIpType of entry 4242 that the group manager does not hold on unit 0" );
}

}  // namespace
}  // namespace Sim
