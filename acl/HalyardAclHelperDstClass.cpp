// The destination address setters, and the translation of IP class ids.
//
// A chip matches a destination class in one of two ways, tested in this
// order: by the most significant nibble of the wide class value that its
// prefix table keeps (the class id fills the high half of that value, so the
// table gets it shifted and the entry unshifted), or by the destination class
// field, for which nothing is allocated here. A chip with neither matches
// the address itself, or, in the ...OrDstMac forms, the caller's MAC.
#include "acl/HalyardAclHelper.h"

#include "acl/HalyardAclHelperFpText.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclHelper" )

namespace Halyard {

namespace {

// Where the class id stands in the wide class value of the prefix tables.
constexpr unsigned classIdShift = 32;

// The IPv4 setters' class-field form. The IPv6 setter writes its own: a check line carries the
// call's text, and that text names the IPv6 arguments there.
void writeDstClassField( U32 unit, U32 entry, U16 ipClass, U16 ipClassMask, const char* function ) {
   VTRACE( 1, function << " Setting DstClassField: " << ipClass );
   SDK_CHECK( bcm_field_qualify_DstClassField( unit, entry, ipClass, ipClassMask ) );
   Shim::fpQual( entry, " DstClassField ", ipClass, FpMask{ ipClassMask } );
}

void writeDstIpClassMsbNibble( U32 unit, U32 entry, U16 ipClass, U16 ipClassMask ) {
   SDK_CHECK( bcm_field_qualify_DstIpClassMsbNibble( unit, entry, ipClass, ipClassMask ) );
   Shim::fpQual( entry, " DstIpClassMsbNibble ", ipClass, FpMask{ ipClassMask } );
}

void writeDstMac( U32 unit, U32 entry, uint8_t ( &mac )[6], uint8_t ( &macMask )[6],
                  const char* function ) {
   VTRACE( 1, function << " Setting DstMac: "
                       << Pylon::EthAddr( mac[0], mac[1], mac[2], mac[3], mac[4], mac[5] ) );
   SDK_CHECK( bcm_field_qualify_DstMac( unit, entry, mac, macMask ) );
   Shim::fpQual( entry, " DstMac 0x", Shim::FpHexBytes{ mac, 6 }, " 0x",
                 Shim::FpHexBytes{ macMask, 6 } );
}

}  // namespace

void setDstIPv4( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U32 ip, U32 mask,
                 U16 ipClass, U16 ipClassMask ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForUnit( *groupMgr, unit );
   if ( chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      // Pylon::IpAddr keeps the address as a host-order number, which `ip` is.
      const Pylon::IpAddrWithFullMask addrMask( Pylon::IpAddr( ip ), mask );
      const U64 shiftedClassId = U64( ipClass ) << classIdShift;
      VTRACE( 1, __func__ << " Setting DstIpClassMsbNibble: " << ipClass );
      VESPER_ASSERT( groupMgr->allocateDstIpClassId( unit, addrMask, shiftedClassId ) );
      writeDstIpClassMsbNibble( unit, entry, ipClass, ipClassMask );
   } else if ( chipAttr->supportsIfpDstClassField() ) {
      writeDstClassField( unit, entry, ipClass, ipClassMask, __func__ );
   } else {
      VTRACE( 1, __func__ << " Setting DstIp: " << Pylon::IpAddr( ip ) );
      SDK_CHECK( bcm_field_qualify_DstIp( unit, entry, ip, mask ) );
      Shim::fpQual( entry, " DstIp ", ip, FpMask{ mask } );
   }
}

void setDstIPv4ClassOrDstMac( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry,
                              Pylon::IpAddrWithFullMask ipddrMask, U16 ipClass, U16 ipClassMask,
                              uint8_t ( &mac )[6], uint8_t ( &macMask )[6] ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForUnit( *groupMgr, unit );
   if ( chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      const U64 shiftedClassId = U64( ipClass ) << classIdShift;
      VTRACE( 1, __func__ << " Setting DstIpClassMsbNibble: " << ipClass );
      VESPER_ASSERT( groupMgr->allocateDstIpClassId( unit, ipddrMask, shiftedClassId ) );
      writeDstIpClassMsbNibble( unit, entry, ipClass, ipClassMask );
   } else if ( chipAttr->supportsIfpDstClassField() ) {
      writeDstClassField( unit, entry, ipClass, ipClassMask, __func__ );
   } else {
      writeDstMac( unit, entry, mac, macMask, __func__ );
   }
}

void setDstIPv6ClassOrDstMac( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry,
                              Pylon::Ip6AddrWithFullMask ip6ddrMask, U16 ip6Class, U16 ip6ClassMask,
                              uint8_t ( &mac )[6], uint8_t ( &macMask )[6] ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForUnit( *groupMgr, unit );
   if ( chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      const U64 shiftedClassId = U64( ip6Class ) << classIdShift;
      VTRACE( 1, __func__ << " Setting DstIpClass6MsbNibble: " << ip6Class );
      VESPER_ASSERT( groupMgr->allocateDstIp6ClassId( unit, ip6ddrMask, shiftedClassId ) );
      SDK_CHECK( bcm_field_qualify_DstIp6ClassMsbNibble( unit, entry, ip6Class, ip6ClassMask ) );
      Shim::fpQual( entry, " DstIp6ClassMsbNibble ", ip6Class, FpMask{ ip6ClassMask } );
   } else if ( chipAttr->supportsIfpDstClassField() ) {
      VTRACE( 1, __func__ << " Setting DstClassField: " << ip6Class );
      SDK_CHECK( bcm_field_qualify_DstClassField( unit, entry, ip6Class, ip6ClassMask ) );
      Shim::fpQual( entry, " DstClassField ", ip6Class, FpMask{ ip6ClassMask } );
   } else {
      writeDstMac( unit, entry, mac, macMask, __func__ );
   }
}

void getTranslatedIpClassId( HalyardCommonSmData::PtrConst hcsd, U16 classId, U16 classMask,
                             U16* outClass, U16* outMask ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       chipAttributesForFirstModule( *hcsd );
   *outMask = classMask;
   if ( chipAttr->supportsIfpDstClassField() && chipAttr->supportsIfpDstIpClassMsbNibble() ) {
      *outClass = classId;
      return;
   }
   // Every other chip takes the ids rotated by one; 0 is no class there, and
   // 5 wraps round to 1.
   switch ( classId ) {
      case 1:
      case 2:
      case 3:
      case 4:
         *outClass = static_cast<U16>( classId + 1 );
         return;
      case 5:
         *outClass = 1;
         return;
      default:
         VESPER_ASSERT( false && "Invalid ClassID requested" );
   }
}

}  // namespace Halyard
