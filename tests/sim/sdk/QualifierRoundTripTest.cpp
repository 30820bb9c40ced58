// Every qualifier family through Shim::sdk_ in the library's call forms: what a read answers
// before the qualifier is set, what the chip model holds after the set (under the right
// field), and what the exact getter reads back.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <span>
#include <string>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::Qualifiers" )

namespace SimSdkTest {
namespace {

QualValue bytesValue( std::span<const U8> data, std::span<const U8> mask ) {
   QualValue v;
   v.width = static_cast<U8>( data.size() );
   std::copy( data.begin(), data.end(), v.data.begin() );
   std::copy( mask.begin(), mask.end(), v.mask.begin() );
   return v;
}

const bcm_ip6_t kIp6 = { 0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0x12, 0, 0, 0, 0, 0, 0, 0, 0x34 };
const bcm_ip6_t kIp6Mask = { 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xf0,
                             0,    0,    0,    0,    0,    0,    0,    0 };
const bcm_mac_t kMac = { 0x00, 0x1c, 0x73, 0x01, 0x02, 0x03 };
const bcm_mac_t kMacMask = { 0xff, 0xff, 0xff, 0x00, 0x00, 0x00 };

// One qualifier family: its setter and getter in the library's forms, and what the chip model
// must hold after the set.
struct QualCase {
   std::string name;
   QualId q;
   QualValue expected;
   // A read of the absent qualifier answers the no-error code with zero data and mask.
   bool absentReadsZero;
   std::function<int( EntryId )> set;
   std::function<int( EntryId, QualValue& )> get;  // empty: the SDK has no read of it
};
void PrintTo( const QualCase& c, std::ostream* os ) {
   *os << c.name;
}

// Outputs start with every bit set, so that a read that leaves them alone is seen.
#define NUM_GET( Name, Q, T )                                                            \
   []( EntryId e, QualValue& v ) {                                                       \
      T d = static_cast<T>( ~T{} ), m = static_cast<T>( ~T{} );                          \
      const int rc = SDK_TRACE_RV( bcm_field_qualify_##Name##_get( kUnit, e, &d, &m ) ); \
      v = QualValue::fromU64( qualWidth( QualId::Q ), d, m );                            \
      return rc;                                                                         \
   }
#define NUM_SET( Name, T, data, mask )                                                \
   []( EntryId e ) {                                                                  \
      return SDK_CHECK( bcm_field_qualify_##Name( kUnit, e, T( data ), T( mask ) ) ); \
   }
#define NUM_CASE( Name, Q, T, data, mask, absentZero )                                        \
   QualCase {                                                                                 \
#Name, QualId::Q, QualValue::fromU64( qualWidth( QualId::Q ), data, mask ), absentZero, \
          NUM_SET( Name, T, data, mask ), NUM_GET( Name, Q, T )                               \
   }
#define SET_ONLY_CASE( Name, Q, T, data, mask )                                          \
   QualCase {                                                                            \
#Name, QualId::Q, QualValue::fromU64( qualWidth( QualId::Q ), data, mask ), false, \
          NUM_SET( Name, T, data, mask ), {}                                             \
   }
#define BYTES_CASE( Name, Q, T, data, mask )                                               \
   QualCase {                                                                              \
#Name, QualId::Q, bytesValue( data, mask ), false,                                       \
          []( EntryId e ) { return SDK_CHECK( bcm_field_qualify_##Name( kUnit, e, data, mask ) ); }, \
          []( EntryId e, QualValue& v ) {                                                      \
             T d, m;                                                                           \
             std::fill( std::begin( d ), std::end( d ), 0xEE );                                \
             std::fill( std::begin( m ), std::end( m ), 0xEE );                                \
             const int rc = SDK_TRACE_RV( bcm_field_qualify_##Name##_get( kUnit, e, &d, &m ) ); \
             v = bytesValue( d, m );                                                           \
             return rc;                                                                        \
          } \
   }

const QualCase kCases[] = {
    NUM_CASE( SrcIp, SrcIp, bcm_ip_t, 0x0a000001, 0xffffff00, true ),
    NUM_CASE( DstIp, DstIp, bcm_ip_t, 0xc0a80101, 0xffffffff, true ),
    NUM_CASE( EtherType, EtherType, U16, 0x86dd, 0xffff, false ),
    NUM_CASE( IpProtocol, IpProtocol, U8, 6, 0xff, false ),
    NUM_CASE( IpProtocolClass, IpProtocolClass, U32, 3, 0xf, false ),
    NUM_CASE( ExtensionHeaderType, ExtensionHeaderType, U8, 141, 0xff, false ),
    NUM_CASE( L4SrcPort, L4SrcPort, U16, 0x0800, 0xff00, false ),
    NUM_CASE( L4DstPort, L4DstPort, U16, 443, 0xffff, false ),
    NUM_CASE( L4SrcPortClass, L4SrcPortClass, U32, 5, 0xff, false ),
    NUM_CASE( L4DstPortClass, L4DstPortClass, U32, 6, 0xff, false ),
    NUM_CASE( DSCP, Dscp, U8, 0xb8, 0xfc, false ),
    NUM_CASE( Ip6TrafficClass, Ip6TrafficClass, U8, 0x03, 0x03, false ),
    NUM_CASE( Ip6HopLimit, Ip6HopLimit, U8, 1, 0xff, false ),
    NUM_CASE( TcpControl, TcpControl, U8, 0x12, 0x12, false ),
    NUM_CASE( OuterVlanId, OuterVlanId, U16, 100, 0xfff, false ),
    NUM_CASE( ForwardingVlanId, ForwardingVlanId, U16, 200, 0xfff, false ),
    NUM_CASE( EgressClassL3Interface, EgressClassL3Interface, U32, 300, 0xfff, false ),
    NUM_CASE( HiGig, HiGig, U8, 1, 1, false ),
    NUM_CASE( L3Routable, L3Routable, U8, 1, 1, false ),
    NUM_CASE( MyStationHit, MyStationHit, U8, 1, 1, false ),
    NUM_CASE( InterfaceClassPort, InterfaceClassPort, U32, 0x21, 0xff, false ),
    NUM_CASE( InterfaceClassL3, InterfaceClassL3, U32, 0x7, 0x3f, false ),
    NUM_CASE( DstClassField, DstClassField, U32, 0x9, 0xf, false ),
    NUM_CASE( DstIpClassMsbNibble, DstIpClassMsbNibble, U32, 0x4, 0xf, false ),
    NUM_CASE( DstIp6ClassMsbNibble, DstIp6ClassMsbNibble, U32, 0x2, 0xf, false ),
    SET_ONLY_CASE( Ttl, Ttl, U8, 1, 0xff ),
    SET_ONLY_CASE( VxlanNetworkId, VxlanNetworkId, U32, 0x123456, 0xffffff ),
    SET_ONLY_CASE( InterfaceClassL2, InterfaceClassL2, U32, 0x40, 0x40 ),
    SET_ONLY_CASE( SrcClassField, SrcClassField, U32, 0x8, 0x18 ),
    SET_ONLY_CASE( DstClassL2, DstClassL2, U32, 0, 0x40 ),
    SET_ONLY_CASE( EtherTypeClass, EtherTypeClass, U32, 2, 0xf ),
    BYTES_CASE( SrcIp6, SrcIp6, bcm_ip6_t, kIp6, kIp6Mask ),
    BYTES_CASE( DstIp6, DstIp6, bcm_ip6_t, kIp6, kIp6Mask ),
    BYTES_CASE( SrcIp6High, SrcIp6High, bcm_ip6_t, kIp6, kIp6Mask ),
    BYTES_CASE( DstIp6High, DstIp6High, bcm_ip6_t, kIp6, kIp6Mask ),
    BYTES_CASE( SrcMac, SrcMac, bcm_mac_t, kMac, kMacMask ),
    BYTES_CASE( DstMac, DstMac, bcm_mac_t, kMac, kMacMask ),
};

class QualifierRoundTrip : public SimSdkFixture, public ::testing::WithParamInterface<QualCase> {};

TEST_P( QualifierRoundTrip, AbsentThenStoredThenReadBack ) {
   const QualCase& c = GetParam();
   const EntryId e = newEntry();
   QualValue read;
   if ( c.get ) {
      const int absent = c.get( e, read );
      if ( c.absentReadsZero ) {
         EXPECT_EQ( BCM_E_NONE, absent );
         EXPECT_EQ( QualValue::fromU64( c.expected.width, 0, 0 ), read );
      } else {
         EXPECT_EQ( BCM_E_NOT_FOUND, absent );
      }
   }
   EXPECT_FALSE( chip_.qualifier( e, c.q ).has_value() );

   EXPECT_EQ( BCM_E_NONE, c.set( e ) );
   ASSERT_TRUE( chip_.qualifier( e, c.q ).has_value() );
   EXPECT_EQ( c.expected, *chip_.qualifier( e, c.q ) );
   if ( c.get ) {
      EXPECT_EQ( BCM_E_NONE, c.get( e, read ) );
      EXPECT_EQ( c.expected, read );
   }
   // The qualifier went to this entry only.
   const EntryId other = newEntry();
   EXPECT_FALSE( chip_.qualifier( other, c.q ).has_value() );
}

INSTANTIATE_TEST_SUITE_P( EveryFamily, QualifierRoundTrip, ::testing::ValuesIn( kCases ),
                          []( const auto& info ) { return info.param.name; } );

using QualifierTest = SimSdkFixture;

// Port 1023 stands for an interface the port map does not know: it goes into a mask, is
// found there by the member test, and reaches no port of the chip.
TEST_F( QualifierTest, Port1023StandsInAMaskAndMatchesNoChipPort ) {
   bcm_pbmp_t some;
   BCM_PBMP_CLEAR( some );
   BCM_PBMP_PORT_ADD( some, 1023 );
   BCM_PBMP_PORT_ADD( some, 4 );
   EXPECT_TRUE( BCM_PBMP_MEMBER( some, 1023 ) );
   EXPECT_TRUE( BCM_PBMP_MEMBER( some, 4 ) );
   EXPECT_FALSE( BCM_PBMP_MEMBER( some, 5 ) );
   int count = 0;
   BCM_PBMP_COUNT( some, count );
   EXPECT_EQ( 2, count );

   const EntryId e = newEntry();
   SDK_CHECK( bcm_field_qualify_InPorts( kUnit, e, some, PBMP_ALL( kUnit ) ) );
   EXPECT_EQ( ( PortBitmap{ 4 } ), chip_.inPorts( e )->data );
   BCM_PBMP_PORT_REMOVE( some, 1023 );
   EXPECT_FALSE( BCM_PBMP_MEMBER( some, 1023 ) );
}

// The SDK's enumerators reach the chip model as the model's own values.
struct IpFragCase {
   const char* name;
   std::function<bcm_field_IpFrag_t()> sdkValue;
   IpFrag model;
};
void PrintTo( const IpFragCase& c, std::ostream* os ) {
   *os << c.name;
}

class IpFragRoundTrip : public SimSdkFixture, public ::testing::WithParamInterface<IpFragCase> {};

TEST_P( IpFragRoundTrip, TranslatedBothWays ) {
   const EntryId e = newEntry();
   bcm_field_IpFrag_t frag{};
   EXPECT_EQ( BCM_E_NOT_FOUND, SDK_TRACE_RV( bcm_field_qualify_IpFrag_get( kUnit, e, &frag ) ) );
   SDK_CHECK( bcm_field_qualify_IpFrag( kUnit, e, GetParam().sdkValue() ) );
   EXPECT_EQ( GetParam().model, chip_.ipFrag( e ) );
   EXPECT_EQ( BCM_E_NONE, SDK_TRACE_RV( bcm_field_qualify_IpFrag_get( kUnit, e, &frag ) ) );
   EXPECT_EQ( GetParam().sdkValue(), frag );
}

INSTANTIATE_TEST_SUITE_P(
    EveryValue, IpFragRoundTrip,
    ::testing::Values(
        IpFragCase{ "Non", [] { return bcmFieldIpFragNon; }, IpFrag::Non },
        IpFragCase{ "First", [] { return bcmFieldIpFragFirst; }, IpFrag::First },
        IpFragCase{ "NonOrFirst", [] { return bcmFieldIpFragNonOrFirst; }, IpFrag::NonOrFirst },
        IpFragCase{ "NotFirst", [] { return bcmFieldIpFragNotFirst; }, IpFrag::NotFirst },
        IpFragCase{ "Any", [] { return bcmFieldIpFragAny; }, IpFrag::Any } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

}  // namespace
}  // namespace SimSdkTest
