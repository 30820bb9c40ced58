// The key of the type-direction-feature state machines: ACL type, direction
// and feature, 32 bits each.
//
// Contract:
//  1. Equal when all three are equal.
//  2. Ordered by type, then direction, then feature, each compared as a
//     signed 32-bit number.
//  3. hash() is the one-at-a-time hash over the twelve bytes of type,
//     direction and feature, each least significant byte first.
//  4. Text:
//     Value('Halyard::HalyardAclTypeDirectionFeature', ** {'type': ip,
//           'direction': in, 'feature': aclFeatureSecurity})
//     (one line). strepToValue demands the literals piece by piece and
//     reports a field that does not parse under its attribute's name,
//     "type", "direction" or "feature".
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/acl/AclTypes.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Halyard {

using Pylon::strepToValue;

class HalyardAclTypeDirectionFeature {
 public:
   constexpr HalyardAclTypeDirectionFeature() = default;
   constexpr HalyardAclTypeDirectionFeature( Acl::AclType type, Acl::AclDirection direction,
                                             HalyardAclFeature feature )
       : type_( type ), direction_( direction ), feature_( feature ) {}

   constexpr Acl::AclType type() const { return type_; }
   constexpr Acl::AclDirection direction() const { return direction_; }
   constexpr HalyardAclFeature feature() const { return feature_; }
   U32 hash() const;

   friend constexpr bool operator==( const HalyardAclTypeDirectionFeature&,
                                     const HalyardAclTypeDirectionFeature& ) = default;
   friend constexpr std::strong_ordering operator<=>( const HalyardAclTypeDirectionFeature& a,
                                                      const HalyardAclTypeDirectionFeature& b ) {
      if ( auto c = asSigned( a.type_ ) <=> asSigned( b.type_ ); c != 0 ) {
         return c;
      }
      if ( auto c = asSigned( a.direction_ ) <=> asSigned( b.direction_ ); c != 0 ) {
         return c;
      }
      return asSigned( a.feature_ ) <=> asSigned( b.feature_ );
   }

 private:
   template <typename E>
   static constexpr S32 asSigned( E e ) {
      return static_cast<S32>( static_cast<U32>( e ) );
   }

   Acl::AclType type_ = Acl::AclType::ip;
   Acl::AclDirection direction_ = Acl::AclDirection::in;
   HalyardAclFeature feature_ = aclFeatureSecurity;
};

std::string valueToStrep( const HalyardAclTypeDirectionFeature& tdf );
HalyardAclTypeDirectionFeature parseStrep( std::string_view text,
                                           Pylon::ValueType<HalyardAclTypeDirectionFeature> );
std::ostream& operator<<( std::ostream& os, const HalyardAclTypeDirectionFeature& tdf );

}  // namespace Halyard
