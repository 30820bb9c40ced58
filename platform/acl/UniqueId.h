// The identifier of one rule across all ACLs.
//
// Opaque to the back-end: it is compared, hashed, ordered and printed, never
// looked into. The default value, and the value after doInit(), is the empty
// id. UniqueId::next() hands out a value that no earlier call in this
// process gave, for code that needs a rule id of its own (the closing rules
// of an ACL); its values have the top bit set, so that they never meet the
// ids that the configuration assigns, which keep that bit clear.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Acl {

using Pylon::strepToValue;

class UniqueId {
 public:
   constexpr UniqueId() = default;
   constexpr explicit UniqueId( U64 value ) : value_( value ) {}
   static constexpr U64 generatedBit = U64( 1 ) << 63;
   static UniqueId next();

   void doInit() { value_ = 0; }
   constexpr bool isEmpty() const { return value_ == 0; }
   constexpr U64 value() const { return value_; }
   U32 hash() const;

   friend constexpr bool operator==( UniqueId, UniqueId ) = default;
   friend constexpr auto operator<=>( UniqueId, UniqueId ) = default;

 private:
   U64 value_ = 0;
};

// Decimal; the empty id is "0".
std::string valueToStrep( UniqueId id );
UniqueId parseStrep( std::string_view text, Pylon::ValueType<UniqueId> );
std::ostream& operator<<( std::ostream& os, UniqueId id );

}  // namespace Acl
