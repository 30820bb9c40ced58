// The type of a switch chip: what a unit is, as far as chip attributes go.
//
// A ChipInfo keys the chip table of HalyardAttributes (ChipAttributes.h);
// units of one chip type share one row. It holds the chip family code (the
// library compares it with 7 and 8, the families whose entries may permit
// during an update), the device id and the revision. The default value, all
// zero, is the empty ChipInfo: what a lookup of an unknown unit yields, and
// no row of a real table.
//
// Ordering is by family code, then device id, then revision. hash() is the
// one-at-a-time hash over the three words, each least significant byte first.
// Text:
//   Value('HalyardCentral::ChipInfo', ** {'familyCode': 7, 'deviceId': 47200, 'revisionId': 1})
#pragma once

#include <compare>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace HalyardCentral {

using Pylon::strepToValue;

class ChipInfo {
 public:
   constexpr ChipInfo() = default;
   constexpr ChipInfo( U32 familyCode, U32 deviceId, U32 revisionId = 0 )
       : familyCode_( familyCode ), deviceId_( deviceId ), revisionId_( revisionId ) {}

   constexpr U32 familyCode() const { return familyCode_; }
   constexpr U32 deviceId() const { return deviceId_; }
   constexpr U32 revisionId() const { return revisionId_; }
   constexpr bool isEmpty() const { return *this == ChipInfo(); }
   U32 hash() const;

   friend constexpr bool operator==( const ChipInfo&, const ChipInfo& ) = default;
   friend constexpr auto operator<=>( const ChipInfo&, const ChipInfo& ) = default;

 private:
   U32 familyCode_ = 0;
   U32 deviceId_ = 0;
   U32 revisionId_ = 0;
};

std::string valueToStrep( const ChipInfo& chip );
ChipInfo parseStrep( std::string_view text, Pylon::ValueType<ChipInfo> );
std::ostream& operator<<( std::ostream& os, const ChipInfo& chip );

}  // namespace HalyardCentral
