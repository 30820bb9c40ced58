#include "platform/tcam/ChipLookup.h"

#include "platform/tcam/HalyardAttributes.h"
#include "platform/vesper/Assert.h"

namespace HalyardCentral {

Vesper::Ptr<const ChipAttributes> chipAttributes( const ChipInfo& chip ) {
   return halyardAttributes()->chip( chip );
}

}  // namespace HalyardCentral

namespace Halyard {

namespace {

// Units are keyed by 16 bits; a wider number names no unit rather than
// wrapping onto a small one.
constexpr bool fitsUnitKey( U32 unit ) {
   return unit <= 0xFFFF;
}

Vesper::Ptr<const HalyardCentral::ChipAttributes> requireRow(
    const HalyardCentral::ChipInfo& chip ) {
   Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttr =
       HalyardCentral::chipAttributes( chip );
   VESPER_ASSERT( chipAttr && "chip attributes of the unit's chip" );
   return chipAttr;
}

}  // namespace

HalyardCentral::ChipInfo unitChipInfo( const HalyardTcamGroupManager& groupManager, U32 unit ) {
   if ( !fitsUnitKey( unit ) ) {
      return HalyardCentral::ChipInfo();
   }
   return groupManager.modChipInfo( static_cast<U16>( unit ) );
}

HalyardCentral::ChipInfo unitChipInfo( const HalyardCommonSmData& hcsd, U32 unit ) {
   if ( !fitsUnitKey( unit ) ) {
      return HalyardCentral::ChipInfo();
   }
   return hcsd.halyardModId( static_cast<U16>( unit ) ).chipInfo();
}

HalyardCentral::ChipInfo firstModuleChipInfo( const HalyardCommonSmData& hcsd ) {
   auto it = hcsd.halyardModId().iterator();
   const auto* first = it.currNodeNonStale();
   return first ? first->value().chipInfo() : HalyardCentral::ChipInfo();
}

Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttributesForUnit(
    const HalyardTcamGroupManager& groupManager, U32 unit ) {
   return requireRow( unitChipInfo( groupManager, unit ) );
}

Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttributesForUnit(
    const HalyardCommonSmData& hcsd, U32 unit ) {
   return requireRow( unitChipInfo( hcsd, unit ) );
}

Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttributesForFirstModule(
    const HalyardCommonSmData& hcsd ) {
   return requireRow( firstModuleChipInfo( hcsd ) );
}

}  // namespace Halyard
