// The payload match of one user-defined field (UDF): the header its offset
// counts from, the byte offset, a 16-bit pattern and mask, and the IP
// protocol or EtherType of the rule.
//
// UdfOffsetBase numbers the headers; which one a rule uses follows from the
// ACL type and the payload's start (headerStart or headerEnd of the rule's
// PayloadSpec): MAC 1 or 2, IPv4 and IPv6 3 or 4.
//
// Text:
//   Value('Halyard::UdfData', ** {'base': udfOffsetBaseL3Payload,
//         'offset': 4, 'pattern': 4660, 'mask': 65535, 'proto': 6})
// (one line), which strepToValue parses back.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Halyard {

using Pylon::strepToValue;

enum UdfOffsetBase : U16 {
   udfOffsetBaseNone = 0,
   udfOffsetBaseL2Header = 1,   // first byte of the Ethernet header
   udfOffsetBaseL2Payload = 2,  // first byte after the Ethernet header and its tags
   udfOffsetBaseL3Header = 3,   // first byte of the IP header
   udfOffsetBaseL3Payload = 4,  // first byte after the IP header
};

inline constexpr Vesper::EnumName<UdfOffsetBase> udfOffsetBaseNames[] = {
    { udfOffsetBaseNone, "udfOffsetBaseNone" },
    { udfOffsetBaseL2Header, "udfOffsetBaseL2Header" },
    { udfOffsetBaseL2Payload, "udfOffsetBaseL2Payload" },
    { udfOffsetBaseL3Header, "udfOffsetBaseL3Header" },
    { udfOffsetBaseL3Payload, "udfOffsetBaseL3Payload" } };
constexpr Vesper::EnumNames<UdfOffsetBase> vesperEnumNames( UdfOffsetBase ) {
   return { "Halyard::UdfOffsetBase", udfOffsetBaseNames };
}

class UdfData {
 public:
   constexpr UdfData() = default;
   constexpr UdfData( UdfOffsetBase base, U16 offset, U16 pattern, U16 mask, U32 proto )
       : base_( base ), offset_( offset ), pattern_( pattern ), mask_( mask ), proto_( proto ) {}

   constexpr UdfOffsetBase base() const { return base_; }
   constexpr U16 offset() const { return offset_; }
   constexpr U16 pattern() const { return pattern_; }
   constexpr U16 mask() const { return mask_; }
   constexpr U32 proto() const { return proto_; }

   friend constexpr bool operator==( const UdfData&, const UdfData& ) = default;
   friend constexpr auto operator<=>( const UdfData&, const UdfData& ) = default;

 private:
   UdfOffsetBase base_ = udfOffsetBaseNone;
   U16 offset_ = 0;
   U16 pattern_ = 0;
   U16 mask_ = 0;
   U32 proto_ = 0;
};

std::string valueToStrep( const UdfData& data );
UdfData parseStrep( std::string_view text, Pylon::ValueType<UdfData> );
std::ostream& operator<<( std::ostream& os, const UdfData& data );

}  // namespace Halyard
