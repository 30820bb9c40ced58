// The fatal paths of the setters and their checks, with the exact text they
// stop on: a refused class binding, a class asked of a chip that has none, a
// verify check that finds another value, and a read of a field the entry
// does not carry. The checks read the same form as their setter, so each
// kind reaches the assertion of its own form.
#include <gtest/gtest.h>

#include <string>

#include "acl/HalyardAclHelper.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/acl/setters/SetterUnit.h"

namespace AclSettersTest {
namespace {

using HalyardCentral::ChipAttribute;

class SetterDeathTest : public ::testing::TestWithParam<std::string> {
 protected:
   SetterDeathTest() : unit_( GetParam() ) { entry_ = unit_.newEntry( Halyard::tcamGroupIpAcl ); }

   bool has( ChipAttribute a ) const { return unit_.attribute( a ); }
   bool nibble() const { return has( ChipAttribute::supportsIfpDstIpClassMsbNibble ); }
   bool classField() const { return has( ChipAttribute::supportsIfpDstClassField ); }
   Halyard::HalyardTcamGroupManager::Ptr groupMgr() const { return unit_.groupMgr(); }
   Halyard::HalyardTcamGroupManager::PtrConst constGroupMgr() const { return unit_.groupMgr(); }

   static constexpr U32 unit = SetterUnit::unit;
   Vesper::ActivityLockGuard activity_;
   SetterUnit unit_;
   U32 entry_ = 0;
   U8 mac_[6] = { 0x00, 0x1c, 0x73, 0x00, 0x00, 0x42 };
   U8 macMask_[6] = { 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
   const Pylon::EthAddr mac{ 0x00, 0x1c, 0x73, 0x00, 0x00, 0x42 };
   const Pylon::EthAddr macMask{ 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
};

// ---- Class bindings that the group manager refuses: the value is bound to another class.

TEST_P( SetterDeathTest, IpProtocolBoundToAnotherClassStops ) {
   if ( !has( ChipAttribute::supportsIfpIpProtocolCompression ) ) {
      GTEST_SKIP() << "no protocol classes";
   }
   Halyard::setIpProtocol( unit, groupMgr(), entry_, 6, 0xFF, 7, 0xFF );
   const U32 second = unit_.newEntry( Halyard::tcamGroupIpAcl );
   EXPECT_DEATH(
       Halyard::setIpProtocol( unit, groupMgr(), second, 6, 0xFF, 8, 0xFF ),
       assertionFailure( "groupMgr->allocateIpProtocolClassId( unit, ipProto, protoClass )" ) );
}

TEST_P( SetterDeathTest, EtherTypeBoundToAnotherClassStops ) {
   if ( !has( ChipAttribute::supportsIfpIpProtocolCompression ) ) {
      GTEST_SKIP() << "no Ethernet type classes";
   }
   Halyard::setEtherType( unit, groupMgr(), entry_, true, 0x0800, 0xFFFF, 1, 0xF );
   EXPECT_DEATH( Halyard::setEtherType( unit, groupMgr(), entry_, true, 0x0800, 0xFFFF, 2, 0xF ),
                 assertionFailure(
                     "groupMgr->allocateEtherTypeClassId( unit, etherType, etherTypeClass )" ) );
}

TEST_P( SetterDeathTest, L4PortsBoundToAnotherClassStop ) {
   if ( !has( ChipAttribute::supportsIfpL4PortCompression ) ) {
      GTEST_SKIP() << "no layer 4 port classes";
   }
   Halyard::setL4DstPort( unit, groupMgr(), entry_, 80, 0xFFFF, 1, 0xF );
   Halyard::setL4SrcPort( unit, groupMgr(), entry_, 80, 0xFFFF, 1, 0xF );
   EXPECT_DEATH(
       Halyard::setL4DstPort( unit, groupMgr(), entry_, 80, 0xFFFF, 2, 0xF ),
       assertionFailure( "groupMgr->allocateL4DstPortClassId( unit, port, portClass )" ) );
   EXPECT_DEATH(
       Halyard::setL4SrcPort( unit, groupMgr(), entry_, 80, 0xFFFF, 2, 0xF ),
       assertionFailure( "groupMgr->allocateL4SrcPortClassId( unit, port, portClass )" ) );
}

TEST_P( SetterDeathTest, DstPrefixesBoundToAnotherClassStop ) {
   if ( !nibble() ) {
      GTEST_SKIP() << "no destination prefix table";
   }
   const Pylon::IpAddrWithFullMask prefix( Pylon::IpAddr( 10, 1, 0, 0 ), 0xFFFF0000 );
   Halyard::setDstIPv4( unit, groupMgr(), entry_, prefix.address().value(), prefix.mask(), 1, 0xF );
   EXPECT_DEATH(
       Halyard::setDstIPv4( unit, groupMgr(), entry_, prefix.address().value(), prefix.mask(), 2,
                            0xF ),
       assertionFailure( "groupMgr->allocateDstIpClassId( unit, addrMask, shiftedClassId )" ) );
   EXPECT_DEATH(
       Halyard::setDstIPv4ClassOrDstMac( unit, groupMgr(), entry_, prefix, 2, 0xF, mac_, macMask_ ),
       assertionFailure( "groupMgr->allocateDstIpClassId( unit, ipddrMask, shiftedClassId )" ) );

   const Pylon::Ip6AddrWithFullMask prefix6(
       Pylon::Ip6AddrWithMask( Pylon::Ip6Addr( Pylon::Ip6Addr::Bytes{ 0x20, 0x01, 0x0d, 0xb8 } ),
                               Pylon::Ip6PrefixLen( 32 ) ) );
   Halyard::setDstIPv6ClassOrDstMac( unit, groupMgr(), entry_, prefix6, 1, 0xF, mac_, macMask_ );
   EXPECT_DEATH(
       Halyard::setDstIPv6ClassOrDstMac( unit, groupMgr(), entry_, prefix6, 2, 0xF, mac_,
                                         macMask_ ),
       assertionFailure( "groupMgr->allocateDstIp6ClassId( unit, ip6ddrMask, shiftedClassId )" ) );
}

TEST_P( SetterDeathTest, EtherTypeClassOnAChipWithoutClassesStops ) {
   if ( has( ChipAttribute::supportsIfpIpProtocolCompression ) ) {
      GTEST_SKIP() << "the chip has Ethernet type classes";
   }
   EXPECT_DEATH(
       Halyard::setEtherType( unit, groupMgr(), entry_, true, 0x0800, 0xFFFF, 1, 0xF ),
       assertionFailure(
           "chipAttr->supportsIfpIpProtocolCompression() && \"Compression not supported\"" ) );
}

// ---- Checks that find another value.

TEST_P( SetterDeathTest, VerifyIpProtocolStopsOnAnotherValue ) {
   const bool compress = has( ChipAttribute::supportsIfpIpProtocolCompression );
   Halyard::setIpProtocol( unit, groupMgr(), entry_, 6, 0xFF, 7, 0xFF );
   // A wrong value of the form the chip does not use goes unnoticed.
   Halyard::verifyIpProtocol( unit, constGroupMgr(), entry_, compress ? 17 : 6, compress ? 7 : 9 );
   EXPECT_DEATH( Halyard::verifyIpProtocol( unit, constGroupMgr(), entry_, 17, 9 ),
                 assertionFailure( compress ? "data == protoClass" : "data == ipProto" ) );
}

TEST_P( SetterDeathTest, VerifyL4PortsStopOnAnotherValue ) {
   const bool compress = has( ChipAttribute::supportsIfpL4PortCompression );
   Halyard::setL4DstPort( unit, groupMgr(), entry_, 443, 0xFFFF, 3, 0xF );
   Halyard::setL4SrcPort( unit, groupMgr(), entry_, 53, 0xFFFF, 4, 0xF );
   const char* expr = compress ? "data == portClass" : "data == port";
   EXPECT_DEATH( Halyard::verifyL4DstPort( unit, constGroupMgr(), entry_, 444, 5 ),
                 assertionFailure( expr ) );
   EXPECT_DEATH( Halyard::verifyL4SrcPort( unit, constGroupMgr(), entry_, 54, 5 ),
                 assertionFailure( expr ) );
}

TEST_P( SetterDeathTest, VerifyDstIPv4StopsOnAnotherValue ) {
   Halyard::setDstIPv4( unit, groupMgr(), entry_, 0x0A010000, 0xFFFF0000, 5, 0xF );
   EXPECT_DEATH( Halyard::verifyDstIPv4( unit, constGroupMgr(), entry_, 0x0A020000, 6 ),
                 assertionFailure( nibble() || classField() ? "data == ipClass" : "data == ip" ) );
}

// The nibble form compares the class mask too, the class-field form only the
// class; the MAC form compares address, then mask.
TEST_P( SetterDeathTest, VerifyDstClassOrMacComparesTheMaskOnlyInTheNibbleForm ) {
   const Pylon::IpAddrWithFullMask prefix( Pylon::IpAddr( 10, 1, 0, 0 ), 0xFFFF0000 );
   Halyard::setDstIPv4ClassOrDstMac( unit, groupMgr(), entry_, prefix, 6, 0xF, mac_, macMask_ );
   const Pylon::EthAddr otherMask( 0xff, 0xff, 0xff, 0, 0, 0 );
   if ( nibble() ) {
      EXPECT_DEATH( Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 6, 0x7, mac,
                                                         macMask ),
                    assertionFailure( "mask == ipClassMask" ) );
   } else if ( classField() ) {
      Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 6, 0x7, mac, otherMask );
      EXPECT_DEATH( Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 7, 0xF, mac,
                                                         macMask ),
                    assertionFailure( "data == ipClass" ) );
   } else {
      Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 1, 0x1, mac, macMask );
      EXPECT_DEATH( Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 6, 0xF,
                                                         Pylon::EthAddr(), macMask ),
                    assertionFailure( "pylonAddr == mac" ) );
      EXPECT_DEATH( Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 6, 0xF, mac,
                                                         otherMask ),
                    assertionFailure( "pylonMask == macMask" ) );
   }
}

