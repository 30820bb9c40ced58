// The interface and sub-interface of one binding. For a binding on a plain
// interface the sub-interface is the null interface.
//
// Ordering is by interface, then sub-interface. Text:
//   Value('Fennel::IntfPairKey', ** {'intfId': Ethernet1, 'subIntfId': Ethernet1.100})
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/IntfId.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Fennel {

using Pylon::strepToValue;

class IntfPairKey {
 public:
   constexpr IntfPairKey() = default;
   constexpr IntfPairKey( Pylon::IntfId intfId, Pylon::IntfId subIntfId )
       : intfId_( intfId ), subIntfId_( subIntfId ) {}

   constexpr Pylon::IntfId intfId() const { return intfId_; }
   constexpr Pylon::IntfId subIntfId() const { return subIntfId_; }
   U32 hash() const;

   friend constexpr bool operator==( const IntfPairKey&, const IntfPairKey& ) = default;
   friend constexpr auto operator<=>( const IntfPairKey&, const IntfPairKey& ) = default;

 private:
   Pylon::IntfId intfId_;
   Pylon::IntfId subIntfId_;
};

std::string valueToStrep( const IntfPairKey& key );
IntfPairKey parseStrep( std::string_view text, Pylon::ValueType<IntfPairKey> );
std::ostream& operator<<( std::ostream& os, const IntfPairKey& key );

}  // namespace Fennel
