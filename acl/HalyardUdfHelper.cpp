#include "acl/HalyardUdfHelper.h"

#include <cstdio>
#include <string>

#include "platform/acl/AclTypes.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::UdfHelper" )

namespace Halyard {

namespace {

// Whether the chip takes the UDF form of the calls rather than the data-qualifier form.
bool udfAltForm( const HalyardCentral::ChipInfo& chipInfo ) {
   const Vesper::Ptr<const HalyardCentral::ChipAttributes> chip =
       HalyardCentral::chipAttributes( chipInfo );
   VESPER_ASSERT( chip );
   return chip->udfAltFormA() || chip->udfAltFormB();
}

}  // namespace

UdfOffsetBase getUdfBase( const Acl::PayloadSpec& payload, int aclType ) {
   const bool fromHeader = payload.start() == Acl::PayloadStart::headerStart;
   switch ( aclType ) {
      case static_cast<int>( Acl::AclType::ip ):
      case static_cast<int>( Acl::AclType::ipv6 ):
         return fromHeader ? udfOffsetBaseL3Header : udfOffsetBaseL3Payload;
      case static_cast<int>( Acl::AclType::mac ):
         return fromHeader ? udfOffsetBaseL2Header : udfOffsetBaseL2Payload;
      default:
         break;
   }
   VTRACE( 0, "UDF base didn't match acceptable headers for Acl Type " << aclType );
   VESPER_ASSERT( 0 );
   return udfOffsetBaseNone;
}

int setUdfDataAndMask( int unit, int entry, int qualId, uint8_t* data, uint8_t* mask, U16 length,
                       const HalyardCentral::ChipInfo& chipInfo ) {
   if ( udfAltForm( chipInfo ) ) {
      return bcm_field_qualify_udf( unit, entry, qualId, length, data, mask );
   }
   return bcm_field_qualify_data( unit, entry, qualId, data, mask, length );
}

int getUdfDataAndMask( int unit, int entry, int qualId, U16 length, uint8_t* data, uint8_t* mask,
                       U16* actualLength, const HalyardCentral::ChipInfo& chipInfo ) {
   if ( udfAltForm( chipInfo ) ) {
      return bcm_field_qualify_udf_get( unit, entry, qualId, length, data, mask, actualLength );
   }
   return bcm_field_qualify_data_get( unit, entry, qualId, length, data, mask, actualLength );
}

void payloadTraceHelper( const U8* bytes, U8 length, std::string_view name ) {
   if ( !vesperFileTrace().enabled( 3 ) ) {
      return;
   }
   std::string line( name );
   line += " programmed: 0x";
   for ( U8 i = 0; i < length; ++i ) {
      char digits[4];
      std::snprintf( digits, sizeof digits, "%02x", static_cast<unsigned>( bytes[i] ) );
      line += digits;
   }
   vesperFileTrace().write( 3, line );
}

}  // namespace Halyard