TEST_P( SetterDeathTest, VerifyDstIPv6ClassOrMacStopsOnAnotherValue ) {
   const Pylon::Ip6AddrWithFullMask prefix(
       Pylon::Ip6AddrWithMask( Pylon::Ip6Addr( Pylon::Ip6Addr::Bytes{ 0x20, 0x01, 0x0d, 0xb8 } ),
                               Pylon::Ip6PrefixLen( 32 ) ) );
   Halyard::setDstIPv6ClassOrDstMac( unit, groupMgr(), entry_, prefix, 7, 0xF, mac_, macMask_ );
   if ( nibble() ) {
      EXPECT_DEATH( Halyard::verifyDstIPv6ClassOrDstMac( unit, constGroupMgr(), entry_, 8, 0xF, mac,
                                                         macMask ),
                    assertionFailure( "data == ip6Class" ) );
      EXPECT_DEATH( Halyard::verifyDstIPv6ClassOrDstMac( unit, constGroupMgr(), entry_, 7, 0x3, mac,
                                                         macMask ),
                    assertionFailure( "mask == ip6ClassMask" ) );
   } else if ( classField() ) {
      Halyard::verifyDstIPv6ClassOrDstMac( unit, constGroupMgr(), entry_, 7, 0x3, mac, macMask );
      EXPECT_DEATH( Halyard::verifyDstIPv6ClassOrDstMac( unit, constGroupMgr(), entry_, 8, 0xF, mac,
                                                         macMask ),
                    assertionFailure( "data == ip6Class" ) );
   } else {
      EXPECT_DEATH( Halyard::verifyDstIPv6ClassOrDstMac( unit, constGroupMgr(), entry_, 7, 0xF,
                                                         Pylon::EthAddr(), macMask ),
                    assertionFailure( "pylonAddr == mac" ) );
   }
}

// ---- Checks of a field the entry does not carry: the read itself is checked.

TEST_P( SetterDeathTest, VerifyOfAnAbsentFieldStopsOnTheRead ) {
   const bool compress = has( ChipAttribute::supportsIfpIpProtocolCompression );
   EXPECT_DEATH( Halyard::verifyIpProtocol( unit, constGroupMgr(), entry_, 6, 7 ),
                 sdkCheckFailure(
                     compress ? "bcm_field_qualify_IpProtocolClass_get( unit, entry, &data, &mask )"
                              : "bcm_field_qualify_IpProtocol_get( unit, entry, &data, &mask )" ) );
   if ( !nibble() && !classField() ) {
      EXPECT_DEATH(
          Halyard::verifyDstIPv4ClassOrDstMac( unit, constGroupMgr(), entry_, 1, 1, mac, macMask ),
          sdkCheckFailure( "bcm_field_qualify_DstMac_get( unit, entry, &destAddr, &destMask )" ) );
   }
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, SetterDeathTest, ::testing::ValuesIn( chipKindNames() ),
                          []( const ::testing::TestParamInfo<std::string>& info ) {
                             return info.param;
                          } );

}  // namespace
}  // namespace AclSettersTest
