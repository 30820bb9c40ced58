// Range checker reads: a checker by its id, in the newer and the older form, and the
// checkers of an entry.
#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace Sim {

using namespace SdkValues;

void SimSdk::bcm_range_config_t_init( bcm_range_config_s* conf ) {
   if ( conf ) {
      *conf = bcm_range_config_s();
   }
}

int SimSdk::bcm_range_get( int unit, bcm_range_config_s* conf ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_range_get, unit, chip ) ) {
      return rc;
   }
   if ( !conf ) {
      return kParam;
   }
   const auto checker = chip->rangeChecker( conf->rid() );
   if ( !checker ) {
      return kNotFound;
   }
   conf->rtypeIs( sdkRangeType( checker->type ) );
   conf->minIs( static_cast<int>( checker->min ) );
   conf->maxIs( static_cast<int>( checker->max ) );
   return kNone;
}

int SimSdk::bcm_field_range_get( int unit, bcm_field_range_t range, U32* flags, int* low,
                                 int* high ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_range_get, unit, chip ) ) {
      return rc;
   }
   if ( !flags || !low || !high ) {
      return kParam;
   }
   const auto checker = chip->rangeChecker( range );
   if ( !checker ) {
      return kNotFound;
   }
   *flags = rangeFlagsOf( checker->type );
   *low = static_cast<int>( checker->min );
   *high = static_cast<int>( checker->max );
   return kNone;
}

// Fills at most `maxRanges` checkers, in the order they were attached; `numRanges` is the
// count filled.
int SimSdk::bcm_field_qualify_RangeCheck_get( int unit, bcm_field_entry_t entry, int maxRanges,
                                              bcm_field_range_t* ranges, int* inverts,
                                              int* numRanges ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_RangeCheck_get, unit, chip ) ) {
      return rc;
   }
   if ( maxRanges < 0 || !numRanges || ( maxRanges > 0 && ( !ranges || !inverts ) ) ) {
      return kParam;
   }
   const auto checks = chip->rangeChecks( entry );
   if ( !checks ) {
      return kNotFound;
   }
   int n = 0;
   for ( const RangeCheckRef& r : *checks ) {
      if ( n == maxRanges ) {
         break;
      }
      ranges[n] = r.id;
      inverts[n] = r.invert ? 1 : 0;
      ++n;
   }
   *numRanges = n;
   return kNone;
}

}  // namespace Sim
