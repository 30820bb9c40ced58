// The field setters on every chip kind of the catalog (and on a chip with
// both destination class forms): each writes the class form or the plain
// form as the chip wants, binds the class in the chip's compression table
// where it uses one, writes its fp line and level-1 trace, passes its verify
// check, and makes the chip drop exactly the packets the field names.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "acl/HalyardAclHelper.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/chip/Packet.h"
#include "tests/acl/setters/SetterUnit.h"

namespace AclSettersTest {
namespace {

using HalyardCentral::ChipAttribute;
using Sim::ExactClassTable;
using Sim::Packet;
using Sim::QualId;

using QualPair = std::pair<U64, U64>;

class FieldSettersTest : public ::testing::TestWithParam<std::string> {
 protected:
   FieldSettersTest() : unit_( GetParam() ) { entry_ = unit_.newEntry( Halyard::tcamGroupIpAcl ); }

   bool has( ChipAttribute a ) const { return unit_.attribute( a ); }
   std::optional<QualPair> qual( QualId q ) {
      const auto v = unit_.chip().qualifier( entry_, q );
      return v ? std::optional( QualPair{ v->dataU64(), v->maskU64() } ) : std::nullopt;
   }
   // The qualifiers of `candidates` that the entry carries.
   std::vector<QualId> carried( std::initializer_list<QualId> candidates ) {
      std::vector<QualId> out;
      for ( QualId q : candidates ) {
         if ( unit_.chip().qualifier( entry_, q ) ) {
            out.push_back( q );
         }
      }
      return out;
   }
   std::string fpQual( const std::string& rest ) const {
      return "fp qual " + std::to_string( entry_ ) + " " + rest;
   }
   std::vector<std::string> levelOneTrace( const std::string& function ) {
      return linesStartingWith( helperTrace_.lines(), function + " Setting" );
   }
   // Gives the entry a drop and puts it in hardware.
   void armDrop() {
      ASSERT_EQ( unit_.chip().actionIs( entry_, Sim::ActionId::Drop, 0, 0 ), Sim::Status::Ok );
      unit_.install( entry_ );
   }
   bool dropped( Packet p ) {
      p.ingressPortIs( 1 ).egressPortIs( 2 );
      return unit_.chip().lookup( p ).dropped;
   }
   Halyard::HalyardTcamGroupManager::Ptr groupMgr() const { return unit_.groupMgr(); }
   Halyard::HalyardTcamGroupManager::PtrConst constGroupMgr() const { return unit_.groupMgr(); }

