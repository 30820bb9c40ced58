// Payload matching: a rule's PayloadSpec becomes user-defined field (UDF) qualifiers on one
// entry. Each 32-bit word of the payload is matched as its two 16-bit halves, high half first,
// one UDF per half whose mask is not 0; the entry manager finds or makes the UDF for the byte
// offset and names it by qualifier ids, and every id of the list gets the same data.
//
// The UDFs a rule holds are recorded in its udfDataForRule as they are obtained, so that an
// error half-way (a UDF that cannot be had: 12) leaves teardown all it must give back.
#include <sstream>
#include <string>

#include "acl/HalyardAclSm.h"
#include "acl/HalyardUdfHelper.h"
#include "platform/acl/PayloadSpec.h"
#include "platform/halyard/HalyardConstants.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

// Writes the line to the in-memory ring, and to the file's trace at level 2.
void ringTrace( const std::string& line ) {
   Vesper::Spindle::instance().write( line );
   VTRACE( 2, line );
}

// The payload and the protocol (IP protocol, or EtherType of a MAC rule) of the rule.
struct RulePayload {
   Acl::PayloadSpec payload;
   U32 proto = 0;
};

RulePayload rulePayloadOf( const Acl::RuleConfig& rule, Acl::AclType aclType ) {
   if ( aclType == Acl::AclType::ip ) {
      return { rule.ipFilter().payload(), rule.ipFilter().proto() };
   }
   if ( aclType == Acl::AclType::ipv6 ) {
      return { rule.ip6Filter().payload(), rule.ip6Filter().proto() };
   }
   VESPER_ASSERT( aclType == Acl::mac() );
   return { rule.macFilter().payload(), static_cast<U32>( rule.macFilter().proto() ) };
}

std::string hex16( U16 value ) {
   std::ostringstream text;
   text << std::hex << value;
   return text.str();
}

}  // namespace

Fennel::AclCreateError AclHelper::programUdfData(
    U32 unit, HalyardTcamEntryManager::Ptr entryManager, const AclDataPtr& aclData,
    const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule, U32 ruleNum, U32 entry ) {
   const HalyardCentral::ChipInfo chipInfo = hcsd()->halyardModId( unit ).chipInfo();
   const Acl::AclType aclType = aclData->aclType();
   const int type = static_cast<int>( aclType );
   {
      std::ostringstream line;
      line << "Unit: " << unit << " " << __func__ << " aclType: " << aclType
           << " ruleNum: " << ruleNum << " entry: " << entry;
      ringTrace( line.str() );
   }
   const RulePayload rulePayload = rulePayloadOf( rule, aclType );
   if ( rulePayload.payload == Acl::PayloadSpec() ) {
      return Fennel::aclCreateSuccess;
   }
   ringTrace( " Udf payload found" );
   const UdfOffsetBase base = getUdfBase( rulePayload.payload, type );
   Acl::PayloadValue values[Acl::PayloadSpec::maxValues] = {};
   const unsigned long count =
       Acl::payloadSpecToValue( values, Acl::PayloadSpec::maxValues, rulePayload.payload );
   const AclRuleData::Ptr ruleData = unitData->common()->aclRule( ruleNum );
   VESPER_ASSERT( ruleData );
   for ( unsigned long i = 0; i < count; ++i ) {
      U32 byteOffset = values[i].offset * 4;
      for ( const int shift : { 16, 0 } ) {
         const U16 pattern16 = static_cast<U16>( values[i].pattern >> shift );
         const U16 mask16 = static_cast<U16>( values[i].mask >> shift );
         if ( mask16 == 0 ) {
            byteOffset += 2;
            continue;
         }
         ringTrace( " Offset: " + std::to_string( byteOffset ) );
         const QualIdList qualIds = entryManager->getAclUdf(
             unit, type, rulePayload.proto, base, static_cast<U8>( byteOffset ), UDF_QUAL_LENGTH );
         if ( qualIds.empty() ) {
            ringTrace( " Could not get qualifier list:" );
            return Fennel::aclCreateUdfError;
         }
         // Most significant byte first, as the bytes stand in the packet.
         uint8_t data[UDF_QUAL_LENGTH] = { static_cast<uint8_t>( pattern16 >> 8 ),
                                           static_cast<uint8_t>( pattern16 ) };
         uint8_t dmask[UDF_QUAL_LENGTH] = { static_cast<uint8_t>( mask16 >> 8 ),
                                            static_cast<uint8_t>( mask16 ) };
         ringTrace( "Got payload offset=" + std::to_string( byteOffset ) + " pattern=0x" +
                    hex16( pattern16 ) + " mask=0x" + hex16( mask16 ) );
         payloadTraceHelper( data, UDF_QUAL_LENGTH, "Pattern" );
         payloadTraceHelper( dmask, UDF_QUAL_LENGTH, "Mask" );
         for ( const U32 qualId : qualIds ) {
            SDK_CHECK_SPINDLE(
                setUdfDataAndMask( unit, entry, qualId, data, dmask, UDF_QUAL_LENGTH, chipInfo ) );
         }
         ruleData->udfDataForRule().udfDataIs(
             qualIds, UdfData( base, static_cast<U16>( byteOffset ), pattern16, mask16,
                               rulePayload.proto ) );
         byteOffset += 2;
      }
   }
   return Fennel::aclCreateSuccess;
}

}  // namespace Halyard
