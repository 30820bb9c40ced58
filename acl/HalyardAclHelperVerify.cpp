// The read-back checks of the field setters. Each repeats its setter's choice
// of form, reads that qualifier back and asserts that the entry holds what
// was asked for. Unlike the verification findings of the ACL state machine,
// a mismatch here is a broken invariant and stops the process. The class
// field forms compare the class alone, the nibble forms also its mask.
#include "acl/HalyardAclHelper.h"

#include <cstring>

#include "platform/shim/SdkCall.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Assert.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclHelper" )

namespace Halyard {

namespace {

// The destination MAC of the entry, compared byte by byte with what the
// caller gave in place of a class.
void verifyDstMac( U32 unit, U32 entry, const Pylon::EthAddr& mac, const Pylon::EthAddr& macMask ) {
   bcm_mac_t destAddr;
   bcm_mac_t destMask;
   std::memset( destAddr, 0, sizeof destAddr );
   std::memset( destMask, 0, sizeof destMask );
   SDK_CHECK( bcm_field_qualify_DstMac_get( unit, entry, &destAddr, &destMask ) );
   Pylon::EthAddr pylonAddr;
   Pylon::EthAddr pylonMask;
   for ( std::size_t i = 0; i < Pylon::EthAddr::size; ++i ) {
      pylonAddr.byteIs( i, destAddr[i] );
      pylonMask.byteIs( i, destMask[i] );
   }
   VESPER_ASSERT( pylonAddr == mac );
   VESPER_ASSERT( pylonMask == macMask );
}

void verifyDstClassField( U32 unit, U32 entry, U16 ipClass ) {
   U32 data = 0;
   U32 mask = 0;
   SDK_CHECK( bcm_field_qualify_DstClassField_get( unit, entry, &data, &mask ) );
   VESPER_ASSERT( data == ipClass );
}

void verifyDstIpClassMsbNibble( U32 unit, U32 entry, U16 ipClass, U16 ipClassMask ) {
   U32 data = 0;
   U32 mask = 0;
   SDK_CHECK( bcm_field_qualify_DstIpClassMsbNibble_get( unit, entry, &data, &mask ) );
   VESPER_ASSERT( data == ipClass );
   VESPER_ASSERT( mask == ipClassMask );
}

}  // namespace

void verifyIpProtocol( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U16 ipProto,
                       U16 protoClass ) {
   if ( chipAttributesForUnit( *groupMgr, unit )->supportsIfpIpProtocolCompression() ) {
      U32 data = 0;
      U32 mask = 0;
      SDK_CHECK( bcm_field_qualify_IpProtocolClass_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == protoClass );
      return;
   }
   U8 data = 0;
   U8 mask = 0;
   SDK_CHECK( bcm_field_qualify_IpProtocol_get( unit, entry, &data, &mask ) );
   VESPER_ASSERT( data == ipProto );
}

void verifyL4DstPort( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U16 port,
                      U16 portClass ) {
   if ( chipAttributesForUnit( *groupMgr, unit )->supportsIfpL4PortCompression() ) {
      U32 data = 0;
      U32 mask = 0;
      SDK_CHECK( bcm_field_qualify_L4DstPortClass_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == portClass );
      return;
   }
   U16 data = 0;
   U16 mask = 0;
   SDK_CHECK( bcm_field_qualify_L4DstPort_get( unit, entry, &data, &mask ) );
   VESPER_ASSERT( data == port );
}

void verifyL4SrcPort( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U16 port,
                      U16 portClass ) {
   if ( chipAttributesForUnit( *groupMgr, unit )->supportsIfpL4PortCompression() ) {
      U32 data = 0;
      U32 mask = 0;
      SDK_CHECK( bcm_field_qualify_L4SrcPortClass_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == portClass );
      return;
   }
   U16 data = 0;
   U16 mask = 0;
   SDK_CHECK( bcm_field_qualify_L4SrcPort_get( unit, entry, &data, &mask ) );
   VESPER_ASSERT( data == port );
}

void verifyDstIPv4( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry, U32 ip,
                    U16 ipClass ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForUnit( *groupMgr, unit );
   if ( chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      U32 data = 0;
      U32 mask = 0;
      SDK_CHECK( bcm_field_qualify_DstIpClassMsbNibble_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == ipClass );
   } else if ( chipAttr->supportsIfpDstClassField() ) {
      verifyDstClassField( unit, entry, ipClass );
   } else {
      bcm_ip_t data = 0;
      bcm_ip_t mask = 0;
      SDK_CHECK( bcm_field_qualify_DstIp_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == ip );
   }
}

void verifyDstIPv4ClassOrDstMac( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry,
                                 U16 ipClass, U16 ipClassMask, Pylon::EthAddr mac,
                                 Pylon::EthAddr macMask ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForUnit( *groupMgr, unit );
   if ( chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      verifyDstIpClassMsbNibble( unit, entry, ipClass, ipClassMask );
   } else if ( chipAttr->supportsIfpDstClassField() ) {
      verifyDstClassField( unit, entry, ipClass );
   } else {
      verifyDstMac( unit, entry, mac, macMask );
   }
}

void verifyDstIPv6ClassOrDstMac( U32 unit, HalyardTcamGroupManager::PtrConst groupMgr, U32 entry,
                                 U16 ip6Class, U16 ip6ClassMask, Pylon::EthAddr mac,
                                 Pylon::EthAddr macMask ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForUnit( *groupMgr, unit );
   if ( chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      U32 data = 0;
      U32 mask = 0;
      SDK_CHECK( bcm_field_qualify_DstIp6ClassMsbNibble_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == ip6Class );
      VESPER_ASSERT( mask == ip6ClassMask );
   } else if ( chipAttr->supportsIfpDstClassField() ) {
      U32 data = 0;
      U32 mask = 0;
      SDK_CHECK( bcm_field_qualify_DstClassField_get( unit, entry, &data, &mask ) );
      VESPER_ASSERT( data == ip6Class );
   } else {
      verifyDstMac( unit, entry, mac, macMask );
   }
}

}  // namespace Halyard
