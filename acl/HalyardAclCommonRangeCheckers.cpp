// Range checkers of IP subrules: a port or IP length term that no value and mask can say is
// matched by a hardware checker, which the unit has few of (24 to 64) and which an entry
// carries at most a few of. The manager shares one checker between equal ranges; the rule
// record keeps the ids it holds, so that the subrules of one rule attach the same checker
// without asking the manager again. Egress entries take no checker at all.
#include "acl/HalyardAclCommon.h"
#include "acl/HalyardAclHelper.h"
#include "acl/HalyardAclHelperFpText.h"
#include "platform/halyard/RangeCheckerDesc.h"
#include "platform/shim/FpCmd.h"
#include "platform/shim/SdkCall.h"
#include "platform/tcam/ChipLookup.h"
#include "platform/vesper/Trace.h"

#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Halyard::AclCommon" )

namespace Halyard {

namespace {

const char* srcOrDst( bool isSrc ) {
   return isSrc ? "Src" : "Dst";
}

// The kind of a range as RangeCheckerDesc numbers it, from the SDK's range type; 0 for a kind
// that no subrule asks for.
U32 rangeFlagsOf( bcm_range_type_t rtype ) {
   if ( rtype == bcmRangeTypeL4SrcPort ) {
      return rangeCheckerSrcPort;
   }
   if ( rtype == bcmRangeTypeL4DstPort ) {
      return rangeCheckerDstPort;
   }
   if ( rtype == bcmRangeTypePacketLength ) {
      return rangeCheckerIpLength;
   }
   return 0;
}

// Bounds of the ranges found on an entry.
struct FoundRange {
   bool found = false;
   U16 low = 0;
   U16 high = 0;
};

}  // namespace

Fennel::AclCreateError AclCommonUnitData::createPortRangeChecker(
    const Fennel::AclKey& aclKey, U64 entry, bool isSrc, Acl::UniqueId /*aclId*/, U32 ruleNum,
    U16 port, U16 portMask, U16 start, U16 end,
    const HalyardUnboundedTcamEntryManager::Ptr& entryManager ) {
   if ( !useRangeChecker( portMask, start, end ) ) {
      if ( portMask == 0 ) {
         return Fennel::aclCreateSuccess;
      }
      VTRACE( 3, srcOrDst( isSrc ) << " Port: " << port );
      if ( portMask != 0xFFFF ) {
         VTRACE( 3, srcOrDst( isSrc ) << " Port Mask: " << portMask );
      }
      if ( isSrc ) {
         SDK_CHECK( bcm_field_qualify_L4SrcPort( unit(), entry, port, portMask ) );
         Shim::fpQual( entry, " L4SrcPort ", port, FpMask{ portMask } );
      } else {
         SDK_CHECK( bcm_field_qualify_L4DstPort( unit(), entry, port, portMask ) );
         Shim::fpQual( entry, " L4DstPort ", port, FpMask{ portMask } );
      }
      return Fennel::aclCreateSuccess;
   }
   if ( aclKey.direction() == Acl::AclDirection::out ) {
      VTRACE( 1, "\tNo RangeCheckers on Egress ACLs" );
      dirtyIs( true );
      return Fennel::aclCreateNoRangeChecker;
   }
   const RangeCheckerDesc desc( start, end, isSrc ? rangeCheckerSrcPort : rangeCheckerDstPort );
   const AclRuleData::Ptr rule = aclRule( ruleNum );
   U32 id = rule->rangeChecker( desc ).value_or( 0 );
   if ( id != 0 ) {
      VTRACE( 3, "\tReusing " << srcOrDst( isSrc ) << " range checker " << id << " for ports ["
                              << start << ", " << end << "]" );
   } else {
      id = entryManager->getRangeChecker( unit(), desc );
      VTRACE( 3, "\tAllocating range " << srcOrDst( isSrc ) << " checker " << id << " for ports ["
                                       << start << ", " << end << "]" );
   }
   if ( id != 0 ) {
      if ( entryManager->attachRangeChecker( unit(), static_cast<U32>( entry ), id ) ==
           BCM_E_RESOURCE ) {
         VTRACE( 1, "\t Cant use range checker " << id );
         entryManager->releaseRangeChecker( unit(), desc );
      } else {
         rule->rangeCheckerIs( desc, id );
         VTRACE( 3, "\tisSrcRangeChecker:" << isSrc << ", Range Checker: " << id );
         Shim::fpQual( entry, " RangeCheck ", id );
         return Fennel::aclCreateSuccess;
      }
   }
   VTRACE( 1, "\tFailed to allocate " << srcOrDst( isSrc ) << " port range checker" );
   dirtyIs( true );
   return Fennel::aclCreateNoRangeChecker;
}

Fennel::AclCreateError AclCommonUnitData::createIpLenRangeChecker(
    const Fennel::AclKey& aclKey, U64 entry, Acl::UniqueId /*aclId*/, U32 ruleNum, U16 /*ipLen*/,
    U16 ipLenMask, U16 start, U16 end, const HalyardUnboundedTcamEntryManager::Ptr& entryManager ) {
   // An exact length comes in `start`, under the mask 0xFFFF.
   if ( !verifyIpLenRangeChecker( ipLenMask, start, end ) ) {
      return Fennel::aclCreateSuccess;
   }
   if ( aclKey.direction() == Acl::AclDirection::out ) {
      VTRACE( 1, "\tNo RangeCheckers on Egress ACLs" );
      dirtyIs( true );
      return Fennel::aclCreateNoRangeChecker;
   }
   U16 high = end;
   if ( ipLenMask == 0xFFFF ) {
      VTRACE( 3, "\tIP Length: " << start );
      high = start;
   }
   const RangeCheckerDesc desc( start, high, rangeCheckerIpLength );
   const AclRuleData::Ptr rule = aclRule( ruleNum );
   U32 id = rule->rangeChecker( desc ).value_or( 0 );
   if ( id != 0 ) {
      VTRACE( 3, "\tReusing range checker " << id << " for ip lengths [" << start << ", " << high
                                            << "]" );
   } else {
      id = entryManager->getRangeChecker( unit(), desc );
      VTRACE( 3, "\tAllocating range checker " << id << " for ip lengths [" << start << ", " << high
                                               << "]" );
   }
   if ( id != 0 ) {
      if ( entryManager->attachRangeChecker( unit(), static_cast<U32>( entry ), id ) ==
           BCM_E_RESOURCE ) {
         VTRACE( 1, "\t Cant use range checker " << id );
         entryManager->releaseRangeChecker( unit(), desc );
      } else {
         rule->rangeCheckerIs( desc, id );
         VTRACE( 3, "\tRange Checker: " << id );
         Shim::fpQual( entry, " RangeCheck ", id );
         return Fennel::aclCreateSuccess;
      }
   }
   VTRACE( 1, "\tFailed to allocate ipLen range checker" );
   dirtyIs( true );
   // Unlike a port term, a length that finds no checker is reported as a shortage of entries.
   return Fennel::aclCreateNoEntries;
}

void getRangeCheckData( U32 unit, const HalyardCommonSmData::Ptr& hcsd, U32 id, int* low, int* high,
                        U32* flags ) {
   if ( !chipAttributesForUnit( *hcsd, unit )->usesRangeConfig() ) {
      SDK_NO_CHECK( bcm_field_range_get( unit, id, flags, low, high ) );
      return;
   }
   bcm_range_config_s conf;
   bcm_range_config_t_init( &conf );
   conf.rid_is( id );
   SDK_NO_CHECK( bcm_range_get( unit, &conf ) );
   if ( const U32 kind = rangeFlagsOf( conf.rtype() ) ) {
      *flags = kind;
   }
   *low = conf.min();
   *high = conf.max();
}

bool AclCommonUnitData::ipPortRangeSubruleExists( U64 entry, const Fennel::AclKey& aclKey,
                                                  Acl::UniqueId /*aclId*/, U32 /*ruleNum*/,
                                                  U32 /*subRule*/, U16 srcStart, U16 srcEnd,
                                                  bool hasSrc, U16 dstStart, U16 dstEnd,
                                                  bool hasDst ) {
   if ( !hasSrc && !hasDst ) {
      return true;
   }
   if ( aclKey.direction() == Acl::AclDirection::out ) {
      return false;
   }
   FoundRange src;
   FoundRange dst;
   bcm_field_range_t ranges[32] = {};
   int inverts[32] = {};
   int numRanges = 0;
   const int rv = SDK_TRACE_RV(
       bcm_field_qualify_RangeCheck_get( unit(), entry, 32, ranges, inverts, &numRanges ) );
   if ( rv == BCM_E_NONE ) {
      for ( int i = 0; i < numRanges && i < 32; ++i ) {
         int low = 0;
         int high = 0;
         U32 flags = 0;
         getRangeCheckData( unit(), hcsd(), ranges[i], &low, &high, &flags );
         FoundRange* range = flags == rangeCheckerSrcPort   ? &src
                             : flags == rangeCheckerDstPort ? &dst
                                                            : nullptr;
         if ( range ) {
            *range = FoundRange{ true, static_cast<U16>( low ), static_cast<U16>( high ) };
         }
      }
   }
   // A port under a mask stands for the range from the port to the port with every bit
   // outside the mask set.
   U16 portData = 0;
   U16 portMask = 0;
   if ( hasSrc && !src.found &&
        SDK_TRACE_RV( bcm_field_qualify_L4SrcPort_get( unit(), entry, &portData, &portMask ) ) ==
            BCM_E_NONE &&
        portMask != 0 ) {
      src = FoundRange{ true, portData, static_cast<U16>( ~portMask | portData ) };
   }
   if ( hasDst && !dst.found &&
        SDK_TRACE_RV( bcm_field_qualify_L4DstPort_get( unit(), entry, &portData, &portMask ) ) ==
            BCM_E_NONE &&
        portMask != 0 ) {
      dst = FoundRange{ true, portData, static_cast<U16>( ~portMask | portData ) };
   }
   if ( hasSrc && !( src.found && src.low == srcStart && src.high == srcEnd ) ) {
      return false;
   }
   if ( !hasDst ) {
      return true;
   }
   return dst.found && dst.low == dstStart && dst.high == dstEnd;
}

}  // namespace Halyard
