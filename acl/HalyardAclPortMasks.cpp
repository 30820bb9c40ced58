#include "acl/HalyardAclPortMasks.h"

#include "platform/vesper/Assert.h"

namespace Halyard {

UnitPortMasks allPortsMask;
bcm_pbmp_t noPortsMask;

bcm_pbmp_t& UnitPortMasks::operator[]( U32 unit ) {
   VESPER_ASSERT( unit < maxUnits );
   return masks_[unit];
}

const bcm_pbmp_t& UnitPortMasks::operator[]( U32 unit ) const {
   VESPER_ASSERT( unit < maxUnits );
   return masks_[unit];
}

}  // namespace Halyard
