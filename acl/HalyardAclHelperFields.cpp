// The field setters of the compressible non-address fields: Ethernet type,
// IP protocol and the layer 4 ports. Each writes either the plain qualifier
// or, where the chip maps the field to a class in a table of its own, binds
// the value to the caller's class and matches the class. The class is bound
// before the qualifier is written, so that a refused binding leaves the entry
// as it was.
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

void setEtherType( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, bool useClass,
                   U16 etherType, U16 etherTypeMask, U16 etherTypeClass, U16 etherTypeClassMask ) {
   if ( useClass ) {
      // Ethernet types share the compression ability of IP protocols.
      Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
          chipAttributesForUnit( *groupMgr, unit );
      VESPER_ASSERT( chipAttr->supportsIfpIpProtocolCompression() && "Compression not supported" );
      VTRACE( 1, __func__ << " Setting EtherTypeClass: " << etherTypeClass );
      VESPER_ASSERT( groupMgr->allocateEtherTypeClassId( unit, etherType, etherTypeClass ) );
      SDK_CHECK(
          bcm_field_qualify_EtherTypeClass( unit, entry, etherTypeClass, etherTypeClassMask ) );
      Shim::fpQual( entry, " EtherTypeClass ", etherTypeClass, FpMask{ etherTypeClassMask } );
      return;
   }
   VTRACE( 1, __func__ << " Setting EtherType: " << etherType );
   SDK_CHECK( bcm_field_qualify_EtherType( unit, entry, etherType, etherTypeMask ) );
   Shim::fpQual( entry, " EtherType 0x", Shim::FpHex{ etherType, 4 }, " 0x",
                 Shim::FpHex{ etherTypeMask, 4 } );
}

void setIpProtocol( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U16 ipProto,
                    U16 ipProtoMask, U16 protoClass, U16 protoClassMask ) {
   if ( chipAttributesForUnit( *groupMgr, unit )->supportsIfpIpProtocolCompression() ) {
      VTRACE( 1, __func__ << " Setting IpProtocolClass: " << protoClass );
      VESPER_ASSERT( groupMgr->allocateIpProtocolClassId( unit, ipProto, protoClass ) );
      SDK_CHECK( bcm_field_qualify_IpProtocolClass( unit, entry, protoClass, protoClassMask ) );
      Shim::fpQual( entry, " IpProtocolClass ", protoClass, FpMask{ protoClassMask } );
      return;
   }
   // The plain qualifier is 8 bits wide: the SDK call narrows both values.
   const U32 proto = static_cast<U8>( ipProto );
   VTRACE( 1, __func__ << " Setting IpProtocol: " << proto );
   SDK_CHECK( bcm_field_qualify_IpProtocol( unit, entry, ipProto, ipProtoMask ) );
   Shim::fpQual( entry, " IpProtocol ", proto, FpMask{ static_cast<U8>( ipProtoMask ) } );
}

void setL4DstPort( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U16 port,
                   U16 portMask, U16 portClass, U16 portClassMask ) {
   if ( chipAttributesForUnit( *groupMgr, unit )->supportsIfpL4PortCompression() ) {
      VTRACE( 1, __func__ << " Setting L4DstPortClass: " << portClass );
      VESPER_ASSERT( groupMgr->allocateL4DstPortClassId( unit, port, portClass ) );
      SDK_CHECK( bcm_field_qualify_L4DstPortClass( unit, entry, portClass, portClassMask ) );
      Shim::fpQual( entry, " L4DstPortClass ", portClass, FpMask{ portClassMask } );
      return;
   }
   VTRACE( 1, __func__ << " Setting L4DstPort: " << port );
   SDK_CHECK( bcm_field_qualify_L4DstPort( unit, entry, port, portMask ) );
   Shim::fpQual( entry, " L4DstPort ", port, FpMask{ portMask } );
}

void setL4SrcPort( U32 unit, HalyardTcamGroupManager::Ptr groupMgr, U32 entry, U16 port,
                   U16 portMask, U16 portClass, U16 portClassMask ) {
   if ( chipAttributesForUnit( *groupMgr, unit )->supportsIfpL4PortCompression() ) {
      VTRACE( 1, __func__ << " Setting L4SrcPortClass: " << portClass );
      VESPER_ASSERT( groupMgr->allocateL4SrcPortClassId( unit, port, portClass ) );
      SDK_CHECK( bcm_field_qualify_L4SrcPortClass( unit, entry, portClass, portClassMask ) );
      Shim::fpQual( entry, " L4SrcPortClass ", portClass, FpMask{ portClassMask } );
      return;
   }
   VTRACE( 1, __func__ << " Setting L4SrcPort: " << port );
   SDK_CHECK( bcm_field_qualify_L4SrcPort( unit, entry, port, portMask ) );
   Shim::fpQual( entry, " L4SrcPort ", port, FpMask{ portMask } );
}

}  // namespace Halyard