   static constexpr U32 unit = SetterUnit::unit;
   Vesper::ActivityLockGuard activity_;
   Vesper::TraceCapture fpCmd_{ "Halyard::bcmFpCmd" };
   Vesper::TraceCapture helperTrace_{ setterTraceHandle };
   SetterUnit unit_;
   U32 entry_ = 0;
};

TEST_P( FieldSettersTest, IpProtocolTakesTheClassWhereTheChipCompressesProtocols ) {
   Halyard::setIpProtocol( unit, groupMgr(), entry_, Sim::kProtoTcp, 0xFF, 7, 0xFF );
   const auto qualifiers = carried( { QualId::IpProtocol, QualId::IpProtocolClass } );
   const auto bound = unit_.chip().classTables().exactClass( ExactClassTable::IpProtocol, 6 );
   if ( has( ChipAttribute::supportsIfpIpProtocolCompression ) ) {
      EXPECT_EQ( qualifiers, std::vector{ QualId::IpProtocolClass } );
      EXPECT_EQ( qual( QualId::IpProtocolClass ), QualPair( 7, 0xFF ) );
      EXPECT_EQ( bound, std::optional<U32>( 7 ) );
      EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "IpProtocolClass 7 0xFF" ) } );
      EXPECT_EQ( levelOneTrace( "setIpProtocol" ),
                 std::vector<std::string>{ "setIpProtocol Setting IpProtocolClass: 7" } );
   } else {
      EXPECT_EQ( qualifiers, std::vector{ QualId::IpProtocol } );
      EXPECT_EQ( qual( QualId::IpProtocol ), QualPair( 6, 0xFF ) );
      EXPECT_FALSE( bound.has_value() );
      EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "IpProtocol 6 0xFF" ) } );
      EXPECT_EQ( levelOneTrace( "setIpProtocol" ),
                 std::vector<std::string>{ "setIpProtocol Setting IpProtocol: 6" } );
   }
   Halyard::verifyIpProtocol( unit, constGroupMgr(), entry_, Sim::kProtoTcp, 7 );
   armDrop();
   EXPECT_TRUE( dropped( Packet::tcp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.0.2" ), 1, 2 ) ) );
   EXPECT_FALSE( dropped( Packet::udp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.0.2" ), 1, 2 ) ) );
}

TEST_P( FieldSettersTest, L4DstPortTakesTheClassWhereTheChipCompressesPorts ) {
   Halyard::setL4DstPort( unit, groupMgr(), entry_, 443, 0xFFFF, 3, 0xF );
   const auto qualifiers = carried( { QualId::L4DstPort, QualId::L4DstPortClass } );
   const auto bound = unit_.chip().classTables().exactClass( ExactClassTable::L4DstPort, 443 );
   if ( has( ChipAttribute::supportsIfpL4PortCompression ) ) {
      EXPECT_EQ( qualifiers, std::vector{ QualId::L4DstPortClass } );
      EXPECT_EQ( qual( QualId::L4DstPortClass ), QualPair( 3, 0xF ) );
      EXPECT_EQ( bound, std::optional<U32>( 3 ) );
      EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "L4DstPortClass 3 0xF" ) } );
      EXPECT_EQ( levelOneTrace( "setL4DstPort" ),
                 std::vector<std::string>{ "setL4DstPort Setting L4DstPortClass: 3" } );
   } else {
      EXPECT_EQ( qualifiers, std::vector{ QualId::L4DstPort } );
      EXPECT_EQ( qual( QualId::L4DstPort ), QualPair( 443, 0xFFFF ) );
      EXPECT_FALSE( bound.has_value() );
      EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "L4DstPort 443 0xFFFF" ) } );
      EXPECT_EQ( levelOneTrace( "setL4DstPort" ),
                 std::vector<std::string>{ "setL4DstPort Setting L4DstPort: 443" } );
   }
   Halyard::verifyL4DstPort( unit, constGroupMgr(), entry_, 443, 3 );
   armDrop();
   EXPECT_TRUE(
       dropped( Packet::tcp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.0.2" ), 80, 443 ) ) );
   EXPECT_FALSE(
       dropped( Packet::tcp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.0.2" ), 443, 80 ) ) );
}

TEST_P( FieldSettersTest, EtherTypeClassBindsTheTypeWhereTheChipCompresses ) {
   if ( !has( ChipAttribute::supportsIfpIpProtocolCompression ) ) {
      GTEST_SKIP() << "the chip has no Ethernet type classes";
   }
   Halyard::setEtherType( unit, groupMgr(), entry_, true, Sim::kEtherTypeIpv6, 0xFFFF, 4, 0xF );
   EXPECT_EQ( carried( { QualId::EtherType, QualId::EtherTypeClass } ),
              std::vector{ QualId::EtherTypeClass } );
   EXPECT_EQ( qual( QualId::EtherTypeClass ), QualPair( 4, 0xF ) );
   EXPECT_EQ( unit_.chip().classTables().exactClass( ExactClassTable::EtherType, 0x86DD ),
              std::optional<U32>( 4 ) );
   EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "EtherTypeClass 4 0xF" ) } );
   armDrop();
   EXPECT_TRUE(
       dropped( Packet::udp6( Sim::ip6( "2001:db8::1" ), Sim::ip6( "2001:db8::2" ), 1, 2 ) ) );
   EXPECT_FALSE( dropped( Packet::udp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.0.2" ), 1, 2 ) ) );
}

// The destination forms, in the order the chip is asked: nibble, class field, plain.
enum class DstForm { nibble, classField, plain };

class DstSettersTest : public FieldSettersTest {
 protected:
   DstForm form() const {
      if ( has( ChipAttribute::supportsIfpDstIpClassMsbNibble ) ) {
         return DstForm::nibble;
      }
      return has( ChipAttribute::supportsIfpDstClassField ) ? DstForm::classField : DstForm::plain;
   }
   std::vector<QualId> dstQualifiers() {
      return carried( { QualId::DstIp, QualId::DstMac, QualId::DstClassField,
                        QualId::DstIpClassMsbNibble, QualId::DstIp6ClassMsbNibble } );
   }
   // A packet to `dst` that forwarding gave the destination class `dstClass`.
   static Packet to( U32 dst, U32 dstClass, const Sim::MacAddr& dstMac ) {
      Packet p = Packet::udp4( Sim::ip4( "10.9.9.9" ), dst, 1, 2 );
      p.dstL3Class = dstClass;
      p.dstMac = dstMac;
      return p;
   }

   const Sim::MacAddr otherMac = Sim::mac( "02:00:00:00:00:99" );
   U8 mac_[6] = { 0x00, 0x1c, 0x73, 0x00, 0x00, 0x42 };
   U8 macMask_[6] = { 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
   const Sim::MacAddr simMac{ 0x00, 0x1c, 0x73, 0x00, 0x00, 0x42 };
};

TEST_P( DstSettersTest, DstIPv4TakesTheFirstFormTheChipHas ) {
   const U32 net = Sim::ip4( "10.1.0.0" );
   Halyard::setDstIPv4( unit, groupMgr(), entry_, net, 0xFFFF0000, 5, 0xF );
   const auto bound = unit_.chip().classTables().dstIp4Class( net, 0xFFFF0000 );
   switch ( form() ) {
      case DstForm::nibble:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstIpClassMsbNibble } );
         EXPECT_EQ( qual( QualId::DstIpClassMsbNibble ), QualPair( 5, 0xF ) );
         EXPECT_EQ( bound, std::optional<U64>( U64( 5 ) << 32 ) );
         EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "DstIpClassMsbNibble 5 0xF" ) } );
         EXPECT_EQ( levelOneTrace( "setDstIPv4" ),
                    std::vector<std::string>{ "setDstIPv4 Setting DstIpClassMsbNibble: 5" } );
         break;
      case DstForm::classField:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstClassField } );
         EXPECT_EQ( qual( QualId::DstClassField ), QualPair( 5, 0xF ) );
         EXPECT_FALSE( bound.has_value() );
         EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "DstClassField 5 0xF" ) } );
         EXPECT_EQ( levelOneTrace( "setDstIPv4" ),
                    std::vector<std::string>{ "setDstIPv4 Setting DstClassField: 5" } );
         break;
      case DstForm::plain:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstIp } );
         EXPECT_EQ( qual( QualId::DstIp ), QualPair( net, 0xFFFF0000 ) );
         EXPECT_FALSE( bound.has_value() );
         EXPECT_EQ( fpCmd_.lines(),
                    std::vector{ fpQual( "DstIp " + std::to_string( net ) + " 0xFFFF0000" ) } );
         EXPECT_EQ( levelOneTrace( "setDstIPv4" ),
                    std::vector<std::string>{ "setDstIPv4 Setting DstIp: 10.1.0.0" } );
         break;
   }
   Halyard::verifyDstIPv4( unit, constGroupMgr(), entry_, net, 5 );
   armDrop();
   // The class field is forwarding's class of the destination, which this
   // setter leaves to the caller to have set up.
   const U32 fwdClass = form() == DstForm::classField ? 5 : 0;
   EXPECT_TRUE( dropped( to( Sim::ip4( "10.1.2.3" ), fwdClass, otherMac ) ) );
   EXPECT_FALSE( dropped( to( Sim::ip4( "10.2.0.1" ), 0, otherMac ) ) );
}

