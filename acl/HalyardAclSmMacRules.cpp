// MAC rules: one call of the generic layer fans out to every unit of the ACL; on each, the rule
// record is made, entries are had from commonCreateEntry, and the three MAC match fields
// (EtherType, source and destination address) are written on every entry of the rule.
#include <cstdint>

#include "acl/HalyardAclSm.h"
#include "platform/acl/MacFilter.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

namespace {

void macBytesCopied( const Pylon::EthAddr& from, uint8_t ( &to )[6] ) {
   for ( std::size_t i = 0; i < Pylon::EthAddr::size; ++i ) {
      to[i] = from.byte( i );
   }
}

// There is no partial EtherType mask: a rule names one EtherType or none.
void etherTypeProgrammed( U32 unit, U32 entry, const Acl::MacFilter& filter ) {
   if ( filter.proto() == Acl::MacFilter::protoAny ) {
      return;
   }
   VTRACE( 1, "\tEtherType: " << filter.proto() );
   SDK_CHECK_SPINDLE( bcm_field_qualify_EtherType( unit, entry, filter.proto(), 0xFFFF ) );
   Shim::fpQual( entry, " EtherType 0x", Shim::FpHex{ U16( filter.proto() ), 4 }, " 0x",
                 Shim::FpHex{ 0xFFFF, 4 } );
}

// A mask of all zero matches every address: nothing is written.
void srcMacProgrammed( U32 unit, U32 entry, const Acl::MacFilter& filter ) {
   if ( filter.sourceMask().isZero() ) {
      return;
   }
   VTRACE( 1, "\tSource Addr: " << filter.source() << " mask " << filter.sourceMask() );
   uint8_t srcMac[6];
   uint8_t srcMacMask[6];
   macBytesCopied( filter.source(), srcMac );
   macBytesCopied( filter.sourceMask(), srcMacMask );
   SDK_CHECK_SPINDLE( bcm_field_qualify_SrcMac( unit, entry, srcMac, srcMacMask ) );
   Shim::fpQual( entry, " SrcMac 0x", Shim::FpHexBytes{ srcMac, 6 }, " 0x",
                 Shim::FpHexBytes{ srcMacMask, 6 } );
}

void dstMacProgrammed( U32 unit, U32 entry, const Acl::MacFilter& filter ) {
   if ( filter.destinationMask().isZero() ) {
      return;
   }
   VTRACE( 1, "\tDest Addr: " << filter.destination() << " mask " << filter.destinationMask() );
   uint8_t dstMac[6];
   uint8_t dstMacMask[6];
   macBytesCopied( filter.destination(), dstMac );
   macBytesCopied( filter.destinationMask(), dstMacMask );
   SDK_CHECK_SPINDLE( bcm_field_qualify_DstMac( unit, entry, dstMac, dstMacMask ) );
   Shim::fpQual( entry, " DstMac 0x", Shim::FpHexBytes{ dstMac, 6 }, " 0x",
                 Shim::FpHexBytes{ dstMacMask, 6 } );
}

}  // namespace

Fennel::AclCreateError AclHelper::createMacAclRule( const Acl::RuleConfig& rule,
                                                    Acl::UniqueId aclId, const AclDataPtr& aclData,
                                                    U32 ruleNum ) {
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   Fennel::AclCreateError result = Fennel::aclCreateSuccess;
   if ( !saclData ) {
      return result;
   }
   // Every unit is tried whatever the others answered; the last failure is the answer.
   for ( const auto& member : saclData->unitData() ) {
      const AclUnitData::Ptr unitData = member.value();
      const Fennel::AclCreateError rc =
          createMacAclRuleForUnit( unitData, rule, aclId, aclData, ruleNum, 0, aclFeatureSecurity );
      if ( rc != Fennel::aclCreateSuccess ) {
         result = rc;
      }
   }
   return result;
}

Fennel::AclCreateError AclHelper::createMacAclRuleForUnit(
    const AclUnitData::Ptr& unitData, const Acl::RuleConfig& rule, Acl::UniqueId aclId,
    const AclDataPtr& aclData, U32 ruleNum, U32 subruleNum, HalyardAclFeature feature ) {
   const Acl::MacFilter filter = rule.macFilter();
   const U32 unit = unitData->unit();
   VTRACE( 1, "AclHelper::createMacAclRuleForUnit( " << aclData->aclName() << ", ruleNum "
                                                     << ruleNum << " ) Unit: " << unit );
   const AclCommonUnitData::Ptr& common = unitData->common();
   common->aclRuleCreate( aclId, ruleNum, true );
   // VFP has no user-defined fields.
   if ( !( filter.payload() == Acl::PayloadSpec() ) ) {
      VTRACE( 1, "Found UDF payload in mac ACL" );
      common->canUseVfpIs( false );
   }
   const CommonRuleData::Ptr result = commonCreateEntry(
       aclData, unitData, rule, rule.action(), rule.log(), aclId, ruleNum, subruleNum, feature );
   if ( !result->needed() ) {
      return Fennel::aclCreateSuccess;
   }
   if ( result->entry().empty() ) {
      return Fennel::aclCreateNoEntries;
   }
   if ( result->udfError() ) {
      return Fennel::aclCreateUdfError;
   }
   for ( const auto& member : result->entry() ) {
      const U32 entry = member.key();
      etherTypeProgrammed( unit, entry, filter );
      srcMacProgrammed( unit, entry, filter );
      dstMacProgrammed( unit, entry, filter );
   }
   return Fennel::aclCreateSuccess;
}

}  // namespace Halyard
