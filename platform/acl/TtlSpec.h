// A rule's term on the IPv4 TTL or IPv6 hop limit: an operator and a value.
//
// The hardware matches only `eq` (operator value 1); the other operators are
// carried as configured for the layers that can evaluate them.
#pragma once

#include <string>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Acl {

enum class TtlOp : U8 { any = 0, eq = 1, gt = 2, lt = 3, neq = 4 };

inline constexpr Vesper::EnumName<TtlOp> ttlOpNames[] = { { TtlOp::any, "any" },
                                                          { TtlOp::eq, "eq" },
                                                          { TtlOp::gt, "gt" },
                                                          { TtlOp::lt, "lt" },
                                                          { TtlOp::neq, "neq" } };
constexpr Vesper::EnumNames<TtlOp> vesperEnumNames( TtlOp ) {
   return { "Acl::TtlOp", ttlOpNames };
}

class TtlSpec {
 public:
   constexpr TtlSpec() = default;
   constexpr TtlSpec( TtlOp op, U8 ttl ) : op_( op ), ttl_( ttl ) {}

   constexpr TtlOp op() const { return op_; }
   constexpr U8 ttl() const { return ttl_; }

   friend constexpr bool operator==( const TtlSpec&, const TtlSpec& ) = default;

 private:
   TtlOp op_ = TtlOp::any;
   U8 ttl_ = 0;
};

// "any", or the operator and the value: "eq 64".
inline std::string valueToStrep( const TtlSpec& ttl ) {
   return ttl.op() == TtlOp::any
              ? "any"
              : Vesper::stringValue( ttl.op() ) + " " + std::to_string( ttl.ttl() );
}

}  // namespace Acl
