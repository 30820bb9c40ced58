// Values that an entry's InPorts, range checker and user-defined field reads answer with.
#pragma once

#include <array>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipResources.h"
#include "sim/chip/ChipTypes.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

struct InPortsValue {
   PortBitmap data;
   PortBitmap mask;
   friend bool operator==( const InPortsValue&, const InPortsValue& ) = default;
};

struct RangeCheckRef {
   RangeCheckerId id = 0;
   bool invert = false;
   friend bool operator==( const RangeCheckRef&, const RangeCheckRef& ) = default;
};

struct UdfValue {
   U8 length = 0;
   std::array<U8, kUdfMaxLength> data{};
   std::array<U8, kUdfMaxLength> mask{};
   friend bool operator==( const UdfValue&, const UdfValue& ) = default;
};

}  // namespace Sim
