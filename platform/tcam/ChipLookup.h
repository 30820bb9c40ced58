// The lookup of a chip's attributes, the one way every caller goes:
//
//   1. the unit's chip type: modChipInfo of the group manager, or the
//      chipInfo of the unit's member of halyardModId in the common data, or,
//      where no unit is at hand, that of the common data's first module (the
//      first member of halyardModId in walk order). An unknown unit yields
//      the empty ChipInfo.
//   2. the chip type's row in the chip table of halyardAttributes().
//
// chipAttributes( chip ) is step 2 alone and answers null for a chip type
// without a row. The chipAttributesFor... functions run both steps and
// require a row: the unit must be known, and an unknown one stops the process
// by assertion rather than leave its callers a null row to fault on.
#pragma once

#include "platform/tcam/ChipAttributes.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace HalyardCentral {

// Step 2: the row of `chip` in halyardAttributes(), or null.
Vesper::Ptr<const ChipAttributes> chipAttributes( const ChipInfo& chip );

}  // namespace HalyardCentral

namespace Halyard {

// Step 1.
HalyardCentral::ChipInfo unitChipInfo( const HalyardTcamGroupManager& groupManager, U32 unit );
HalyardCentral::ChipInfo unitChipInfo( const HalyardCommonSmData& hcsd, U32 unit );
HalyardCentral::ChipInfo firstModuleChipInfo( const HalyardCommonSmData& hcsd );

// Steps 1 and 2. REQUIRES: the chip type has a row (fatal otherwise).
Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttributesForUnit(
    const HalyardTcamGroupManager& groupManager, U32 unit );
Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttributesForUnit(
    const HalyardCommonSmData& hcsd, U32 unit );
Vesper::Ptr<const HalyardCentral::ChipAttributes> chipAttributesForFirstModule(
    const HalyardCommonSmData& hcsd );

}  // namespace Halyard
