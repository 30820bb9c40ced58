// A term on a 16-bit field of a rule (a layer 4 port or the IP length), kept
// as configured: the operator and its values.
//
// The generic layer splits terms into subrules later (a list into one
// subrule per value, a range into a range term or masked blocks), so nothing
// here is expanded. Invariants: `any` has no values; `eq` and `neq` have one
// or more (a list); `gt` and `lt` have one; `range` has two, low <= high.
//
// Text: the configuration's words, "any", "eq 80 443", "neq 22", "gt 1023",
// "lt 1024", "range 1000 2000".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Acl {

using Pylon::strepToValue;

enum class FieldOp : U8 { any = 0, eq = 1, neq = 2, gt = 3, lt = 4, range = 5 };

inline constexpr Vesper::EnumName<FieldOp> fieldOpNames[] = {
    { FieldOp::any, "any" }, { FieldOp::eq, "eq" }, { FieldOp::neq, "neq" },
    { FieldOp::gt, "gt" },   { FieldOp::lt, "lt" }, { FieldOp::range, "range" } };
constexpr Vesper::EnumNames<FieldOp> vesperEnumNames( FieldOp ) {
   return { "Acl::FieldOp", fieldOpNames };
}

class FieldTerm {
 public:
   FieldTerm() = default;
   // Each throws Vesper::RangeException when the invariant would break.
   static FieldTerm eq( std::vector<U16> values );
   static FieldTerm neq( std::vector<U16> values );
   static FieldTerm gt( U16 value );
   static FieldTerm lt( U16 value );
   static FieldTerm range( U16 low, U16 high );

   FieldOp op() const { return op_; }
   const std::vector<U16>& values() const { return values_; }
   bool isAny() const { return op_ == FieldOp::any; }
   // Whether a packet's field value satisfies the term.
   bool matches( U16 value ) const;

   friend bool operator==( const FieldTerm&, const FieldTerm& ) = default;

 private:
   FieldTerm( FieldOp op, std::vector<U16> values ) : op_( op ), values_( std::move( values ) ) {}

   FieldOp op_ = FieldOp::any;
   std::vector<U16> values_;
};

std::string valueToStrep( const FieldTerm& term );
FieldTerm parseStrep( std::string_view text, Pylon::ValueType<FieldTerm> );
std::ostream& operator<<( std::ostream& os, const FieldTerm& term );

}  // namespace Acl
