// What the agent knows of the chip behind one unit: one member of the unit
// table `halyardModId` of HalyardCommonSmData.
//
// `chip` is the 16-bit chip number (the key of per-chip records of other
// agents, e.g. the VLAN topology's aclVlanClassIdPerChip), `modId` the module
// id by which the chip and its ports are known in the system, `chipInfo` the
// chip type that keys the chip attributes, and `chipName` the switch chip's
// name as operators see it ("=== IP ACLs on switch %s ===", the per-chip TCAM
// status). familyCode() reads through to the chip type. The default value is
// what an unknown unit reads as: chip 0, no module, empty chip type, no name.
//
// Text:
//   Value('Halyard::HalyardModInfo', ** {'chip': 0, 'modId': 1, 'chipInfo': ..., 'chipName':
//   'chip0'})
#pragma once

#include <ostream>
#include <string>
#include <utility>

#include "platform/pylon/ModId.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace HalyardCentral {
// The module id of a chip, as the central part of the agent names it.
using ModId = Pylon::ModId;
}  // namespace HalyardCentral

namespace Halyard {

class HalyardModInfo {
 public:
   HalyardModInfo() = default;
   HalyardModInfo( U16 chip, HalyardCentral::ModId modId, HalyardCentral::ChipInfo chipInfo,
                   Vesper::Name chipName )
       : chip_( chip ),
         modId_( modId ),
         chipInfo_( chipInfo ),
         chipName_( std::move( chipName ) ) {}

   U16 chip() const { return chip_; }
   HalyardCentral::ModId modId() const { return modId_; }
   const HalyardCentral::ChipInfo& chipInfo() const { return chipInfo_; }
   const Vesper::Name& chipName() const { return chipName_; }
   U32 familyCode() const { return chipInfo_.familyCode(); }

   friend bool operator==( const HalyardModInfo&, const HalyardModInfo& ) = default;

 private:
   U16 chip_ = 0;
   HalyardCentral::ModId modId_;
   HalyardCentral::ChipInfo chipInfo_;
   Vesper::Name chipName_;
};

std::string valueToStrep( const HalyardModInfo& info );
std::ostream& operator<<( std::ostream& os, const HalyardModInfo& info );

}  // namespace Halyard
