// The generic layer's keys: AclKey, IntfPairKey, AclData, and the create
// result codes.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "platform/fennel/AclCreateError.h"
#include "platform/fennel/AclData.h"
#include "platform/fennel/AclKey.h"
#include "platform/fennel/IntfPairKey.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using Fennel::AclKey;
using Fennel::AclVlanIdOrNone;

AclKey key( std::string name, Acl::AclType type = Acl::ip(),
            Acl::AclDirection direction = Acl::in(), bool standard = false, U64 vlan = 0,
            std::string group = "aclGroupDefault" ) {
   return AclKey( std::move( name ), type, direction, standard, AclVlanIdOrNone( vlan ),
                  std::move( group ) );
}

// Keys that differ from the first in exactly one field, in field order.
std::vector<AclKey> oneFieldApart() {
   return { key( "acl1" ),
            key( "acl2" ),
            key( "acl1", Acl::ipv6() ),
            key( "acl1", Acl::ip(), Acl::out() ),
            key( "acl1", Acl::ip(), Acl::in(), true ),
            key( "acl1", Acl::ip(), Acl::in(), false, 10 ),
            key( "acl1", Acl::ip(), Acl::in(), false, 0, "group2" ) };
}

TEST( AclKeyTest, EveryFieldTakesPartInEqualityAndHash ) {
   auto keys = oneFieldApart();
   std::set<U32> hashes;
   for ( std::size_t i = 0; i < keys.size(); ++i ) {
      EXPECT_EQ( keys[i], AclKey( keys[i] ) );
      hashes.insert( keys[i].hash() );
      for ( std::size_t j = i + 1; j < keys.size(); ++j ) {
         EXPECT_NE( keys[i], keys[j] ) << i << " " << j;
      }
   }
   EXPECT_EQ( keys.size(), hashes.size() );
}

TEST( AclKeyTest, OrdersByNameFirstThenTheOtherFieldsInTurn ) {
   // The name outweighs every later field.
   EXPECT_LT( key( "a", Acl::mac(), Acl::out(), true, 4095, "z" ), key( "b" ) );
   EXPECT_LT( key( "a", Acl::ip(), Acl::out() ), key( "a", Acl::ipv6(), Acl::in() ) );
   EXPECT_LT( key( "a", Acl::ip(), Acl::in(), false, 5, "z" ),
              key( "a", Acl::ip(), Acl::in(), false, 6, "a" ) );
   std::map<AclKey, int> byKey;
   for ( const auto& k : oneFieldApart() ) {
      byKey[k] = 1;
   }
   EXPECT_EQ( oneFieldApart().size(), byKey.size() );
   EXPECT_EQ( "acl2", std::prev( byKey.end() )->first.aclName() );
}

TEST( AclKeyTest, TextRoundTripsEvenWithAwkwardNames ) {
   auto keys = oneFieldApart();
   keys.push_back( key( "it's, 'aclType': ip", Acl::mac(), Acl::out(), true, 4095, "g\\1" ) );
   keys.push_back( key( "" ) );
   for ( const auto& k : keys ) {
      EXPECT_EQ( k, Fennel::strepToValue<AclKey>( valueToStrep( k ) ) ) << k;
   }
}

TEST( AclKeyTest, BadFieldIsNamed ) {
   std::string text = valueToStrep( key( "a" ) );
   text.replace( text.find( "False" ), 5, "no" );
   std::string message = VocabTest::parseErrorText( [&] { Fennel::strepToValue<AclKey>( text ); } );
   EXPECT_NE( std::string::npos, message.find( "attribute \"standard\" from 'no'" ) ) << message;
}

TEST( IntfPairKeyTest, OrdersByInterfaceThenSubInterfaceAndRoundTrips ) {
   auto eth = []( const char* n ) { return Pylon::strepToValue<Pylon::IntfId>( n ); };
   Fennel::IntfPairKey plain( eth( "Ethernet1" ), Pylon::IntfId() );
   Fennel::IntfPairKey sub( eth( "Ethernet1" ), eth( "Ethernet1.100" ) );
   Fennel::IntfPairKey other( eth( "Ethernet2" ), Pylon::IntfId() );
   EXPECT_LT( plain, sub );
   EXPECT_LT( sub, other );
   EXPECT_NE( plain.hash(), sub.hash() );
   EXPECT_EQ( "Value('Fennel::IntfPairKey', ** {'intfId': Ethernet1, 'subIntfId': Ethernet1.100})",
              valueToStrep( sub ) );
   for ( const auto& k : { plain, sub, other } ) {
      EXPECT_EQ( k, Fennel::strepToValue<Fennel::IntfPairKey>( valueToStrep( k ) ) );
   }
}

}  // namespace