TEST_P( DstSettersTest, DstIPv4ClassOrDstMacFallsBackToTheCallersMac ) {
   const Pylon::IpAddrWithFullMask prefix( Pylon::IpAddr( 10, 1, 0, 0 ), 0xFFFF0000 );
   Halyard::setDstIPv4ClassOrDstMac( unit, groupMgr(), entry_, prefix, 6, 0xF, mac_, macMask_ );
   const auto bound =
       unit_.chip().classTables().dstIp4Class( prefix.address().value(), prefix.mask() );
   switch ( form() ) {
      case DstForm::nibble:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstIpClassMsbNibble } );
         EXPECT_EQ( qual( QualId::DstIpClassMsbNibble ), QualPair( 6, 0xF ) );
         EXPECT_EQ( bound, std::optional<U64>( U64( 6 ) << 32 ) );
         break;
      case DstForm::classField:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstClassField } );
         EXPECT_EQ( qual( QualId::DstClassField ), QualPair( 6, 0xF ) );
         EXPECT_FALSE( bound.has_value() );
         break;
      case DstForm::plain:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstMac } );
         EXPECT_EQ( qual( QualId::DstMac ), QualPair( 0x001c73000042, 0xffffffffffff ) );
         EXPECT_FALSE( bound.has_value() );
         EXPECT_EQ( fpCmd_.lines(),
                    std::vector{ fpQual( "DstMac 0x001c73000042 0xffffffffffff" ) } );
         EXPECT_EQ( levelOneTrace( "setDstIPv4ClassOrDstMac" ),
                    std::vector<std::string>{
                        "setDstIPv4ClassOrDstMac Setting DstMac: 00:1c:73:00:00:42" } );
         break;
   }
   Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 6, 0xF,
                                        Pylon::EthAddr( 0x00, 0x1c, 0x73, 0x00, 0x00, 0x42 ),
                                        Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0xff ) );
   armDrop();
   const U32 fwdClass = form() == DstForm::classField ? 6 : 0;
   // Only the plain form looks at the MAC; the class forms at the address.
   const bool macForm = form() == DstForm::plain;
   EXPECT_TRUE( dropped( to( Sim::ip4( macForm ? "10.7.0.1" : "10.1.0.1" ), fwdClass, simMac ) ) );
   EXPECT_FALSE( dropped( to( Sim::ip4( macForm ? "10.1.0.1" : "10.7.0.1" ), 0, otherMac ) ) );
}

