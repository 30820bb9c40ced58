#include "platform/tcam/ChipAttributes.h"

#include <iterator>

namespace HalyardCentral {

static_assert( std::size( chipAttributeAll ) <= 32, "ChipAttributes keeps its members in a U32" );
static_assert( std::size( chipAttributeAll ) == std::size( chipAttributeNames ) );

void ChipAttributes::attributeIs( ChipAttribute a, bool value ) {
   const U32 bit = 1u << bitOf( a );
   bits_ = value ? ( bits_ | bit ) : ( bits_ & ~bit );
}

Vesper::Ptr<ChipAttributes> chipAttributesFactory() {
   Vesper::Ptr<ChipAttributes> attrs( new ChipAttributes );
   attrs->hasNotificationActiveIs( true );
   return attrs;
}

}  // namespace HalyardCentral