TEST_P( DstSettersTest, DstIPv6ClassOrDstMacUsesTheIpv6NibbleTable ) {
   const Pylon::Ip6AddrWithFullMask prefix( Pylon::Ip6AddrWithMask(
       Pylon::Ip6Addr( Sim::ip6( "2001:db8::" ) ), Pylon::Ip6PrefixLen( 32 ) ) );
   Halyard::setDstIPv6ClassOrDstMac( unit, groupMgr(), entry_, prefix, 7, 0xF, mac_, macMask_ );
   const auto bound =
       unit_.chip().classTables().dstIp6Class( prefix.address().bytes(), prefix.mask().bytes() );
   switch ( form() ) {
      case DstForm::nibble:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstIp6ClassMsbNibble } );
         EXPECT_EQ( qual( QualId::DstIp6ClassMsbNibble ), QualPair( 7, 0xF ) );
         EXPECT_EQ( bound, std::optional<U64>( U64( 7 ) << 32 ) );
         EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "DstIp6ClassMsbNibble 7 0xF" ) } );
         EXPECT_EQ( levelOneTrace( "setDstIPv6ClassOrDstMac" ),
                    std::vector<std::string>{
                        "setDstIPv6ClassOrDstMac Setting DstIpClass6MsbNibble: 7" } );
         EXPECT_EQ(
             checkedCalls( helperTrace_.lines() ),
             std::vector<std::string>{ "bcm_field_qualify_DstIp6ClassMsbNibble( unit, entry, "
                                       "ip6Class, ip6ClassMask )" } );
         break;
      case DstForm::classField:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstClassField } );
         EXPECT_EQ( qual( QualId::DstClassField ), QualPair( 7, 0xF ) );
         EXPECT_FALSE( bound.has_value() );
         EXPECT_EQ( fpCmd_.lines(), std::vector{ fpQual( "DstClassField 7 0xF" ) } );
         EXPECT_EQ(
             levelOneTrace( "setDstIPv6ClassOrDstMac" ),
             std::vector<std::string>{ "setDstIPv6ClassOrDstMac Setting DstClassField: 7" } );
         // Regression: the check line named the IPv4 arguments (ipClass, ipClassMask).
         EXPECT_EQ(
             checkedCalls( helperTrace_.lines() ),
             std::vector<std::string>{
                 "bcm_field_qualify_DstClassField( unit, entry, ip6Class, ip6ClassMask )" } );
         break;
      case DstForm::plain:
         EXPECT_EQ( dstQualifiers(), std::vector{ QualId::DstMac } );
         EXPECT_FALSE( bound.has_value() );
         EXPECT_EQ(
             checkedCalls( helperTrace_.lines() ),
             std::vector<std::string>{ "bcm_field_qualify_DstMac( unit, entry, mac, macMask )" } );
         break;
   }
   Halyard::verifyDstIPv6ClassOrDstMac( unit, constGroupMgr(), entry_, 7, 0xF,
                                        Pylon::EthAddr( 0x00, 0x1c, 0x73, 0x00, 0x00, 0x42 ),
                                        Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0xff ) );
   if ( form() == DstForm::nibble ) {
      armDrop();
      auto to6 = []( const char* dst ) {
         return Packet::udp6( Sim::ip6( "2001:db8:ffff::1" ), Sim::ip6( dst ), 1, 2 );
      };
      EXPECT_TRUE( dropped( to6( "2001:db8:1::1" ) ) );
      EXPECT_FALSE( dropped( to6( "2001:db9::1" ) ) );
   }
}

std::string kindName( const ::testing::TestParamInfo<std::string>& info ) {
   return info.param;
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, FieldSettersTest, ::testing::ValuesIn( chipKindNames() ),
                          kindName );
INSTANTIATE_TEST_SUITE_P( ChipKinds, DstSettersTest, ::testing::ValuesIn( chipKindNames() ),
                          kindName );

}  // namespace
}  // namespace AclSettersTest
